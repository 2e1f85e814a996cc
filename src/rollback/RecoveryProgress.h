// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileItem.h"
#include "rollback/RunJournal.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

/// How far the recovery of interrupted runs has got on a thread of its own. Nobody has to wait for
/// that thread: a folder on a network that does not answer any more may hold it for ever, and the
/// program ends without it. Shared by the thread and by whoever asks; any thread.
class RecoveryProgress : public std::enable_shared_from_this<RecoveryProgress>
{
public:
    using Done = std::function<void(std::vector<RecoveredRun> runs)>;

    /// Begins. Disk and clock are used for as long as the program lives; done is called on the
    /// recovery's thread unless it was abandoned before.
    void start(const QString &logsFolder, FileManager &fileManager, const Clock &clock, Done done);

    /// True as soon as no recovery is under way; false when that takes longer.
    bool waitFor(std::chrono::milliseconds patience) const;
    bool isOver() const { return waitFor(std::chrono::milliseconds(0)); }
    /// The result is not wanted any more; done is not called once this has returned.
    void abandon();
    /// The folder that is looked into, for display: first that of the logs.
    QString folderAtHand() const;
    /// True when moving these files cannot change what the recovery looks for: by path, its folders
    /// are others, and none of them is within one of the files.
    bool leavesAlone(const std::vector<TFileItem> &files) const;

    /// For the recovery: the folders of all runs; then each when it is looked into.
    void setFolders(std::vector<QByteArray> folders);
    void setFolderAtHand(const QByteArray &folder);

private:
    void end(std::vector<RecoveredRun> runs);

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::optional<std::vector<QByteArray>> m_folders; ///< none while they are not known
    QByteArray m_folderAtHand;
    Done m_done;
    bool m_isRunning = false;
};
