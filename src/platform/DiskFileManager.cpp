// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileManager.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

constexpr std::size_t kListBufferSize = 65536;

int answer(int result)
{
    return result == 0 ? 0 : errno;
}

/// A NUL inside would make the system see another, shorter name.
bool hasNul(const QByteArray &name)
{
    return name.contains('\0');
}

TDate toDate(const statx_timestamp &time)
{
    return TDate::fromSeconds(time.tv_sec, time.tv_nsec);
}

TFileStatus::Kind kindOfMode(mode_t mode)
{
    if (S_ISREG(mode))
        return TFileStatus::Kind::File;
    if (S_ISDIR(mode))
        return TFileStatus::Kind::Folder;
    return S_ISLNK(mode) ? TFileStatus::Kind::Link : TFileStatus::Kind::Other;
}

TFileStatus::Kind kindOfEntry(unsigned char type)
{
    switch (type) {
    case DT_REG:
        return TFileStatus::Kind::File;
    case DT_DIR:
        return TFileStatus::Kind::Folder;
    case DT_LNK:
        return TFileStatus::Kind::Link;
    default:
        return TFileStatus::Kind::Other;
    }
}

bool isDots(const char *name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

} // namespace

int DiskFileManager::openFolder(const QByteArray &path)
{
    if (hasNul(path))
        return -EINVAL;
    const int folder = open(path.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return folder >= 0 ? folder : -errno;
}

void DiskFileManager::closeFolder(int folder)
{
    close(folder);
}

int DiskFileManager::status(int folder, const QByteArray &name, bool followLink, TFileStatus &out)
{
    if (hasNul(name))
        return EINVAL;
    const int flags = AT_STATX_DONT_SYNC | (followLink ? 0 : AT_SYMLINK_NOFOLLOW);
    struct statx status
    {
    };
    if (statx(folder, name.constData(), flags, STATX_BASIC_STATS | STATX_BTIME, &status) != 0)
        return errno;
    out.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    out.inode = status.stx_ino;
    out.size = static_cast<qint64>(status.stx_size);
    out.modification = toDate(status.stx_mtime);
    out.birth = (status.stx_mask & STATX_BTIME) != 0 ? toDate(status.stx_btime) : TDate();
    out.links = status.stx_nlink;
    out.kind = kindOfMode(status.stx_mode);
    return 0;
}

int DiskFileManager::list(
    int folder,
    const std::function<void(const char *name, TFileStatus::Kind kind, quint64 inode)> &entry)
{
    const int listing = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (listing < 0)
        return errno;
    const auto buffer = std::make_unique_for_overwrite<char[]>(kListBufferSize);
    int error = 0;
    for (;;) {
        const ssize_t length = getdents64(listing, buffer.get(), kListBufferSize);
        if (length <= 0) {
            error = length < 0 ? errno : 0;
            break;
        }
        for (ssize_t at = 0; at < length;) {
            const char *record = buffer.get() + at;
            dirent64 header{};
            std::memcpy(&header, record, offsetof(dirent64, d_name));
            const char *name = record + offsetof(dirent64, d_name);
            if (!isDots(name))
                entry(name, kindOfEntry(header.d_type), header.d_ino);
            at += header.d_reclen;
        }
    }
    close(listing);
    return error;
}

int DiskFileManager::renameNoReplace(int folder, const QByteArray &from, const QByteArray &to)
{
    if (hasNul(from) || hasNul(to))
        return EINVAL;
    return answer(renameat2(folder, from.constData(), folder, to.constData(), RENAME_NOREPLACE));
}

int DiskFileManager::renameReplacing(int folder, const QByteArray &from, const QByteArray &to)
{
    if (hasNul(from) || hasNul(to))
        return EINVAL;
    return answer(renameat(folder, from.constData(), folder, to.constData()));
}

int DiskFileManager::link(int folder, const QByteArray &from, const QByteArray &to)
{
    if (hasNul(from) || hasNul(to))
        return EINVAL;
    return answer(linkat(folder, from.constData(), folder, to.constData(), 0));
}

int DiskFileManager::unlink(int folder, const QByteArray &name)
{
    return hasNul(name) ? EINVAL : answer(unlinkat(folder, name.constData(), 0));
}

int DiskFileManager::access(const QByteArray &path, int mode)
{
    return hasNul(path) ? EINVAL : answer(::access(path.constData(), mode));
}

int DiskFileManager::sync(int file)
{
    return answer(fsync(file));
}
