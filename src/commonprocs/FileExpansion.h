// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileItem.h"
#include "platform/FileManager.h"

#include <functional>
#include <stop_token>
#include <vector>

/// What a drop or a list of paths becomes: folders expanded recursively (hidden files inside them
/// skipped, links not entered, applications and bundles kept as single items), folders themselves
/// taken out, each path once, order kept. Lists with readdir and one status call a file.
class FileExpansion
{
public:
    struct Problem
    {
        QString path;
        QString text; ///< says what is wrong and what to do, without the path
    };

    /// fileManager is not owned.
    explicit FileExpansion(FileManager &fileManager);

    /// Appends what the path stands for. Paths may be relative.
    void add(const QString &path, std::stop_token stop = {});

    const std::vector<TFileItem> &files() const { return m_files; }
    std::vector<TFileItem> takeFiles() { return std::move(m_files); }
    /// Paths that do not exist or cannot be read; the others went on.
    const std::vector<Problem> &problems() const { return m_problems; }
    /// Called after every 1,000 files found, with their number.
    void setProgress(std::function<void(qsizetype)> progress) { m_progress = std::move(progress); }

private:
    FileManager &m_fileManager;
    std::vector<TFileItem> m_files;
    std::vector<Problem> m_problems;
    std::function<void(qsizetype)> m_progress;
};
