// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/UnshownNames.h"

#include "commonprocs/ByteNames.h"

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

struct CloseFolder
{
    void operator()(DIR *folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

OpenFolder opened(const QString &path)
{
    return OpenFolder(::opendir(ByteNames::toBytes(path).constData()));
}

bool isFolder(const dirent &entry, DIR &folder)
{
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK)
        return entry.d_type == DT_DIR;
    struct stat status = {};
    return ::fstatat(::dirfd(&folder), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

/// The one entry of the folder whose name Qt shows like that; the name itself when there is none,
/// or more than one.
QString entryShownAs(const QString &name, const QString &folder)
{
    const OpenFolder open = opened(folder);
    QString found;
    while (open) {
        const dirent *const entry = ::readdir(open.get());
        if (entry == nullptr)
            break;
        if (QString::fromUtf8(entry->d_name) != name)
            continue;
        if (!found.isNull())
            return name;
        found = ByteNames::fromBytes(entry->d_name);
    }
    return found.isNull() ? name : found;
}

} // namespace

namespace UnshownNames {

TFileURLs in(const QString &folder, Kind kind, const std::atomic<bool> &stop)
{
    const OpenFolder open = opened(folder);
    QByteArrayList names;
    while (open && !stop) {
        const dirent *const entry = ::readdir(open.get());
        if (entry == nullptr)
            break;
        if (entry->d_name[0] != '.' &&
            ByteNames::hasRawBytes(ByteNames::fromBytes(entry->d_name)) &&
            isFolder(*entry, *open) == (kind == Kind::Folders))
            names += entry->d_name;
    }
    std::sort(names.begin(), names.end());
    const auto shared = std::make_shared<const TFolder>(absolutePath(folder));
    TFileURLs urls;
    for (const QByteArray &name : names)
        urls += TFileURL(shared, ByteNames::fromBytes(name));
    return urls;
}

QString restored(const QString &path)
{
    if (!path.contains(QChar::ReplacementCharacter))
        return path;
    QString folder = u"/"_s;
    for (const QString &component : path.split(u'/', Qt::SkipEmptyParts)) {
        if (folder != "/"_L1)
            folder += u'/';
        const bool isDoubtful = component.contains(QChar::ReplacementCharacter);
        folder += isDoubtful ? entryShownAs(component, folder) : component;
    }
    return folder;
}

} // namespace UnshownNames
