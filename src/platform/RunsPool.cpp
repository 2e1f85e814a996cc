// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RunsPool.h"

void RunsPool::share(TAttributedString &text)
{
    if (text.isEmpty())
        return;
    if (text.m_text == m_last)
        text.m_text = m_last;
    else
        m_last = text.m_text;
    shareRuns(text);
}

void RunsPool::shareRuns(TAttributedString &text)
{
    constexpr std::size_t kFactor = 31;
    if (!text.m_runs)
        return;
    std::size_t hash = 0;
    for (const TAttributedString::Run &run : *text.m_runs)
        hash = hash * kFactor + static_cast<std::size_t>(run.length);
    auto &known = m_runs[hash % kSlots];
    if (known && *known == *text.m_runs) {
        text.m_runs = known;
        return;
    }
    text.m_runs->shrink_to_fit();
    known = text.m_runs;
}
