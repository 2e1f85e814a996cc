// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

/// The one door through which workers reach the main thread. Made on the main thread, and outlives
/// the workers that use it. Work runs there in the order in which it came, from all threads, and
/// must not throw.
///
/// How the main thread is woken is the derived class's; the hand-off is this one's, under one
/// mutex.
class MainThread
{
public:
    using Work = std::function<void()>;

    MainThread();
    MainThread(const MainThread &) = delete;
    MainThread &operator=(const MainThread &) = delete;
    virtual ~MainThread();

    /// Hands work over without waiting for it. On the main thread, too, it runs later.
    void post(Work work);
    /// Runs work on the main thread and returns true when it is done; so work may refer to the
    /// caller's variables. When stop is requested before work has begun, it never will, and the
    /// result is false: a main thread that joins a worker which waits here cannot deadlock. (Work
    /// that has begun is waited for, so it must not itself join the worker.)
    /// On the main thread, work runs at once.
    [[nodiscard]] bool wait(std::stop_token stop, const Work &work);

    bool isMainThread() const { return std::this_thread::get_id() == m_thread; }

protected:
    /// Makes the main thread call runPosted() soon. Called from any thread, when the first work is
    /// posted to an empty queue.
    virtual void wake() = 0;
    /// Runs work in order: at most what was there at the call, at least one, for about the given
    /// time. True when work is left: it must be called again soon. Work may open an event loop that
    /// calls it.
    bool runPosted(std::chrono::milliseconds slice);
    /// Drops what was posted; callers of wait() get false.
    void dropPosted();

private:
    /// Empty when an event loop within earlier work has run it all.
    Work takeFirst();

    const std::thread::id m_thread = std::this_thread::get_id();
    std::mutex m_mutex;
    std::deque<Work> m_posted;
};
