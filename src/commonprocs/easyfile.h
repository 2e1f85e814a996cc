// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"
#include "platform/FileManager.h"

#include <QSet>
#include <QString>

#include <list>
#include <string_view>
#include <unordered_map>

/// How a move within a folder ended.
struct TMoveResult
{
    enum class Way : quint8 {
        Guarded,   ///< renameat2 with NOREPLACE
        Linked,    ///< link + unlink, for file systems without NOREPLACE
        Unguarded, ///< lstat + rename, the last resort
        Itself,    ///< source and target are the same directory entry; nothing to do
        Failed
    };

    Way way = Way::Failed;
    int error = 0; ///< errno of a failure; 0 when the name itself was refused
    QString text;  ///< for people, without the paths; empty on success

    bool ok() const { return way != Way::Failed; }
};

/// Renames files within their folders without ever replacing anything. Keeps at most 64 folders
/// open, which are those of the files and not of the paths: a folder that somebody moves meanwhile
/// is still the same. Not thread-safe: one mover a thread.
///
/// Where a file system does not tell upper from lower case, the new name of a file may already
/// "exist" because it is the file's own; such a move takes two guarded steps over a name of its
/// own, since one rename would change nothing.
class FileMover
{
public:
    static constexpr std::size_t kMostOpenFolders = 64;

    /// fileManager is not owned.
    explicit FileMover(FileManager &fileManager);
    ~FileMover();
    FileMover(const FileMover &) = delete;
    FileMover &operator=(const FileMover &) = delete;

    /// Refuses names that contain "/" or NUL, are "", "." or "..", or exceed 255 bytes.
    TMoveResult move(const TFolder &folder, const QString &from, const QString &to);
    /// The same for names as the disk has them.
    TMoveResult move(const TFolder &folder, const QByteArray &from, const QByteArray &to);
    /// lstat within the folder; a dangling link exists.
    bool exists(const TFolder &folder, const QString &name);
    /// Where a file system does not tell upper from lower case: the new name is taken by nobody but
    /// the file itself.
    bool isOwnOtherSpelling(const TFolder &folder, const QString &from, const QString &to);
    /// 0 or an errno.
    int status(const TFolder &folder, const QString &name, TFileStatus &out);

private:
    struct Open
    {
        QByteArray path;
        int descriptor;
    };
    /// One move that is to be made: names within an open folder.
    struct Names
    {
        const TFolder &folder;
        int descriptor;
        QByteArray from;
        QByteArray to;
    };

    int openFolder(const TFolder &folder);
    void closeFolders(std::size_t keep);
    TMoveResult step(const Names &names);
    TMoveResult stepByLink(const Names &names);
    TMoveResult stepUnguarded(const Names &names);
    bool isOwnOtherSpelling(const Names &names);
    static bool seemsOtherSpelling(const Names &names, const TFileStatus &source,
                                   const TFileStatus &target);
    TMoveResult respell(const Names &names);
    void warnUnguarded(const TFolder &folder);

    FileManager &m_fileManager;
    std::list<Open> m_open; ///< most recently used first
    std::unordered_map<std::string_view, std::list<Open>::iterator> m_index;
    QSet<QByteArray> m_warned; ///< folders whose unguarded moves have been logged
};

/// The name under which a file stops over that only changes its case; known from the final name, so
/// that a file that was left there can be found.
QByteArray stopOverName(const QByteArray &finalName);
/// True when the bytes can name an item of a folder, as far as their length allows.
bool isNameInFolder(QByteArrayView name);
/// Why a name can never be a file's name in its folder; empty when it can.
QString reasonToRefuseName(QStringView name);
/// The system's text for an errno, with advice where there is some.
QString textForErrno(int error);
