// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/CompletionQueue.h"

#include "platform/MainThread.h"

namespace {

constexpr std::chrono::milliseconds kSlice{4};

} // namespace

CompletionQueue::CompletionQueue(MainThread &mainThread, MetadataGatherer::Completion completion)
    : m_mainThread(mainThread)
    , m_completion(std::move(completion))
{
}

void CompletionQueue::push(qsizetype file, TMetadataSource::Metadata metadata)
{
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back({file, std::move(metadata)});
        if (m_posted)
            return;
        m_posted = true;
    }
    post();
}

void CompletionQueue::post()
{
    m_mainThread.post([self = shared_from_this()] { self->deliver(); });
}

std::deque<CompletionQueue::Completed> CompletionQueue::takeAll()
{
    const std::lock_guard lock(m_mutex);
    m_posted = !m_waiting.empty();
    return std::exchange(m_waiting, {});
}

void CompletionQueue::deliver()
{
    const auto end = std::chrono::steady_clock::now() + kSlice;
    while (!m_closed) {
        if (m_arrived.empty())
            m_arrived = takeAll();
        if (m_arrived.empty())
            return;
        const Completed completed = std::move(m_arrived.front());
        m_arrived.pop_front();
        m_completion(completed.file, completed.metadata);
        if (std::chrono::steady_clock::now() >= end)
            return post();
    }
}
