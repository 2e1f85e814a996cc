// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FaultyFileManager.h"

#include <algorithm>
#include <cerrno>

void FaultyFileManager::fail(Call call, int error, int times, const QByteArray &name)
{
    const std::lock_guard lock(m_mutex);
    m_faults.push_back({call, name, error, times, {}});
}

void FaultyFileManager::before(Call call, std::function<void()> action, const QByteArray &name)
{
    const std::lock_guard lock(m_mutex);
    m_faults.push_back({call, name, 0, 1, std::move(action)});
}

int FaultyFileManager::count(Call call) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_counts.find(call);
    return found == m_counts.end() ? 0 : found->second;
}

int FaultyFileManager::openFolders() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_folders.size());
}

void FaultyFileManager::reset()
{
    const std::lock_guard lock(m_mutex);
    m_faults.clear();
    m_counts.clear();
}

std::vector<std::function<void()>> FaultyFileManager::takeActions(Call call, const QByteArray &name)
{
    const std::lock_guard lock(m_mutex);
    std::vector<std::function<void()>> actions;
    std::erase_if(m_faults, [&](Fault &fault) {
        const bool due =
            fault.action && fault.call == call && (fault.name.isEmpty() || fault.name == name);
        if (due)
            actions.push_back(std::move(fault.action));
        return due;
    });
    return actions;
}

int FaultyFileManager::enter(Call call, const QByteArray &name)
{
    for (const std::function<void()> &action : takeActions(call, name))
        action();
    const std::lock_guard lock(m_mutex);
    ++m_counts[call];
    const auto fault = std::find_if(m_faults.begin(), m_faults.end(), [&](const Fault &each) {
        return !each.action && each.call == call && each.times != 0 &&
               (each.name.isEmpty() || each.name == name);
    });
    if (fault == m_faults.end())
        return 0;
    if (fault->times > 0)
        --fault->times;
    return fault->error;
}

int FaultyFileManager::openFolder(const QByteArray &path)
{
    if (const int error = enter(Call::OpenFolder, path))
        return -error;
    const int folder = m_disk.openFolder(path);
    if (folder >= 0) {
        const std::lock_guard lock(m_mutex);
        m_folders[folder] = path;
    }
    return folder;
}

void FaultyFileManager::closeFolder(int folder)
{
    {
        const std::lock_guard lock(m_mutex);
        m_folders.erase(folder);
    }
    m_disk.closeFolder(folder);
}

int FaultyFileManager::status(int folder, const QByteArray &name, bool followLink, TFileStatus &out)
{
    if (const int error = enter(Call::Status, name))
        return error;
    const int error = m_disk.status(folder, spelled(folder, name), followLink, out);
    if (m_ignoresCase) {
        out.inode ^= qHash(name);
        out.birth = TDate();
    }
    return error;
}

QByteArray FaultyFileManager::spelled(int folder, const QByteArray &name)
{
    QByteArray found = name;
    if (m_ignoresCase && folder >= 0)
        m_disk.list(folder, [&](const char *entry, TFileStatus::Kind, quint64) {
            if (name.compare(entry, Qt::CaseInsensitive) == 0)
                found = entry;
        });
    return found;
}

int FaultyFileManager::list(
    int folder, const std::function<void(const char *, TFileStatus::Kind, quint64)> &entry)
{
    QByteArray path;
    {
        const std::lock_guard lock(m_mutex);
        path = m_folders[folder];
    }
    const int error = enter(Call::List, path);
    return error != 0 ? error : m_disk.list(folder, entry);
}

int FaultyFileManager::renameNoReplace(int folder, const QByteArray &from, const QByteArray &to)
{
    TFileStatus ignored;
    const int error = enter(Call::RenameNoReplace, from);
    if (error != 0)
        return error;
    const bool isTaken =
        m_ignoresCase && m_disk.status(folder, spelled(folder, to), false, ignored) == 0;
    return isTaken ? EEXIST : m_disk.renameNoReplace(folder, from, to);
}

int FaultyFileManager::renameReplacing(int folder, const QByteArray &from, const QByteArray &to)
{
    const int error = enter(Call::RenameReplacing, from);
    return error != 0 ? error : m_disk.renameReplacing(folder, from, to);
}

int FaultyFileManager::link(int folder, const QByteArray &from, const QByteArray &to)
{
    const int error = enter(Call::Link, from);
    return error != 0 ? error : m_disk.link(folder, from, to);
}

int FaultyFileManager::unlink(int folder, const QByteArray &name)
{
    const int error = enter(Call::Unlink, name);
    return error != 0 ? error : m_disk.unlink(folder, name);
}

int FaultyFileManager::access(const QByteArray &path, int mode)
{
    const int error = enter(Call::Access, path);
    return error != 0 ? error : m_disk.access(path, mode);
}

int FaultyFileManager::sync(int file)
{
    const int error = enter(Call::Sync);
    return error != 0 ? error : m_disk.sync(file);
}
