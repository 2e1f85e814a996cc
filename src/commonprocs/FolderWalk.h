// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/FolderListing.h"
#include "commonprocs/TFileURL.h"
#include "platform/FileManager.h"

#include <QByteArray>

#include <stop_token>
#include <vector>

/// Goes through everything in a folder, to any depth: the names of each folder in the order of
/// their bytes, so that every machine and file system gives the same order, and a folder's contents
/// where the folder stands. Hidden names are passed over. Depth costs memory, never call stack, and
/// at most 32 folders are open at a time. Used by one thread; large folders are asked about by
/// two, since most of the time of a walk goes into the disk's answers.
class FolderWalk
{
public:
    struct Entry
    {
        const TFolderPtr &folder;
        QByteArray name;           ///< valid during the visit only; NUL-terminated
        const TFileStatus &status; ///< of the item itself, not of what a link leads to
        int error;                 ///< why there is no status; 0 when there is
    };

    class Visitor
    {
    public:
        Visitor() = default;
        Visitor(const Visitor &) = delete;
        Visitor &operator=(const Visitor &) = delete;
        virtual ~Visitor() = default;
        /// The folder to go into now, or null to go on.
        virtual TFolderPtr visit(const Entry &entry) = 0;
        /// The whole folder could be listed; its entries come next.
        virtual void listed(const TFolder &folder, qsizetype entries) = 0;
        /// The folder, or the rest of it, was passed over because of the errno.
        virtual void failed(const TFolder &folder, int error) = 0;
    };

    /// fileManager is not owned. detail is what the visitor needs to know of files.
    explicit FolderWalk(FileManager &fileManager,
                        FolderListing::Detail detail = FolderListing::Detail::Everything);

    void walk(const TFolderPtr &start, Visitor &visitor, const std::stop_token &stop = {});

private:
    struct Frame;

    int open(Frame &frame);
    void close(Frame &frame);
    void push(std::vector<Frame> &frames, const TFolderPtr &folder, Visitor &visitor,
              const std::stop_token &stop);

    FileManager &m_fileManager;
    FolderListing::Detail m_detail;
};
