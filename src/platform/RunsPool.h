// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TAttributedString.h"

#include <array>

/// Lets coloured texts share their runs: the names of a batch are many, the ways in which rules
/// divide them few. Where one is like the one before it, they share the letters, too. Used by one
/// thread; the texts then go where they like.
class RunsPool
{
public:
    /// Gives the text the memory of an equal one from before, or keeps its own for those to come.
    void share(TAttributedString &text);

private:
    static constexpr std::size_t kSlots = 64;

    void shareRuns(TAttributedString &text);

    std::array<std::shared_ptr<TAttributedString::Runs>, kSlots> m_runs; ///< the last one stays
    QString m_last;
};
