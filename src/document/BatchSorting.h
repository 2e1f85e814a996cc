// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TDate.h"

#include <QString>

#include <optional>
#include <vector>

/// The sorts of the file table as functions over sort keys, so that the document and the command
/// line order alike. All sorts are stable.
namespace BatchSorting {

enum class Key { FileName, TargetName, CreationDate, ModificationDate, Size, Error };

struct Order
{
    Key key = Key::FileName;
    bool ascending = true;
    bool caseSensitive = false;
};

/// The order of sort menu item 1 to 14; nothing for any other number.
std::optional<Order> orderForMenuItem(int item);

/// The values of one file that a sort may compare.
struct Row
{
    QString text;      ///< fileName or targetName
    qint64 number = 0; ///< date in nanoseconds, size or error level
};

/// The permutation that sorts the rows: result[i] is the old index of the row at place i.
std::vector<qsizetype> sortedOrder(const std::vector<Row> &rows, const Order &order);

} // namespace BatchSorting
