// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/FolderPicture.h"
#include "commonprocs/ListedNames.h"
#include "commonprocs/easyfile.h"
#include "rollback/PlannedFiles.h"
#include "rollback/TRenameTRX.h"

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

/// Undoes a past run: checks every record against the disk, then moves files back. Knows nothing of
/// windows; both passes may run on a worker.
class RollbackRun
{
public:
    static constexpr qint64 kNothing = 0;      ///< nothing to roll back
    static constexpr qint64 kRenamedFound = 1; ///< will be moved back
    static constexpr qint64 kOccupied = -1;    ///< not usable, and the old name is in use
    static constexpr qint64 kRestored = 100;
    static constexpr qint64 kFailed = -1000;

    /// Called with the number of the record and the number of records, at every tenth.
    using Progress = std::function<void(qsizetype, qsizetype)>;
    /// Called with the index of a record and the location its file was moved back to.
    using Restored = std::function<void(qsizetype, const TFileURL &)>;

    /// The path of the log tells which run it was, so that a rollback that was cut off can be
    /// taken up again.
    RollbackRun(FileManager &fileManager, std::vector<TRenameTRX> transactions,
                const QString &rollbackLog = {});

    const std::vector<TRenameTRX> &transactions() const { return m_transactions; }
    /// First pass: statuses and problems of every record, or of those before the abort flag, when
    /// given, was set.
    void processLog(const Progress &progress, const std::atomic<bool> *abort = nullptr);
    /// Second pass, in log order, or from the last record to the first. restored, when given, is
    /// called with the index and the location of each file moved back. Records that the abort flag
    /// kept from their turn stay as the first pass left them.
    void performRollBack(const Progress &progress, const std::atomic<bool> &abort, bool reverse,
                         const Restored &restored = {});
    /// A collision-free location beside the given one.
    TFileURL makeSafeURLFromURL(const TFileURL &url);
    /// True when records form chains (2→3, then 1→2), which only the reverse order restores whole.
    bool recommendsReverse() const { return m_chained; }

private:
    bool formsChains() const;
    static bool exists(FileMover &mover, const TFileURL &url);
    bool findsRenamed(FileMover &mover, std::size_t index) const;
    void listFolders();
    void lookFor(std::size_t first, std::size_t end);
    void processRecord(std::size_t index);
    void rollBack(qsizetype index, const Restored &restored);
    TMoveResult moveBack(const TRenameTRX &record, TFileURL &target);
    FolderPicture &picture();

    FileManager &m_fileManager;
    FileMover m_mover;
    FileMover m_secondMover;                  ///< of the thread that helps to look for files
    std::unique_ptr<FolderPicture> m_picture; ///< made when a name is in use
    QString m_rollbackLog;
    PlannedFiles m_files; ///< read when records form chains
    ListedNames m_names;  ///< during the first pass, else empty
    std::vector<TRenameTRX> m_transactions;
    bool m_chained = false;
    std::vector<bool> m_completed; ///< by index: renamed, and as a run would have done it
    std::vector<char> m_found; ///< by index: the renamed file is there; no bits, for two threads
};
