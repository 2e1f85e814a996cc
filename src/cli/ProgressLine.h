// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/ByteOutput.h"

#include <QString>

#include <chrono>

/// One line on standard error that says how far long work has come, at most ten times a second. On
/// a terminal it overwrites itself and vanishes; elsewhere each state is a line of its own.
class ProgressLine
{
public:
    enum class Mode { Off, Overwrite, Lines };

    ProgressLine(ByteOutput &output, Mode mode);
    ~ProgressLine();
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    /// "what: done of total", or without the total when that is not known (negative).
    void show(QLatin1StringView what, qsizetype done, qsizetype total = -1);
    /// Takes the line away before something else is written.
    void clear();

private:
    ByteOutput &m_output;
    Mode m_mode;
    std::chrono::steady_clock::time_point m_last;
    bool m_visible = false;
};
