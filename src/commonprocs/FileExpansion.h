// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/FolderWalk.h"
#include "commonprocs/HashSet128.h"
#include "commonprocs/TFileItem.h"
#include "platform/FileManager.h"

#include <QHash>

#include <functional>
#include <stop_token>
#include <vector>

/// What a drop or a list of paths becomes: folders expanded recursively (hidden files inside them
/// skipped, links not entered, applications and bundles kept as single items), folders themselves
/// taken out, each path once, order kept. Lists with readdir and at most one status call a file.
///
/// A path that is named itself is taken whatever it is, a link as the link. Inside folders the
/// order is that of the names' bytes (see FolderWalk). Used by one thread.
class FileExpansion
{
public:
    using Detail = FolderListing::Detail;
    struct Problem
    {
        QString path;
        QString text; ///< says what is wrong and what to do, without the path
    };

    /// fileManager is not owned. With Detail::Identity sizes and dates may be left out.
    explicit FileExpansion(FileManager &fileManager, Detail detail = Detail::Everything);

    /// Appends what the path stands for. Paths may be relative, and may have "." and ".." parts:
    /// links are resolved only in front of a "..", where the path would lead elsewhere otherwise.
    void add(const QString &path, const std::stop_token &stop = {});

    const std::vector<TFileItem> &files() const { return m_files; }
    std::vector<TFileItem> takeFiles() { return std::move(m_files); }
    /// Paths that do not exist or cannot be read; the others went on.
    const std::vector<Problem> &problems() const { return m_problems; }
    /// The folders whose contents are in, in the order in which they were entered.
    const std::vector<TFolderPtr> &listedFolders() const { return m_listedFolders; }
    /// Called after every 1,000 files found, with their number.
    void setProgress(std::function<void(qsizetype)> progress) { m_progress = std::move(progress); }

private:
    class Visitor;

    void addNamed(const QString &path, const TFileStatus &status);
    void take(const TFolderPtr &folder, QString name, const TFileStatus &status);
    void reportProblem(const QString &path, int error);
    TFolderPtr sharedFolder(QStringView path);

    FileManager &m_fileManager;
    Detail m_detail;
    std::vector<TFileItem> m_files;
    std::vector<Problem> m_problems;
    std::function<void(qsizetype)> m_progress;
    QHash<QString, TFolderPtr> m_folders;
    TFolderPtr m_lastFolder;
    HashSet128 m_listed; ///< folders whose contents are in already
    std::vector<TFolderPtr> m_listedFolders;
    HashSet128 m_named; ///< paths that were named themselves
};
