// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/URLListProcessing.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/FolderWalk.h"
#include "commonprocs/TFileItem.h"
#include "commonprocs/easyfile.h"
#include "platform/TypeIdentifiers.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kUsualResultSize = 100;
constexpr const char *kReceiverText = "receiver must be a fileURL";
constexpr const char *kTargetText = "target must be a fileURL";

using Matches = std::function<bool(const TFileURL &)>;

int statusOf(const TFileURL &url, bool followLink, TFileStatus &out)
{
    return url.isValid() ? DiskFileManager().status(AT_FDCWD, url.fileSystemPath(), followLink, out)
                         : ENOENT;
}

/// Of what a link leads to, or of the link itself when its target is missing.
int statusBehindLink(const TFileURL &url, TFileStatus &out)
{
    return statusOf(url, true, out) == 0 ? 0 : statusOf(url, false, out);
}

bool isFolderItself(const TFileURL &url)
{
    TFileStatus status;
    return statusOf(url, false, status) == 0 && status.kind == TFileStatus::Kind::Folder;
}

bool hasAccess(const TFileURL &url, int mode)
{
    return url.isValid() && DiskFileManager().access(url.fileSystemPath(), mode) == 0;
}

QLatin1StringView typeOf(const TFileURL &url, const TFileStatus &status)
{
    return TypeIdentifiers::identifierForExtension(url.pathExtension(),
                                                   status.kind == TFileStatus::Kind::Folder);
}

bool conformsToAny(QLatin1StringView type, const QList<QLatin1StringView> &wanted)
{
    return std::ranges::any_of(
        wanted, [type](QLatin1StringView each) { return TypeIdentifiers::conformsTo(type, each); });
}

bool isApplicationOrBundle(const TFileURL &folder)
{
    const auto type = TypeIdentifiers::identifierForExtension(folder.pathExtension(), true);
    return conformsToAny(type, {TypeIdentifiers::kApplication, TypeIdentifiers::kBundle});
}

/// Collects what matches, from folders inside folders too; what cannot be listed is passed over.
class Collector : public FolderWalk::Visitor
{
public:
    Collector(const Matches &matches, TFileURLs &result)
        : m_matches(matches)
        , m_result(result)
    {
    }

    TFolderPtr visit(const FolderWalk::Entry &entry) override
    {
        const TFileURL url(entry.folder, ByteNames::fromBytes(entry.name));
        if (m_matches(url))
            m_result.append(url);
        const bool isFolder = entry.error == 0 && entry.status.kind == TFileStatus::Kind::Folder;
        if (!isFolder || isApplicationOrBundle(url))
            return {};
        return std::make_shared<const TFolder>(url.path());
    }
    void listed(const TFolder & /*folder*/, qsizetype /*entries*/) override {}
    void failed(const TFolder & /*folder*/, int /*error*/) override {}

private:
    const Matches &m_matches;
    TFileURLs &m_result;
};

void collect(const TFileURL &url, const Matches &matches, TFileURLs &result)
{
    if (!URLisValidFile(url))
        return;
    if (matches(url))
        result.append(url);
    if (!isURLaFolder(url) || isApplicationOrBundle(url))
        return;
    DiskFileManager disk;
    Collector collector(matches, result);
    FolderWalk(disk).walk(std::make_shared<const TFolder>(url.path()), collector);
}

TFileFacts factsOf(const TFileURL &url)
{
    TFileStatus status;
    return statusOf(url, false, status) == 0 ? TFileFacts::fromStatus(status) : TFileFacts();
}

TFileStatus identityOf(const TFileURL &url)
{
    TFileStatus status;
    if (const int error = statusBehindLink(url, status))
        throw ResouceUnavailableException(textForErrno(error).toStdString());
    return status;
}

} // namespace

bool URLisValidFile(const TFileURL &url)
{
    TFileStatus ignored;
    return statusOf(url, false, ignored) == 0;
}

bool URLisFolder(const TFileURL &url)
{
    TFileStatus status;
    return statusOf(url, true, status) == 0 && status.kind == TFileStatus::Kind::Folder;
}

bool URLisDirectory(const TFileURL &url)
{
    return URLisFolder(url);
}

bool isURLaFolder(const TFileURL &url)
{
    return URLisFolder(url);
}

bool URLcanBeRead(const TFileURL &url)
{
    return hasAccess(url, R_OK);
}

bool URLcanBeWritten(const TFileURL &url)
{
    return hasAccess(url, W_OK);
}

bool URLcanBeDeleted(const TFileURL &url)
{
    if (!URLisValidFile(url) || url.lastPathComponent().isEmpty())
        return false;
    const QByteArray folder = url.folder()->bytes();
    struct stat folderStatus
    {
    };
    struct stat itemStatus
    {
    };
    if (!hasAccess(url.deletingLastPathComponent(), W_OK | X_OK) ||
        stat(folder.constData(), &folderStatus) != 0 ||
        lstat(url.fileSystemPath().constData(), &itemStatus) != 0)
        return false;
    const uid_t user = geteuid();
    return (folderStatus.st_mode & S_ISVTX) == 0 || user == 0 || user == folderStatus.st_uid ||
           user == itemStatus.st_uid;
}

bool fileConformsTo(const TFileURL &url, QLatin1StringView type)
{
    return URLmatchesRequestedUTI(url, {type});
}

bool URLmatchesRequestedUTI(const TFileURL &url, const QList<QLatin1StringView> &types)
{
    TFileStatus status;
    return statusBehindLink(url, status) == 0 && conformsToAny(typeOf(url, status), types);
}

bool URLExtensionMatchesRequestedList(const TFileURL &url, const QStringList &extensions)
{
    return extensions.contains(url.pathExtension()) && URLisValidFile(url);
}

void processURLforUTItoList(const TFileURL &url, const QList<QLatin1StringView> &types,
                            TFileURLs &result)
{
    collect(
        url, [&types](const TFileURL &each) { return URLmatchesRequestedUTI(each, types); },
        result);
}

void processURLforExtensionstoList(const TFileURL &url, const QStringList &extensions,
                                   TFileURLs &result)
{
    collect(
        url,
        [&extensions](const TFileURL &each) {
            return URLExtensionMatchesRequestedList(each, extensions);
        },
        result);
}

TFileURLs processURLsWithFilterTypes(const TFileURLs &urls, const QList<QLatin1StringView> &types,
                                     bool descend)
{
    TFileURLs result;
    result.reserve(std::max(kUsualResultSize, urls.size()));
    for (const TFileURL &url : urls) {
        if (descend && isFolderItself(url))
            processURLforUTItoList(url, types, result);
        else if (URLmatchesRequestedUTI(url, types))
            result.append(url);
    }
    return result;
}

TFileURLs removeURLsOfTypeExceptFor(const TFileURLs &urls, const QList<QLatin1StringView> &types,
                                    const QList<QLatin1StringView> &exceptions)
{
    TFileURLs result;
    std::ranges::copy_if(urls, std::back_inserter(result), [&](const TFileURL &url) {
        return !URLmatchesRequestedUTI(url, types) || URLmatchesRequestedUTI(url, exceptions);
    });
    return result;
}

TFileURLs StripDirectoryURLsFrom(const TFileURLs &urls)
{
    TFileURLs result;
    std::ranges::copy_if(urls, std::back_inserter(result), std::not_fn(URLisDirectory));
    return result;
}

std::optional<QString> createUniqueFileNameWithParentAndNameBase(const TFileURL &folder,
                                                                 const QString &base,
                                                                 const QString &extension)
{
    if (base.isNull() || extension.isNull() || !URLisFolder(folder))
        return {};
    DiskFileManager disk;
    const int descriptor = disk.openFolder(folder.fileSystemPath());
    if (descriptor < 0)
        return {};
    QString candidate = base;
    TFileStatus ignored;
    for (qint64 number = 1;
         disk.status(descriptor, ByteNames::toBytes(candidate + u'.' + extension), false,
                     ignored) == 0;
         ++number)
        candidate = base + u'-' + QString::number(number);
    disk.closeFolder(descriptor);
    return candidate;
}

std::optional<TFileURL> createUniqueFileURLWithParentAndNameBase(const TFileURL &folder,
                                                                 const QString &base,
                                                                 const QString &extension)
{
    const auto unique = createUniqueFileNameWithParentAndNameBase(folder, base, extension);
    if (!unique)
        return {};
    return folder.appendingPathComponent(extension.isEmpty() ? *unique
                                                             : *unique + u'.' + extension);
}

TDate getFileModificationDate(const TFileURL &url)
{
    return factsOf(url).modification;
}

TDate getFileCreationDate(const TFileURL &url)
{
    return factsOf(url).creation;
}

qint64 getFileSize(const TFileURL &url)
{
    return factsOf(url).size;
}

bool compareFileURL(const TFileURL &receiver, const TFileURL &target)
{
    if (!receiver.isValid())
        throw std::logic_error(kReceiverText);
    if (!target.isValid())
        throw std::logic_error(kTargetText);
    if (receiver == target)
        return true;
    const TFileStatus a = identityOf(receiver);
    const TFileStatus b = identityOf(target);
    return a.device == b.device && a.inode == b.inode;
}

bool isSameFileURL(const TFileURL &receiver, const TFileURL &target)
{
    return compareFileURL(receiver, target);
}
