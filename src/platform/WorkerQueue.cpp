// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WorkerQueue.h"

#include <utility>

WorkerQueue::WorkerQueue()
    : m_thread([this](const std::stop_token &quit) { work(quit); })
{
}

WorkerQueue::~WorkerQueue()
{
    m_thread.request_stop();
    cancel();
}

void WorkerQueue::run(Job job)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_waiting.push_back(std::move(job));
    }
    m_changed.notify_all();
}

void WorkerQueue::cancel()
{
    std::deque<Job> dropped; // outlives the lock: what jobs hold may call back when it is freed
    std::stop_source stopped;
    {
        const std::scoped_lock lock(m_mutex);
        dropped.swap(m_waiting);
        std::swap(stopped, m_stop);
    }
    stopped.request_stop();
    m_changed.notify_all();
}

bool WorkerQueue::wait(std::stop_token stop)
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait(lock, std::move(stop),
                          [this] { return m_waiting.empty() && !m_running; });
}

void WorkerQueue::suspend()
{
    const std::scoped_lock lock(m_mutex);
    m_suspended = true;
}

void WorkerQueue::resume()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_suspended = false;
    }
    m_changed.notify_all();
}

size_t WorkerQueue::count() const
{
    const std::scoped_lock lock(m_mutex);
    return m_waiting.size() + (m_running ? 1 : 0);
}

void WorkerQueue::work(const std::stop_token &quit)
{
    std::unique_lock lock(m_mutex);
    while (m_changed.wait(lock, quit, [this] { return !m_suspended && !m_waiting.empty(); })) {
        if (quit.stop_requested())
            return;
        Job job = std::exchange(m_waiting.front(), {});
        m_waiting.pop_front();
        m_running = true;
        const std::stop_token stop = m_stop.get_token();
        lock.unlock();
        job(stop);
        job = {};
        lock.lock();
        m_running = false;
        m_changed.notify_all();
    }
}
