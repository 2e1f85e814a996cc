// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/TRenameTRX.h"

#include "commonprocs/ByteNames.h"
#include "rollback/FolderPool.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <pwd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kOriginalPath{"originalPath"};
constexpr QLatin1StringView kRenamedURL{"renamedURL"};
constexpr QLatin1StringView kOriginalURL{"originalURL"};
constexpr QLatin1StringView kErrorLog{"errorLog"};
constexpr QLatin1StringView kRenameComplete{"renameComplete"};
// The flag "insured" has always stood under this key; logs stay readable only if it stays there.
constexpr QLatin1StringView kInsured{"color"};

constexpr std::array<const char *, 2> kClass{"TRenameTRX", "NSObject"};

void encodeUrl(TEncoder &coder, QLatin1StringView key, const TFileURL &url)
{
    if (url.isValid())
        coder.encodeUrl(key, url.folder()->url(), url.relativeUrl());
}

/// Home folder of a user, or of this one for an empty name; null when unknown.
QString homeOf(const QString &user)
{
    const char *home = user.isEmpty() ? std::getenv("HOME") : nullptr;
    if (home == nullptr || *home == '\0') {
        const passwd *entry = user.isEmpty() ? ::getpwuid(::getuid())
                                             : ::getpwnam(ByteNames::toBytes(user).constData());
        home = entry != nullptr ? entry->pw_dir : nullptr;
    }
    return home != nullptr ? ByteNames::fromBytes(home) : QString();
}

bool hasDotParts(QStringView path)
{
    for (qsizetype i = 1; i < path.size(); ++i) {
        if (path[i] != u'.' || path[i - 1] != u'/')
            continue;
        QStringView part = path.sliced(i);
        part = part.first(part.indexOf(u'/') < 0 ? part.size() : part.indexOf(u'/'));
        if (part == "."_L1 || part == ".."_L1)
            return true;
    }
    return false;
}

bool isPlainName(QStringView name)
{
    const auto isOdd = [](QChar unit) { return unit == u'/' || unit.isNull(); };
    return !name.isEmpty() && name != "."_L1 && name != ".."_L1 &&
           std::none_of(name.begin(), name.end(), isOdd);
}

bool isPlainPath(QStringView path)
{
    return path.startsWith(u'/') && !path.contains(QChar::Null) && !hasDotParts(path);
}

} // namespace

QString expandingTildeInPath(const QString &path)
{
    if (!path.startsWith(u'~'))
        return path;
    const qsizetype slash = path.indexOf(u'/');
    const qsizetype end = slash < 0 ? path.size() : slash;
    const QString home = homeOf(path.mid(1, end - 1));
    return home.isNull() ? path : home + path.mid(end);
}

TRenameTRX TRenameTRX::TRXWithSource(const TFileURL &url)
{
    TRenameTRX transaction;
    transaction.originalURL = url;
    transaction.originalPath = expandingTildeInPath(url.path());
    return transaction;
}

TArchiveClass TRenameTRX::archiveClass()
{
    return kClass;
}

void TRenameTRX::encodeWithCoder(TEncoder &coder) const
{
    if (!ByteNames::hasRawBytes(originalPath))
        coder.encodeString(kOriginalPath, originalPath);
    encodeUrl(coder, kRenamedURL, renamedURL);
    encodeUrl(coder, kOriginalURL, originalURL);
    errorLog.encode(coder, kErrorLog);
    coder.encodeBool(kRenameComplete, renameComplete);
    coder.encodeBool(kInsured, insured);
}

void TRenameTRX::initWithCoder(const TDecoder &coder)
{
    FolderPool folders;
    initWithCoder(coder, folders);
}

void TRenameTRX::initWithCoder(const TDecoder &coder, FolderPool &folders)
{
    originalPath = coder.decodeString(kOriginalPath);
    if (originalPath.isNull()) {
        originalURL = folders.fromString(coder.decodeUrl(kOriginalURL));
    } else {
        originalPath = expandingTildeInPath(originalPath);
        originalURL = folders.fileURLWithPath(originalPath);
    }
    renamedURL = folders.fromString(coder.decodeUrl(kRenamedURL));
    errorLog = TErrorLog::decode(coder, kErrorLog);
    renameComplete = coder.decodeBool(kRenameComplete);
    renamedExistsWithStatus = 0;
    insured = coder.decodeBool(kInsured);
}

bool TRenameTRX::isTrustworthy() const
{
    if (!originalURL.isValid() || !renamedURL.isValid())
        return false;
    // A relative path reads as one in the current folder, which the URL no longer shows.
    if (!originalPath.isNull() && !isPlainPath(originalPath))
        return false;
    const TFolderPtr &folder = originalURL.folder();
    if (folder != renamedURL.folder() && folder->path() != renamedURL.folder()->path())
        return false;
    return isPlainPath(folder->path()) && isPlainName(originalURL.lastPathComponent()) &&
           isPlainName(renamedURL.lastPathComponent());
}
