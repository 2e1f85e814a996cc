// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Clock.h"

/// A clock that stands still until it is told to move.
class ManualClock : public Clock
{
public:
    explicit ManualClock(TDate date)
        : m_now(date)
    {
    }
    TDate now() const override { return m_now; }
    void set(TDate date) { m_now = date; }

private:
    TDate m_now;
};
