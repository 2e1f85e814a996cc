// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MainThread.h"

#include <condition_variable>

/// The door of tests without an event loop: posted work runs when the main thread pumps.
class PumpedMainThread final : public MainThread
{
public:
    /// Runs posted work, waiting for more, until done() is true, which is asked at first and after
    /// every work that ran. False when it gave up because stop was requested.
    bool pumpUntil(const std::function<bool()> &done, const std::stop_token &stop = {});
    /// Runs posted work until none is left.
    void pump();

protected:
    void wake() override;

private:
    std::mutex m_wakeMutex;
    std::condition_variable_any m_woken;
    bool m_wake = false;
};
