// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/FolderPool.h"

#include "commonprocs/ByteNames.h"

using namespace Qt::StringLiterals;

const TFolderPtr &FolderPool::folderFor(QStringView prefix, Prefixes &known,
                                        TFileURL (*make)(const QString &))
{
    if (known.last && prefix == known.lastPrefix)
        return known.last;
    known.lastPrefix = prefix.toString();
    TFolderPtr &found = known.folders[known.lastPrefix];
    if (!found)
        found = pooled(make(known.lastPrefix + u"/x"_s).folder());
    known.last = found;
    return known.last;
}

TFileURL FolderPool::fileURLWithPath(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    QString name = path.mid(slash + 1);
    if (!path.startsWith(u'/') || name.isEmpty() || name.contains(QChar::Null))
        return shared(TFileURL::fileURLWithPath(path));
    const TFolderPtr &folder =
        folderFor(QStringView(path).first(slash), m_paths, &TFileURL::fileURLWithPath);
    return folder ? TFileURL(folder, std::move(name)) : TFileURL();
}

TFileURL FolderPool::fromString(const QString &url)
{
    const qsizetype slash = url.lastIndexOf(u'/');
    const QStringView encoded = QStringView(url).sliced(slash + 1);
    QString name = ByteNames::fromUrlPath(encoded);
    const bool isPlain = slash > 0 && !name.isEmpty() && !name.contains(u'/') &&
                         !encoded.contains(u'?') && !encoded.contains(u'#');
    if (!isPlain)
        return shared(TFileURL::fromString(url));
    const TFolderPtr &folder =
        folderFor(QStringView(url).first(slash), m_urls, &TFileURL::fromString);
    return folder ? TFileURL(folder, std::move(name)) : TFileURL();
}

TFileURL FolderPool::shared(const TFileURL &url)
{
    if (!url.isValid())
        return {};
    return {pooled(url.folder()), url.lastPathComponent()};
}

/// A path and a URL may both lead to the folder: its path decides.
TFolderPtr FolderPool::pooled(const TFolderPtr &folder)
{
    if (!folder || folder == m_lastGiven)
        return folder ? m_lastPooled : folder;
    TFolderPtr &known = m_byPath[folder->path()];
    if (!known)
        known = folder;
    m_lastGiven = folder;
    m_lastPooled = known;
    return known;
}
