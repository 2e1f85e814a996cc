// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Options of one batch. Integers used as flags, as they are stored.
struct TOptions
{
    qint64 useLog = 0;
    qint64 compliance = 0; ///< 0: ":" and "/" in fragments become "_"
    QString logFile;
    qint64 allowLeadingPeriod = 0; ///< stored and edited; names are not changed by it
    bool keepUnchanged = false;    ///< leave files out of the run whose name would not change

    friend bool operator==(const TOptions &, const TOptions &) = default;
};
