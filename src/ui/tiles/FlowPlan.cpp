// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/FlowPlan.h"

#include <algorithm>

FlowPlan FlowPlan::of(const std::vector<Item> &items, const Lines &lines)
{
    FlowPlan plan;
    plan.places.reserve(items.size());
    int x = 0;
    int y = 0;
    for (const Item &item : items) {
        const int room = lines.width - x;
        if (x > 0 && room < std::min(item.width, item.least)) {
            x = 0;
            y += lines.height + lines.lineSpacing;
        }
        const int width = std::clamp(lines.width - x, 1, std::max(item.width, 1));
        const int left = lines.direction == Qt::RightToLeft ? lines.width - x - width : x;
        plan.places.emplace_back(left, y, width, lines.height);
        x += width + lines.spacing;
    }
    plan.height = y + lines.height;
    return plan;
}
