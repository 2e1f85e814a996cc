// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TDate.h"

/// The door to the present moment, so that tests can hold time still.
class Clock
{
public:
    Clock() = default;
    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;
    virtual ~Clock() = default;
    virtual TDate now() const = 0;
};

/// The real time. Stateless; may be used from any thread.
class SystemClock : public Clock
{
public:
    TDate now() const override;
};
