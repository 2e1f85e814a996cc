// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rollback/TRenameTRX.h"

#include <QString>

#include <span>
#include <vector>

class Console;

/// What a rollback, or a check of one, has to tell.
struct RollbackResult
{
    QString log;
    std::span<const TRenameTRX> records;
    std::vector<QString>
        restored; ///< the name each record's file got back; null when it did not move
    qsizetype restoredCount = 0;
    qsizetype failedCount = 0;
    qsizetype skippedCount = 0;
    bool checkOnly = false;
};

/// Prints it in the form that the console has.
void printRollback(Console &console, const RollbackResult &result);
