// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TDate.h"

#include <QByteArray>
#include <QtGlobal>

#include <functional>

/// What lstat/statx say of one item.
struct TFileStatus
{
    enum class Kind : quint8 { File, Folder, Link, Other };

    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    TDate modification;
    TDate birth; ///< unset where the file system keeps none
    quint32 links = 1;
    Kind kind = Kind::File;
    /// False for what a folder's listing alone says: device, inode and kind.
    bool isWhole = true;
};

/// The door to the disk: thin calls over bytes and folder descriptors that answer 0 or an errno.
/// The real one is stateless and may be used from any thread; tests put a faulty one in its place.
/// Nothing here decides anything: policy (fall-backs, unique names) is easyfile's.
class FileManager
{
public:
    FileManager() = default;
    FileManager(const FileManager &) = delete;
    FileManager &operator=(const FileManager &) = delete;
    virtual ~FileManager() = default;

    /// Opens a folder for the calls below; negative errno on failure. Close with closeFolder.
    virtual int openFolder(const QByteArray &path) = 0;
    virtual void closeFolder(int folder) = 0;
    /// Status of an item, of the link itself unless followLink. folder may be AT_FDCWD with a path.
    virtual int status(int folder, const QByteArray &name, bool followLink, TFileStatus &out) = 0;
    /// Calls entry for every name but "." and ".."; kind is a hint (Other when unknown).
    virtual int list(int folder, const std::function<void(const char *name, TFileStatus::Kind kind,
                                                          quint64 inode)> &entry) = 0;
    /// Renames within a folder and never replaces: EEXIST when the target is there, EINVAL or
    /// ENOSYS when the file system cannot promise that.
    virtual int renameNoReplace(int folder, const QByteArray &from, const QByteArray &to) = 0;
    /// Plain rename(2), which replaces; only for callers that have made sure.
    virtual int renameReplacing(int folder, const QByteArray &from, const QByteArray &to) = 0;
    virtual int link(int folder, const QByteArray &from, const QByteArray &to) = 0;
    virtual int unlink(int folder, const QByteArray &name) = 0;
    /// access(2) with R_OK, W_OK, X_OK bits.
    virtual int access(const QByteArray &path, int mode) = 0;
    /// Flushes file data to the disk.
    virtual int sync(int file) = 0;
};

/// The real disk.
class DiskFileManager : public FileManager
{
public:
    int openFolder(const QByteArray &path) override;
    void closeFolder(int folder) override;
    int status(int folder, const QByteArray &name, bool followLink, TFileStatus &out) override;
    int list(int folder,
             const std::function<void(const char *name, TFileStatus::Kind kind, quint64 inode)>
                 &entry) override;
    int renameNoReplace(int folder, const QByteArray &from, const QByteArray &to) override;
    int renameReplacing(int folder, const QByteArray &from, const QByteArray &to) override;
    int link(int folder, const QByteArray &from, const QByteArray &to) override;
    int unlink(int folder, const QByteArray &name) override;
    int access(const QByteArray &path, int mode) override;
    int sync(int file) override;
};
