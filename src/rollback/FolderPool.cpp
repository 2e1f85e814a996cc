// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/FolderPool.h"

#include "commonprocs/ByteNames.h"

using namespace Qt::StringLiterals;

const TFolderPtr &FolderPool::Prefixes::folder(QStringView prefix,
                                               TFileURL (*make)(const QString &))
{
    if (last && prefix == lastPrefix)
        return last;
    lastPrefix = prefix.toString();
    TFolderPtr &found = folders[lastPrefix];
    if (!found)
        found = make(lastPrefix + u"/x"_s).folder();
    last = found;
    return last;
}

TFileURL FolderPool::fileURLWithPath(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    QString name = path.mid(slash + 1);
    if (!path.startsWith(u'/') || name.isEmpty() || name.contains(QChar::Null))
        return shared(TFileURL::fileURLWithPath(path));
    const TFolderPtr folder =
        pooled(m_paths.folder(QStringView(path).first(slash), &TFileURL::fileURLWithPath));
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
    const TFolderPtr folder =
        pooled(m_urls.folder(QStringView(url).first(slash), &TFileURL::fromString));
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
