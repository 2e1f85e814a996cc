// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileItem.h"
#include "platform/Clock.h"
#include "platform/TResult.h"

#include <memory>

class RecoveryProgress;

/// The plan of a run, on disk before the first move, so that a crash or power cut at any moment
/// loses no record: <logs>/.running/<uuid>.plan, and .journal from the run's beginning on, locked
/// while the run lives. Used by one thread at a time. Layout: docs/file-formats.md.
class RunJournal
{
public:
    static TResult<std::unique_ptr<RunJournal>>
    create(const QString &logsFolder, const Clock &clock, FileManager &fileManager);
    /// A journal that tells of no move, announced or done, is deleted. Another one that was not
    /// finished stays, for the next start to recover.
    ~RunJournal();

    /// Adds a file to the plan, in list order.
    void addFile(const TFileItem &item);
    /// Writes and syncs the plan, which is the long part. False: nothing may be moved; problem()
    /// says why. The run has not begun: should it never begin, the next start deletes the plan.
    [[nodiscard]] bool syncPlan();
    /// The run begins, after syncPlan: whatever happens from here on, the next start looks for its
    /// moves. What somebody else renamed before would count as such a move, so nobody is asked
    /// anything between this and the first move. False: nothing may be moved; problem() says why.
    [[nodiscard]] bool begin();
    /// True for files whose inode will not tell afterwards (several links, file systems without
    /// lasting inodes): their intents must be synced before they move.
    bool needsIntent(qsizetype index) const;
    /// Announces where a file is about to go; grouped by 64. Call syncIntents before moving any.
    void addIntent(qsizetype index, const QByteArray &newName);
    /// False: none of the files announced since the last call may be moved; problem() says why. A
    /// sync that failed once is never tried again.
    [[nodiscard]] bool syncIntents();
    /// After a move; buffered, never synced. A failed write is remembered in problem().
    void recordMove(qsizetype index, const QByteArray &newName);
    /// The rollback log, if there is one, is in place: marks the journal finished and keeps the
    /// last 50.
    void finish(const QString &rollbackLog = {});
    const QString &problem() const;
    QString path() const;

private:
    RunJournal();
    class Private;
    std::unique_ptr<Private> m_private;
};

/// What became of an interrupted run.
struct RecoveredRun
{
    QString rollbackLog; ///< path of the log that was written; empty when nothing had been renamed,
                         ///< or when there is a problem
    qsizetype files = 0;
    qsizetype renamed = 0;
    qsizetype unknown = 0; ///< files found neither by inode nor by record
    QString problem;       ///< why the journal could not be turned into a log; empty otherwise
};

/// Turns every journal whose run no longer lives into a rollback log. Journals of living runs
/// (locked ones) are left alone; those whose folders are away (a drive not plugged in) wait, for 30
/// days at most; unreadable ones are set aside. A folder that does not answer holds this up; the
/// progress, when given, is told which one it is.
std::vector<RecoveredRun> recoverInterruptedRuns(const QString &logsFolder,
                                                 FileManager &fileManager, const Clock &clock,
                                                 RecoveryProgress *progress = nullptr);
