// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>
#include <QStringList>

#include <memory>

/// A folder that many files share: its absolute path ("/" or no slash at the end), made once.
class TFolder
{
public:
    explicit TFolder(const QString &path);

    const QString &path() const { return m_path; }
    const QByteArray &bytes() const { return m_bytes; }
    /// Last component; "/" for the root.
    const QString &name() const { return m_name; }
    /// Percent-encoded "file:///…/", ending in "/".
    const QString &url() const { return m_url; }
    /// All components, "/" first.
    QStringList components() const;

private:
    QString m_path;
    QByteArray m_bytes;
    QString m_name;
    QString m_url;
};
using TFolderPtr = std::shared_ptr<const TFolder>;

/// The location of a file: a shared folder plus a name. 40 bytes and the name, where a QUrl would
/// take 328. Paths are absolute and never resolved; names may carry raw bytes (see ByteNames).
class TFileURL
{
public:
    TFileURL() = default;
    TFileURL(TFolderPtr folder, QString name);
    /// "/" gives the root: folder "/", name "". A trailing slash is dropped; "//" collapses; a
    /// relative path stands in the current folder.
    static TFileURL fileURLWithPath(const QString &path);
    /// From a percent-encoded file URL; invalid when it is none.
    static TFileURL fromString(const QString &url);

    bool isValid() const { return m_folder != nullptr; }
    QString path() const;
    QByteArray fileSystemPath() const;
    const TFolderPtr &folder() const { return m_folder; }
    const QString &lastPathComponent() const { return m_name; }
    QString pathExtension() const;
    /// "/" first.
    QStringList pathComponents() const;
    TFileURL deletingLastPathComponent() const;
    TFileURL appendingPathComponent(const QString &component) const;
    /// Percent-encoded name, the second half of the URL string.
    QString relativeUrl() const;
    /// The whole percent-encoded URL.
    QString absoluteString() const;

    /// The same path, character for character.
    friend bool operator==(const TFileURL &a, const TFileURL &b);

private:
    TFolderPtr m_folder;
    QString m_name;
};

Q_DECLARE_METATYPE(TFileURL)

/// The path as an absolute one with single slashes and none at its end; a relative path stands in
/// the current folder, and is "" with errno set when that has been removed. Neither links nor "."
/// and ".." are resolved.
QString absolutePath(const QString &path);

/// Where a name splits into base and extension. A dot that leads the name starts no extension, a
/// name that ends in a dot has none and keeps its dot.
qsizetype extensionDot(QStringView name); ///< index of the dot; -1 when there is no extension
/// The file name without its extension, and the extension without its dot.
QString removeExtensionFromFilename(const QString &name);
QString getExtensionFromFileName(const QString &name);
