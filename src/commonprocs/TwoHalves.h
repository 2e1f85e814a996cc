// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <thread>

/// Calls work(from, to, half) for both halves of a range, the second one (half 1) on a thread of
/// its own, and waits for both; a short range is one piece (half 0). For questions to the disk,
/// whose answers are most of the time that listing and checking files take.
template <class Work>
void inTwoHalves(std::size_t first, std::size_t end, const Work &work)
{
    // Below that, a second thread costs more than it saves.
    constexpr std::size_t kWorthAThread = 512;
    const std::size_t count = end - first;
    const std::size_t middle = count < kWorthAThread ? end : first + count / 2;
    std::jthread second;
    if (middle < end)
        second = std::jthread([&work, middle, end] { work(middle, end, 1); });
    work(first, middle, 0);
}
