// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TColor.h"

#include <atomic>

/// The five colours from which new rules take theirs in turn. One for the process; thread-safe.
class TColorPalette
{
public:
    static TColorPalette &sharedPalette();

    /// The colour at the current index, which then moves on and wraps.
    TColor nextColor();
    /// Starts the cycle again; for tests.
    void reset();

private:
    std::atomic<unsigned> m_index = 0;
};
