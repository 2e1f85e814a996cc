// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TErrorLog.h"

#include <QString>

#include <optional>

/// The checks before a live run, in their fixed order, for the window and the command line alike.
struct RenameGuard
{
    bool analysed = false; ///< an analysis has run
    const TErrorLog *batchLog = nullptr;
    /// The caller has no list of problems to show, so the second test for critical errors speaks.
    bool skipErrorList = false;
    bool hasProcessedFiles = false;
    bool running = false;
    qsizetype rules = 0;
    qsizetype files = 0;
    /// What a prompt calls the folder that is sandboxed and without a grant, if there is one.
    std::optional<QString> inaccessibleFolder;

    enum class Verdict { Nothing, ShowErrors, Refused, AskForFolder, Confirm };
    struct Answer
    {
        Verdict verdict = Verdict::Nothing;
        QString title;
        QString text;
    };

    /// The first check that fails, or the confirmation to ask for.
    Answer check() const;
};
