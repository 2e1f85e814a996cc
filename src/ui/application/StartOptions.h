// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/URLListProcessing.h"

/// What the line says with which the program was started. Knows nothing of a display, so that help
/// and version work without one.
struct StartOptions
{
    enum class Wish {
        Open, ///< the paths, if any
        Tell, ///< print the text and end
        Refuse
    };

    Wish wish = Wish::Open;
    QString text; ///< what to print, without a line break at its end; the fault when refusing
    TFileURLs paths;
    QString preset; ///< the name of the preset that the first batch begins with; often empty

    /// The arguments without the program's name.
    static StartOptions parse(const QStringList &arguments);
};
