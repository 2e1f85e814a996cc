// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

#include <vector>

/// Where things go that stand in lines one after another and wrap like words: the arithmetic alone,
/// so that a widget can ask how high it would be without moving anything.
struct FlowPlan
{
    struct Item
    {
        int width = 0;
        int least = 0; ///< rather this narrow than on the next line
    };
    struct Lines
    {
        int width = 0; ///< no item is made wider than this
        int height = 0;
        int spacing = 0; ///< between items; negative ones overlap
        int lineSpacing = 0;
        Qt::LayoutDirection direction = Qt::LeftToRight;
    };

    std::vector<QRect> places; ///< one for each item
    int height = 0;

    static FlowPlan of(const std::vector<Item> &items, const Lines &lines);
};
