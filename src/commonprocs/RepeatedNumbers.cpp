// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/RepeatedNumbers.h"

#include <algorithm>

namespace {

/// Numbers that spread further than this for each of them are sorted instead of marked.
constexpr quint64 kMostBitsForNumber = 64;

/// Leaves the numbers that came before, by marking each in a row of bits.
void keepMarkedTwice(std::vector<quint64> &numbers, quint64 lowest, quint64 spread)
{
    std::vector<bool> seen(spread + 1);
    std::erase_if(numbers, [&seen, lowest](quint64 number) {
        const bool isFirst = !seen[number - lowest];
        seen[number - lowest] = true;
        return isFirst;
    });
}

/// The same for numbers in their order.
void keepEqualNeighbours(std::vector<quint64> &numbers)
{
    bool isFirst = true;
    quint64 last = 0;
    std::erase_if(numbers, [&](quint64 number) {
        const bool isNew = isFirst || number != last;
        isFirst = false;
        last = number;
        return isNew;
    });
}

} // namespace

void RepeatedNumbers::settle()
{
    if (m_numbers.empty())
        return;
    const auto [lowest, highest] = std::minmax_element(m_numbers.begin(), m_numbers.end());
    const quint64 spread = *highest - *lowest;
    if (spread / kMostBitsForNumber < m_numbers.size()) {
        keepMarkedTwice(m_numbers, *lowest, spread);
        std::sort(m_numbers.begin(), m_numbers.end());
    } else {
        std::sort(m_numbers.begin(), m_numbers.end());
        keepEqualNeighbours(m_numbers);
    }
    m_numbers.shrink_to_fit();
}

bool RepeatedNumbers::contains(quint64 number) const
{
    return std::binary_search(m_numbers.begin(), m_numbers.end(), number);
}
