// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/AnalysisRun.h"
#include "document/TAnalyseOperation.h"
#include "document/TDocumentMail.h"

#include <deque>
#include <functional>
#include <memory>

/// The door to whatever reads metadata. Owned by the gathering queue; main thread only. Its end
/// stops the reading, and no completion comes afterwards.
class TDocumentGatherer
{
public:
    /// Called on the main thread, once for every file, in the order in which they were added.
    using Completion = std::function<void(const TMetadataSource::Metadata &metadata)>;
    using Make = std::function<std::unique_ptr<TDocumentGatherer>(Completion completion)>;

    TDocumentGatherer() = default;
    TDocumentGatherer(const TDocumentGatherer &) = delete;
    TDocumentGatherer &operator=(const TDocumentGatherer &) = delete;
    virtual ~TDocumentGatherer() = default;
    /// Returns at once.
    virtual void add(std::vector<TFileItem> files) = 0;
};

/// The document's gathering queue: operations complete one after another in the order in which they
/// were added, whatever was read first. Files whose names promise no metadata complete without
/// being opened. Main thread only, in portions of a few milliseconds.
class TDocumentGathering
{
public:
    /// The master is not owned. Without a door, every file turns out to have no metadata.
    TDocumentGathering(TDocumentMailPtr mail, TDocumentGatherer::Make make, TAnalyseMaster &master);
    ~TDocumentGathering();

    void add(std::shared_ptr<TFileObject> file);
    /// Operations that are added wait until the queue is resumed.
    void suspend() { m_isSuspended = true; }
    void resume();
    /// Forgets all operations; none of them completes.
    void cancel();
    /// Forgets those of other files than these. False when there are none.
    bool keepOnly(const TFileList &files);
    /// Adds those of these files that have none but should.
    void addMissing(const TFileList &files);
    std::size_t count() const { return m_operations.size(); }
    /// The file may have metadata that nobody has looked for.
    static bool isMissing(const TFileObject &file);

private:
    void forgetRequests();
    void request();
    void schedule();
    void completePortion();
    void received(const TMetadataSource::Metadata &metadata);

    TDocumentMailPtr m_mail;
    TDocumentGatherer::Make m_make;
    TAnalyseMaster &m_master;
    std::unique_ptr<TDocumentGatherer> m_gatherer;
    struct Waiting
    {
        TAnalyseOperation operation;
        bool isMedia; ///< the name says that there may be metadata in the file
    };
    std::deque<Waiting> m_operations;                 ///< not completed, in order
    std::size_t m_requested = 0;                      ///< how many of them the gatherer knows of
    std::deque<TMetadataSource::Metadata> m_received; ///< for the first media among them
    bool m_isSuspended = false;
    bool m_isScheduled = false;
};
