// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/MetadataGatherer.h"

#include <deque>
#include <memory>
#include <mutex>

/// Carries completions to the main thread in their order, a few milliseconds' worth at a time, so
/// that neither side waits for the other.
class CompletionQueue : public std::enable_shared_from_this<CompletionQueue>
{
public:
    /// The door is not owned.
    CompletionQueue(MainThread &mainThread, MetadataGatherer::Completion completion);

    /// From the gathering thread.
    void push(qsizetype file, TMetadataSource::Metadata metadata);
    /// On the main thread: nothing comes out any more.
    void close() { m_closed = true; }

private:
    struct Completed
    {
        qsizetype file;
        TMetadataSource::Metadata metadata;
    };

    void post();
    void deliver();
    std::deque<Completed> takeAll();

    MainThread &m_mainThread;
    const MetadataGatherer::Completion m_completion;
    std::deque<Completed> m_arrived; ///< taken over, main thread only
    bool m_closed = false;           ///< main thread only
    std::mutex m_mutex;
    std::deque<Completed> m_waiting; ///< guarded
    bool m_posted = false;           ///< guarded: deliver() will be called
};
