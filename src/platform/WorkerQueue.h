// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

/// Runs jobs on a thread of its own, one after another, in the order in which they came. Jobs take
/// values in and hand values out; they must look at their stop token now and then, and must not
/// throw. All operations may be called from any thread but the queue's own, run() from that too.
///
/// Destruction cancels everything and joins, so whatever jobs refer to must outlive the queue.
class WorkerQueue
{
public:
    using Job = std::function<void(std::stop_token)>;

    WorkerQueue();
    ~WorkerQueue();
    WorkerQueue(const WorkerQueue &) = delete;
    WorkerQueue &operator=(const WorkerQueue &) = delete;

    void run(Job job);
    /// Asks the job in hand to stop and drops those that wait; jobs that come later run as usual.
    void cancel();
    /// Returns when no job runs or waits; false when it gave up because stop was requested.
    bool wait(std::stop_token stop = {});
    /// While suspended, the job in hand goes on but none is begun.
    void suspend();
    void resume();
    /// Jobs that run or wait.
    size_t count() const;

private:
    void work(const std::stop_token &quit);

    mutable std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<Job> m_waiting;
    std::stop_source m_stop; ///< of the jobs since the last cancel
    bool m_running = false;
    bool m_suspended = false;
    std::jthread m_thread; ///< last, so that it ends before what it uses
};
