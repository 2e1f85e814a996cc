// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/RecoveryProgress.h"

#include "commonprocs/ByteNames.h"

#include <QSet>

#include <algorithm>
#include <thread>
#include <utility>

void RecoveryProgress::start(const QString &logsFolder, FileManager &fileManager,
                             const Clock &clock, Done done)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_isRunning = true;
        m_folders.reset();
        m_folderAtHand = ByteNames::toBytes(logsFolder);
        m_done = std::move(done);
    }
    std::thread([progress = shared_from_this(), logsFolder, &fileManager, &clock] {
        progress->end(recoverInterruptedRuns(logsFolder, fileManager, clock, progress.get()));
    }).detach();
}

void RecoveryProgress::end(std::vector<RecoveredRun> runs)
{
    const std::scoped_lock lock(m_mutex);
    if (const Done done = std::exchange(m_done, {}))
        done(std::move(runs));
    m_isRunning = false;
    m_changed.notify_all();
}

bool RecoveryProgress::waitFor(std::chrono::milliseconds patience) const
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, patience, [this] { return !m_isRunning; });
}

void RecoveryProgress::abandon()
{
    const std::scoped_lock lock(m_mutex);
    m_done = {};
}

QString RecoveryProgress::folderAtHand() const
{
    const std::scoped_lock lock(m_mutex);
    return ByteNames::forDisplay(ByteNames::fromBytes(m_folderAtHand));
}

bool RecoveryProgress::leavesAlone(const std::vector<TFileItem> &files) const
{
    QSet<QByteArray> folders;
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_isRunning || !m_folders)
            return !m_isRunning;
        folders = {m_folders->begin(), m_folders->end()};
    }
    QSet<QByteArray> onTheWay{"/"}; // to one of the folders, or one itself
    for (const QByteArray &path : folders)
        for (qsizetype end = path.size(); end > 0; end = path.lastIndexOf('/', end - 1))
            onTheWay.insert(path.first(end));
    return std::none_of(files.begin(), files.end(), [&](const TFileItem &file) {
        const QByteArray &folder = file.url.folder()->bytes();
        return onTheWay.contains(folder) &&
               (folders.contains(folder) || onTheWay.contains(file.url.fileSystemPath()));
    });
}

void RecoveryProgress::setFolders(std::vector<QByteArray> folders)
{
    const std::scoped_lock lock(m_mutex);
    m_folders = std::move(folders);
}

void RecoveryProgress::setFolderAtHand(const QByteArray &folder)
{
    const std::scoped_lock lock(m_mutex);
    m_folderAtHand = folder;
}
