// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"

#include <QHash>

/// Makes one folder object for each folder, however many records name it: a log of a million files
/// holds a handful. Texts are read just as TFileURL reads them. Used by one thread.
class FolderPool
{
public:
    TFileURL fileURLWithPath(const QString &path);
    TFileURL fromString(const QString &url);
    /// The same location with the pool's folder.
    TFileURL shared(const TFileURL &url);

private:
    /// Folders by the text that stands before the last slash; the one asked for last is at hand.
    struct Prefixes
    {
        QHash<QString, TFolderPtr> folders;
        QString lastPrefix;
        TFolderPtr last;
    };

    /// make is given the text of some item of the folder when the prefix is a new one.
    const TFolderPtr &folderFor(QStringView prefix, Prefixes &known,
                                TFileURL (*make)(const QString &));
    TFolderPtr pooled(const TFolderPtr &folder);

    Prefixes m_paths;
    Prefixes m_urls;
    QHash<QString, TFolderPtr> m_byPath;
    TFolderPtr m_lastGiven;
    TFolderPtr m_lastPooled;
};
