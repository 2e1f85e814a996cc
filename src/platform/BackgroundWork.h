// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MainThread.h"
#include "platform/WorkerQueue.h"

#include <atomic>
#include <memory>
#include <utility>

/// The work that one owner on the main thread has done by a queue which it may share with others.
/// When it is destroyed, work in hand is told to stop, work that waits is skipped, and no result
/// comes any more; nobody waits for anything. Queue and main thread are not owned and outlive it,
/// as must whatever the work refers to outlive the queue. Main thread only.
class BackgroundWork
{
public:
    /// Read by the work now and then; true when nobody wants its result any more.
    using StopFlag = std::atomic<bool>;

    BackgroundWork(MainThread &mainThread, WorkerQueue &queue)
        : m_mainThread(mainThread)
        , m_queue(queue)
    {
    }
    ~BackgroundWork() { *m_stopped = true; }
    BackgroundWork(const BackgroundWork &) = delete;
    BackgroundWork &operator=(const BackgroundWork &) = delete;

    /// Gives up what was begun so far, as destruction does; later work runs as usual.
    void cancel()
    {
        *m_stopped = true;
        m_stopped = std::make_shared<StopFlag>(false);
    }

    /// Sends something to the owner from within its work.
    using Post = std::function<void(MainThread::Work)>;

    /// Runs work(stopFlag, post) on the queue and then done(result) on the main thread.
    template <class Work, class Done>
    void run(Work work, Done done)
    {
        const Post post = [&mainThread = m_mainThread, stopped = m_stopped](MainThread::Work mail) {
            mainThread.post([stopped, mail = std::move(mail)] {
                if (!*stopped)
                    mail();
            });
        };
        m_queue.run([work = std::move(work), done = std::move(done), post,
                     stopped = m_stopped](const std::stop_token &quit) {
            const std::stop_callback onQuit(quit, [&stopped] { *stopped = true; });
            if (*stopped)
                return;
            auto result = std::make_shared<decltype(work(*stopped, post))>(work(*stopped, post));
            post([done, result] { done(std::move(*result)); });
        });
    }

private:
    MainThread &m_mainThread;
    WorkerQueue &m_queue;
    std::shared_ptr<StopFlag> m_stopped = std::make_shared<StopFlag>(false);
};
