// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <vector>

/// Finds the numbers that come more than once among many, most of which come once and lie close
/// together, as the inode numbers of a folder do. A value.
class RepeatedNumbers
{
public:
    void add(quint64 number) { m_numbers.push_back(number); }
    /// All numbers are there; call once, before contains.
    void settle();
    bool contains(quint64 number) const;

private:
    std::vector<quint64> m_numbers; ///< all, until they are settled; then the repeated ones, sorted
};
