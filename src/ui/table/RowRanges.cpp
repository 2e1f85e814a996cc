// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/RowRanges.h"

#include <algorithm>
#include <limits>

namespace {

constexpr qsizetype kEnd = std::numeric_limits<qsizetype>::max();

/// Walks along the places at which a set begins or ceases to hold rows.
class Border
{
public:
    explicit Border(const std::vector<RowRanges::Range> &ranges)
        : m_ranges(ranges)
    {
    }
    qsizetype next() const
    {
        if (m_range == m_ranges.size())
            return kEnd;
        return m_isInside ? m_ranges[m_range].last + 1 : m_ranges[m_range].first;
    }
    void pass(qsizetype row)
    {
        if (next() != row)
            return;
        m_isInside = !m_isInside;
        if (!m_isInside)
            ++m_range;
    }
    bool isInside() const { return m_isInside; }

private:
    const std::vector<RowRanges::Range> &m_ranges;
    std::size_t m_range = 0;
    bool m_isInside = false;
};

bool isIn(RowRanges::Operation operation, bool first, bool second)
{
    switch (operation) {
    case RowRanges::Operation::Unite:
        return first || second;
    case RowRanges::Operation::Subtract:
        return first && !second;
    case RowRanges::Operation::Toggle:
        return first != second;
    }
    return false;
}

} // namespace

RowRanges::RowRanges(qsizetype first, qsizetype last)
{
    if (first <= last)
        m_ranges.push_back({first, last});
}

RowRanges RowRanges::fromRows(const std::vector<qsizetype> &rows)
{
    RowRanges result;
    for (const qsizetype row : rows)
        result.append(row, row);
    return result;
}

bool RowRanges::contains(qsizetype row) const
{
    const auto after =
        std::upper_bound(m_ranges.begin(), m_ranges.end(), row,
                         [](qsizetype value, const Range &range) { return value < range.first; });
    return after != m_ranges.begin() && row <= std::prev(after)->last;
}

qsizetype RowRanges::count() const
{
    qsizetype count = 0;
    for (const Range &range : m_ranges)
        count += range.last - range.first + 1;
    return count;
}

std::vector<qsizetype> RowRanges::rows() const
{
    std::vector<qsizetype> rows;
    rows.reserve(static_cast<std::size_t>(count()));
    for (const Range &range : m_ranges) {
        for (qsizetype row = range.first; row <= range.last; ++row)
            rows.push_back(row);
    }
    return rows;
}

void RowRanges::append(qsizetype first, qsizetype last)
{
    if (!m_ranges.empty() && m_ranges.back().last + 1 >= first)
        m_ranges.back().last = std::max(last, m_ranges.back().last);
    else
        m_ranges.push_back({first, last});
}

RowRanges RowRanges::combined(Operation operation, const RowRanges &other) const
{
    RowRanges result;
    Border mine(m_ranges);
    Border theirs(other.m_ranges);
    qsizetype begin = 0;
    bool isInside = false;
    for (qsizetype row = std::min(mine.next(), theirs.next()); row != kEnd;
         row = std::min(mine.next(), theirs.next())) {
        if (isInside && begin < row)
            result.append(begin, row - 1);
        mine.pass(row);
        theirs.pass(row);
        isInside = isIn(operation, mine.isInside(), theirs.isInside());
        begin = row;
    }
    return result;
}

RowRanges RowRanges::afterInsertion(qsizetype first, qsizetype count) const
{
    RowRanges result;
    for (const Range &range : m_ranges) {
        if (range.last < first) {
            result.append(range.first, range.last);
        } else if (range.first >= first) {
            result.append(range.first + count, range.last + count);
        } else {
            result.append(range.first, first - 1);
            result.append(first + count, range.last + count);
        }
    }
    return result;
}

RowRanges RowRanges::afterRemoval(qsizetype first, qsizetype last) const
{
    const qsizetype count = last - first + 1;
    RowRanges result;
    for (const Range &range : combined(Operation::Subtract, RowRanges(first, last)).m_ranges) {
        const qsizetype shift = range.first > last ? count : 0;
        result.append(range.first - shift, range.last - shift);
    }
    return result;
}

RowRanges RowRanges::mapped(const std::vector<qsizetype> &newRows) const
{
    std::vector<qsizetype> rows;
    for (const qsizetype row : this->rows()) {
        const qsizetype newRow = newRows[static_cast<std::size_t>(row)];
        if (newRow >= 0)
            rows.push_back(newRow);
    }
    std::sort(rows.begin(), rows.end());
    return fromRows(rows);
}
