// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/HashSet128.h"
#include "commonprocs/easyfile.h"

#include <QHash>

#include <map>
#include <memory>
#include <utility>
#include <vector>

/// What names stand in the folders of a batch, as far as a run needs to know: a folder is read once
/// when several files share it, and the run's own moves keep the picture up to date. Answers which
/// name base is free without a disk call per candidate, with a last-number hint for each base and
/// extension, so that 100,000 files with one target name cost no more than distinct ones.
///
/// The answers equal those of createUniqueFileNameWithParentAndNameBase as long as nothing else
/// changes the folder; the move's own NOREPLACE guards against the rest. Folders of one file, and
/// those that do not tell upper from lower case, are asked on the disk instead, with the run's own
/// moves laid over the answers. Used by one thread.
class FolderPicture
{
public:
    /// fileManager is not owned.
    explicit FolderPicture(FileManager &fileManager);
    ~FolderPicture();
    FolderPicture(const FolderPicture &) = delete;
    FolderPicture &operator=(const FolderPicture &) = delete;

    /// Announces that files of this folder will be asked for; folders announced more than once are
    /// read whole at the first question.
    void announce(const TFolderPtr &folder, qsizetype files = 1);
    /// The base itself or "base-N" such that "base.extension" does not exist in the folder.
    QString uniqueBase(const TFolder &folder, const QString &base, const QString &extension);
    bool exists(const TFolder &folder, const QString &name);
    /// True when, on the disk, the new name is taken by nobody but the file itself.
    bool isOwnOtherSpelling(const TFolder &folder, const QString &from, const QString &to)
    {
        return m_disk.isOwnOtherSpelling(folder, from, to);
    }
    /// The run moved a file: the old name is free, the new one taken.
    void moved(const TFolder &folder, const QString &from, const QString &to);
    /// A name was found taken although the picture said otherwise.
    void taken(const TFolder &folder, const QString &name);
    /// Why the folder says that it cannot be written or entered, as an errno; 0 when it can. File
    /// systems of networks and of user space may know less than the move itself would find out.
    int errorOfChanging(const TFolder &folder);

private:
    struct Folder;
    enum class Answer : quint8;

    Folder &find(const TFolder &folder);
    Folder &picture(const TFolder &folder);
    void read(Folder &picture, const TFolder &folder);

    FileManager &m_fileManager;
    FileMover m_disk;
    std::vector<std::unique_ptr<Folder>> m_folders;
    QHash<QByteArray, Folder *> m_byPath;
    std::map<std::pair<quint64, quint64>, Folder *> m_byIdentity; ///< device and inode
    QByteArray m_lastPath;
    Folder *m_last = nullptr;
};
