// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <time.h>

/// Beats as often as the event loop lets it, and remembers the longest pause: by the clock, and by
/// what its thread computed, because other programs do not count.
class Heartbeat
{
public:
    Heartbeat()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { beat(); });
        m_timer.start(std::chrono::milliseconds(1));
    }
    /// What happened since the last beat does not count.
    void skip()
    {
        m_last = Steady::now();
        m_lastUsed = processorSeconds();
    }
    void beat()
    {
        const Steady::time_point now = Steady::now();
        m_longest = std::max(m_longest, std::chrono::duration<double>(now - m_last).count());
        m_last = now;
        const double used = processorSeconds();
        m_longestUsed = std::max(m_longestUsed, used - m_lastUsed);
        m_lastUsed = used;
    }
    /// In seconds.
    double longest() const { return m_longest; }
    double longestUsed() const { return m_longestUsed; }

private:
    using Steady = std::chrono::steady_clock;

    static double processorSeconds()
    {
        timespec now{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
    }

    QTimer m_timer;
    Steady::time_point m_last = Steady::now();
    double m_longest = 0;
    double m_lastUsed = processorSeconds();
    double m_longestUsed = 0;
};
