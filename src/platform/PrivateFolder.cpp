// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PrivateFolder.h"

#include <cerrno>
#include <sys/stat.h>

namespace {

constexpr mode_t kOwnerOnly = 0700;

bool isFolder(const QByteArray &path)
{
    struct stat status = {};
    return stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

bool makePrivateFolder(const QByteArray &path)
{
    if (mkdir(path.constData(), kOwnerOnly) == 0)
        return true;
    const auto slash = path.lastIndexOf('/');
    if (errno != ENOENT || slash <= 0)
        return isFolder(path);
    return makePrivateFolder(path.first(slash)) &&
           (mkdir(path.constData(), kOwnerOnly) == 0 || isFolder(path)); // others may be faster
}
