// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "commonprocs/URLListProcessing.h"
#include "platform/PrivateFolder.h"

#include <QStandardPaths>

#include <array>
#include <pwd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kAccountBufferSize = 16384;

TFileURL environmentFolder(const char *variable)
{
    const QByteArray path = qgetenv(variable);
    return path.startsWith('/') ? TFileURL::fileURLWithPath(ByteNames::fromBytes(path))
                                : TFileURL();
}

} // namespace

TFileURL appSupportDirURL()
{
    if (TFileURL data = environmentFolder("XDG_DATA_HOME"); data.isValid())
        return data;
    const TFileURL home = homeDirectoryURL();
    return home.isValid() ? home.appendingPathComponent(u".local/share"_s) : TFileURL();
}

TFileURL tempDirectoryURL()
{
    const TFileURL folder = environmentFolder("TMPDIR");
    return folder.isValid() ? folder : TFileURL::fileURLWithPath(u"/tmp"_s);
}

TFileURL homeDirectoryURL()
{
    if (TFileURL home = environmentFolder("HOME"); home.isValid())
        return home;
    passwd entry{};
    passwd *found = nullptr;
    std::array<char, kAccountBufferSize> buffer{};
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        return {};
    return TFileURL::fileURLWithPath(ByteNames::fromBytes(found->pw_dir));
}

TFileURL applicationDocumentsDirectory()
{
    return TFileURL::fileURLWithPath(
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

TFileURL getSandboxedAppSupportFolder(const QString &name, const QString &subfolder)
{
    const TFileURL support = appSupportDirURL();
    if (!support.isValid())
        return {};
    TFileURL folder = support.appendingPathComponent(name);
    if (!subfolder.isEmpty())
        folder = folder.appendingPathComponent(subfolder);
    return makePrivateFolder(folder.fileSystemPath()) ? folder : TFileURL();
}
