// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TAttributedString.h"

#include <array>

/// Lets coloured texts share their runs: the names of a batch are many, the ways in which rules
/// divide them few. Used by one thread; the texts then go where they like.
class RunsPool
{
public:
    /// Gives the text the runs of an equal one from before, or keeps its own for those to come.
    void share(TAttributedString &text);

private:
    static constexpr std::size_t kSlots = 64;

    std::array<std::shared_ptr<TAttributedString::Runs>, kSlots> m_runs; ///< the last one stays
};
