// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/FileConformance.h"

#include "platform/TypeIdentifiers.h"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr qsizetype kHeadBytes = 1024;

QByteArray headOfFile(const QByteArray &path)
{
    // A pipe of that name must not hold up the run.
    const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0)
        return {};
    QByteArray head(kHeadBytes, Qt::Uninitialized);
    const ssize_t length = ::read(file, head.data(), kHeadBytes);
    ::close(file);
    head.truncate(std::max<qsizetype>(length, 0));
    return head;
}

} // namespace

bool fileConformsTo(const TFileItem &item, QLatin1StringView type)
{
    const bool isFolder = item.facts.kind == TFileStatus::Kind::Folder;
    const QString extension = item.url.pathExtension();
    if (!TypeIdentifiers::conformsTo(TypeIdentifiers::identifierForExtension(extension, isFolder),
                                     type))
        return false;
    return isFolder || !TypeIdentifiers::needsContentTest(extension) ||
           TypeIdentifiers::looksLikeTransportStream(headOfFile(item.url.fileSystemPath()));
}
