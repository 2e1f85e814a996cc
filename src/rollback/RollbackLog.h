// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileItem.h"
#include "platform/Clock.h"
#include "platform/TResult.h"
#include "rollback/TRenameTRX.h"

#include <memory>
#include <span>
#include <vector>

/// Ending of a rollback log's name, without dot.
inline constexpr QLatin1StringView kRollbackLogExtension{"renameLog"};

/// "Rename Batch Run - 2025-07-03, 14.05.09 (rollback data).renameLog" in local time.
QString rollbackLogName(TDate date);

/// Writes the rollback log of one run record by record, so that a million of them need no memory,
/// and puts it in place at once when the run has ended. Used by one thread.
class RollbackLogWriter
{
public:
    /// A temporary file beside the journals of the folder; failure says why.
    static TResult<std::unique_ptr<RollbackLogWriter>> create(const QString &logsFolder);
    /// A log that was not finished is deleted.
    ~RollbackLogWriter();

    /// Takes the space for a log over these files, as far as it can be known beforehand; failure
    /// says why there is none.
    TResult<bool> reserve(std::span<const TFileItem> files);
    void append(const TRenameTRX &transaction);
    /// Puts the log in place, on the disk for good, under the name for the date. The log of another
    /// run that finished in the same second is replaced; any other that has the name already stays,
    /// and with keepOthers all of them: then the next free second is taken. Such a log, and one
    /// written with keepOthers, is never replaced. The path, or why not.
    TResult<QString> finish(TDate date, bool keepOthers = false);

private:
    RollbackLogWriter();
    class Private;
    std::unique_ptr<Private> m_private;
};

/// A whole log; the message of a failure names the file and what is wrong with it.
TResult<std::vector<TRenameTRX>> readRollbackLog(const QString &path);

/// Paths of all logs of the folder, newest first. Looks into none of them.
QStringList rollbackLogPaths(const QString &logsFolder);

/// The same of those that were written at that moment or later.
QStringList rollbackLogPathsSince(const QString &logsFolder, TDate moment);

/// What a list tells of a log without showing its records.
struct RollbackLogSummary
{
    qsizetype files = -1; ///< -1: the log cannot be read, or is too large to be looked into
    TFolderPtr folder;    ///< of the first file, before the run; null: unknown
    bool hasMoreFolders = false;
};
/// Looks into a log of at most so many bytes, at its first and last records alone. Any thread.
RollbackLogSummary summaryOfRollbackLog(const QString &path, qint64 mostBytes);

/// A saved log, as lists show it.
struct SavedRollbackLog
{
    QString path;
    QString name; ///< without extension
    TDate date;   ///< modification of the file
    qsizetype files = 0;
};
/// All logs of the folder, newest first; unreadable ones have -1 files. Reads every one of them.
std::vector<SavedRollbackLog> savedRollbackLogs(const QString &logsFolder);
