// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Clock.h"

#include <ctime>

TDate SystemClock::now() const
{
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return TDate::fromSeconds(time.tv_sec, time.tv_nsec);
}
