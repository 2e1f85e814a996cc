// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileManager.h"

#include <functional>
#include <map>
#include <mutex>
#include <vector>

/// The real disk, but chosen calls fail with a given errno, are counted, or are preceded by
/// something that the test does meanwhile. May be used from several threads; what runs before a
/// call runs on the caller's thread and may set further faults.
class FaultyFileManager : public FileManager
{
public:
    enum class Call : quint8 {
        OpenFolder,
        Status,
        List,
        RenameNoReplace,
        RenameReplacing,
        Link,
        Unlink,
        Access,
        Sync
    };
    static constexpr int kAlways = -1;

    /// The next `times` calls of the kind answer the errno without touching the disk. A name
    /// narrows this to calls whose (source) name or path is just that. Faults set earlier go first.
    void fail(Call call, int error, int times = kAlways, const QByteArray &name = {});
    /// From now on spellings of a name are one directory entry, as on a memory card; each has an
    /// inode number of its own and no birth time, as some user-space file systems have it.
    void ignoreCase() { m_ignoresCase = true; }
    /// Runs once, just before the next call of the kind (with that name).
    void before(Call call, std::function<void()> action, const QByteArray &name = {});
    /// How often the kind has been called, failed calls included.
    int count(Call call) const;
    /// Folders opened and not closed yet.
    int openFolders() const;
    /// Forgets faults and counts.
    void reset();

    int openFolder(const QByteArray &path) override;
    void closeFolder(int folder) override;
    int status(int folder, const QByteArray &name, bool followLink, TFileStatus &out) override;
    int list(int folder,
             const std::function<void(const char *name, TFileStatus::Kind kind, quint64 inode)>
                 &entry) override;
    int renameNoReplace(int folder, const QByteArray &from, const QByteArray &to) override;
    int renameReplacing(int folder, const QByteArray &from, const QByteArray &to) override;
    int link(int folder, const QByteArray &from, const QByteArray &to) override;
    int unlink(int folder, const QByteArray &name) override;
    int access(const QByteArray &path, int mode) override;
    int sync(int file) override;

private:
    struct Fault
    {
        Call call;
        QByteArray name;
        int error = 0;
        int times = kAlways;
        std::function<void()> action; ///< instead of an error
    };

    /// Counts the call, runs what is to run before it, and gives the errno it is to fail with.
    int enter(Call call, const QByteArray &name = {});
    std::vector<std::function<void()>> takeActions(Call call, const QByteArray &name);
    /// The name as it is listed, by any spelling.
    QByteArray spelled(int folder, const QByteArray &name);

    DiskFileManager m_disk;
    bool m_ignoresCase = false;
    mutable std::mutex m_mutex;
    std::vector<Fault> m_faults;
    std::map<Call, int> m_counts;
    std::map<int, QByteArray> m_folders;
};
