// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/easyfile.h"
#include "rollback/TRenameTRX.h"

#include <atomic>
#include <functional>
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

    RollbackRun(FileManager &fileManager, std::vector<TRenameTRX> transactions);

    const std::vector<TRenameTRX> &transactions() const { return m_transactions; }
    /// First pass: statuses and problems of every record.
    void processLog(const Progress &progress);
    /// Second pass, in log order, or from the last record to the first. restored, when given, is
    /// called with the index and the location of each file moved back.
    void performRollBack(const Progress &progress, const std::atomic<bool> &abort, bool reverse,
                         const std::function<void(qsizetype, const TFileURL &)> &restored = {});
    /// A collision-free location beside the given one.
    TFileURL makeSafeURLFromURL(const TFileURL &url);
    /// True when records form chains (2→3, then 1→2), which only the reverse order restores whole.
    bool recommendsReverse() const;

private:
    void rollBack(qsizetype index,
                  const std::function<void(qsizetype, const TFileURL &)> &restored);

    FileManager &m_fileManager;
    FileMover m_mover;
    std::vector<TRenameTRX> m_transactions;
};
