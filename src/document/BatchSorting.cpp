// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/BatchSorting.h"

#include "commonprocs/StringAdditions.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace BatchSorting {

namespace {

constexpr std::array kMenu{
    Order{Key::FileName, true, false},
    Order{Key::FileName, true, true},
    Order{Key::FileName, false, false},
    Order{Key::FileName, false, true},
    Order{Key::TargetName, true, false},
    Order{Key::TargetName, false, false},
    Order{Key::CreationDate, true, false},
    Order{Key::CreationDate, false, false},
    Order{Key::ModificationDate, true, false},
    Order{Key::ModificationDate, false, false},
    Order{Key::Size, true, false},
    Order{Key::Size, false, false},
    Order{Key::Error, true, false},
    Order{Key::Error, false, false},
};

} // namespace

std::optional<Order> orderForMenuItem(int item)
{
    if (item < 1 || item > static_cast<int>(kMenu.size()))
        return std::nullopt;
    return kMenu[static_cast<std::size_t>(item) - 1];
}

std::vector<qsizetype> sortedOrder(const std::vector<Row> &rows, const Order &order)
{
    const bool byText = order.key == Key::FileName || order.key == Key::TargetName;
    std::vector<QString> texts;
    if (byText) {
        texts.reserve(rows.size());
        for (const Row &row : rows)
            texts.push_back(order.caseSensitive ? row.text : upperCased(row.text));
    }
    const auto less = [&](qsizetype a, qsizetype b) {
        const auto left = static_cast<std::size_t>(a);
        const auto right = static_cast<std::size_t>(b);
        return byText ? texts[left] < texts[right] : rows[left].number < rows[right].number;
    };
    std::vector<qsizetype> result(rows.size());
    std::iota(result.begin(), result.end(), 0);
    std::stable_sort(result.begin(), result.end(), [&](qsizetype a, qsizetype b) {
        return order.ascending ? less(a, b) : less(b, a);
    });
    return result;
}

} // namespace BatchSorting
