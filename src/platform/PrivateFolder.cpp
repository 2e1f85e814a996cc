// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PrivateFolder.h"

#include <QDir>
#include <QFileInfo>

bool makePrivateFolder(const QString &path)
{
    constexpr QFileDevice::Permissions kOwnerOnly =
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
    const QFileInfo info(path);
    if (path.isEmpty() || info.isDir())
        return info.isDir();
    return makePrivateFolder(info.path()) &&
           (QDir().mkdir(path, kOwnerOnly) || QFileInfo(path).isDir()); // others may be faster
}
