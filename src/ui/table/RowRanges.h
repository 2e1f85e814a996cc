// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <vector>

/// A set of rows as ascending ranges that do not touch, so that all of 100,000 rows are one. A
/// value; every operation is linear in the number of ranges.
class RowRanges
{
public:
    struct Range
    {
        qsizetype first;
        qsizetype last;
        friend bool operator==(const Range &, const Range &) = default;
    };
    enum class Operation { Unite, Subtract, Toggle };

    RowRanges() = default;
    RowRanges(qsizetype first, qsizetype last);
    /// Rows are ascending.
    static RowRanges fromRows(const std::vector<qsizetype> &rows);

    bool isEmpty() const { return m_ranges.empty(); }
    bool contains(qsizetype row) const;
    qsizetype count() const;
    const std::vector<Range> &ranges() const { return m_ranges; }
    std::vector<qsizetype> rows() const;

    /// Adds a range that lies behind all others.
    void append(qsizetype first, qsizetype last);
    RowRanges combined(Operation operation, const RowRanges &other) const;
    /// The same rows after others were put in before a row; those are not in the set.
    RowRanges afterInsertion(qsizetype first, qsizetype count) const;
    RowRanges afterRemoval(qsizetype first, qsizetype last) const;
    /// newRows has the new row of every old one, or a negative number.
    RowRanges mapped(const std::vector<qsizetype> &newRows) const;

    friend bool operator==(const RowRanges &, const RowRanges &) = default;

private:
    std::vector<Range> m_ranges;
};
