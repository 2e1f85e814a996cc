// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/PumpedMainThread.h"

bool PumpedMainThread::pumpUntil(const std::function<bool()> &done, const std::stop_token &stop)
{
    while (!done()) {
        if (stop.stop_requested())
            return false;
        // One at a time, so that nothing runs once done() is true.
        if (runPosted(std::chrono::milliseconds::zero()) || done())
            continue;
        std::unique_lock lock(m_wakeMutex);
        if (!m_woken.wait(lock, stop, [this] { return m_wake; }))
            return false;
        m_wake = false;
    }
    return true;
}

void PumpedMainThread::pump()
{
    while (runPosted(std::chrono::hours(1))) {
    }
}

void PumpedMainThread::wake()
{
    {
        const std::scoped_lock lock(m_wakeMutex);
        m_wake = true;
    }
    m_woken.notify_all();
}
