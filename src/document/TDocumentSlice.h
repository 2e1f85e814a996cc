// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

/// A few milliseconds of work on the main thread, after which painting and input have their turn.
class TDocumentSlice
{
public:
    static constexpr std::chrono::milliseconds kLength{4};

    explicit TDocumentSlice(std::chrono::milliseconds length = kLength)
        : m_end(Clock::now() + length)
    {
    }
    bool isOver() const { return std::chrono::steady_clock::now() >= m_end; }

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point m_end;
};
