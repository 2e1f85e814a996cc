// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/FileExpansion.h"
#include "commonprocs/HashSet128.h"
#include "commonprocs/URLListProcessing.h"
#include "document/AnalysisRun.h"
#include "document/TDocumentMail.h"
#include "platform/WorkerQueue.h"

#include <QHash>

#include <functional>
#include <memory>
#include <vector>

/// One drop of files on its way into a batch: folders are listed on a worker, and what was found is
/// tested and added on the main thread in portions of a few milliseconds, so that the window stays
/// alive however much was dropped. Main thread only; lives until it says that it has finished, or
/// is given up at any time.
///
/// An item is already there when it has the path of an entry, or is the same file on disk. Entries
/// are found by path and by device and inode, never compared pair by pair.
class TDocumentDrop
{
public:
    /// What the drop asks of its document.
    struct Batch
    {
        std::function<void(const QString &text)> status;
        std::function<TFileList()> snapshot;
        /// A folder that was dropped, or stands in one.
        std::function<void(const TFolderPtr &folder)> addFolder;
        /// Makes an entry; total is the number of items that were found.
        std::function<void(const TFileItem &item, qsizetype total)> add;
        /// The entries made since the last call come into the list.
        std::function<void()> showAdded;
        /// With what could not be found or read; the other items have come.
        std::function<void(const std::vector<FileExpansion::Problem> &problems)> finished;
    };

    TDocumentDrop(FileManager &fileManager, TDocumentMailPtr mail, Batch batch);
    ~TDocumentDrop();

    void start(TFileURLs urls);
    /// Nothing more comes into the batch until it is resumed.
    void suspend() { m_isSuspended = true; }
    void resume();

private:
    /// What the worker found.
    struct Found
    {
        std::vector<TFileItem> items;
        std::vector<std::pair<quint64, quint64>> identities; ///< of the items, links followed
        std::vector<TFolderPtr> folders;
        std::vector<FileExpansion::Problem> problems;
    };
    using Identity = std::pair<quint64, quint64>;
    using Step = bool (TDocumentDrop::*)(); ///< one item; false when there is none left

    static Found listed(FileManager &fileManager, const TFileURLs &urls,
                        const std::stop_token &stop);
    void received(std::shared_ptr<Found> found);
    void proceed(Step step);
    bool grantOne();
    bool cleanOne();
    bool indexOne();
    bool addOne();
    void work();
    void nextStage();
    void postWork();
    bool isUnique(std::size_t item) const;
    bool isStillThere(const TFileObject &entry, const Identity &identity) const;

    FileManager &m_fileManager;
    TDocumentMailPtr m_mail;
    Batch m_batch;
    std::shared_ptr<bool> m_isAlive = std::make_shared<bool>(true);
    std::shared_ptr<Found> m_found;
    std::vector<std::size_t> m_clean; ///< items whose path came first
    TFileList m_snapshot;
    HashSet128 m_droppedPaths;
    HashSet128 m_paths;                             ///< of the snapshot
    QMultiHash<Identity, std::size_t> m_identities; ///< of the snapshot
    Step m_step = nullptr;
    std::size_t m_place = 0; ///< within the stage
    qsizetype m_added = 0;
    bool m_isSuspended = false;
    bool m_isWaiting = false; ///< for being resumed
    WorkerQueue m_worker;     ///< last, so that it ends before what it uses
};
