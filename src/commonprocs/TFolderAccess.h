// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"
#include "platform/TCoder.h"

#include <QHash>
#include <QMetaType>
#include <QSet>

#include <optional>
#include <utility>
#include <vector>

/// The record of one folder that the program wants to change, and whether the user granted it. A
/// value; belongs to the main thread.
class TFolderAccess
{
public:
    TFolderAccess() = default;

    /// Outside a sandbox every folder has access; inside, a dragged one is granted at once and any
    /// other has to be asked for.
    static TFolderAccess folderWithURL(const TFileURL &url, bool fromDrag);
    /// A grant that was saved; found again from its bookmark.
    static TFolderAccess folderWithBookmark(const QByteArray &bookmark, bool haveAccess);
    /// The user chose a folder. Another one than the wanted changes nothing and is logged.
    void gotAuthorized(const TFileURL &chosen);
    /// After decoding: finds the folder again from its bookmark.
    void handleSandboxedURL();

    const TFileURL &theURL() const { return m_theURL; }
    const QByteArray &theBookmark() const { return m_theBookmark; }
    bool haveAccess() const { return m_haveAccess; }

    static TArchiveClass archiveClass();
    void encodeWithCoder(TEncoder &coder) const;
    void initWithCoder(const TDecoder &coder);

private:
    void grant();

    TFileURL m_theURL;
    QByteArray m_theBookmark;
    bool m_haveAccess = false;
};

Q_DECLARE_METATYPE(TFolderAccess)

/// The folders of a batch or of a rollback, each once, in the order added. Folders are told apart
/// by device and inode, so that two paths to one folder keep one record and adding stays cheap.
class TFolderAccessList
{
public:
    const std::vector<TFolderAccess> &folders() const { return m_folders; }
    /// True when some record's folder is the same item on disk, or has the same path.
    bool URLexists(const TFileURL &url) const;
    void addFolder(const TFileURL &url, bool fromDrag);
    /// Adds a record as it is, unless its folder is already listed.
    void append(const TFolderAccess &folder);
    void addFolders(const QList<TFileURL> &urls, bool fromDrag);
    void addParentFolderIfNeededForURL(const TFileURL &url);
    qsizetype numberOfNonAccess() const;
    QList<TFileURL> inaccessibleFolders() const;
    /// The first record without access, to be asked for; null when there is none.
    TFolderAccess *firstInaccessible();
    /// The record with just that location; null when there is none.
    TFolderAccess *recordFor(const TFileURL &url);

private:
    using Identity = std::pair<quint64, quint64>;

    bool isListed(const std::optional<Identity> &identity) const;
    void append(const TFolderAccess &folder, const std::optional<Identity> &identity);

    std::vector<TFolderAccess> m_folders;
    QSet<QString> m_paths;
    QSet<Identity> m_identities;
};
