// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/LastingInodes.h"

#include <algorithm>
#include <array>
#include <linux/magic.h>
#include <sys/vfs.h>

namespace {

// Those that <linux/magic.h> does not name.
constexpr quint64 kBcachefsMagic = 0xCA451A4E;
constexpr quint64 kJfsMagic = 0x3153464A;

constexpr std::array<quint64, 8> kReliable{EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC,
                                           F2FS_SUPER_MAGIC, TMPFS_MAGIC,     RAMFS_MAGIC,
                                           kBcachefsMagic,   kJfsMagic};

bool keepsInodes(const struct statfs &status)
{
    return fileSystemKeepsInodes(static_cast<quint64>(status.f_type) & 0xFFFFFFFFU);
}

} // namespace

bool fileSystemKeepsInodes(quint64 magic)
{
    return std::find(kReliable.begin(), kReliable.end(), magic) != kReliable.end();
}

bool folderKeepsInodes(const QByteArray &path)
{
    struct statfs status;
    return ::statfs(path.constData(), &status) == 0 && keepsInodes(status);
}

bool folderKeepsInodes(int folder)
{
    struct statfs status;
    return ::fstatfs(folder, &status) == 0 && keepsInodes(status);
}
