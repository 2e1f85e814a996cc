// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/FoldingRow.h"

#include <algorithm>

FoldingRow::FoldingRow(int beside, int below, QWidget *parent)
    : QBoxLayout(LeftToRight, parent)
    , m_beside(beside)
    , m_below(below)
{
    setContentsMargins(0, 0, 0, 0);
    setSpacing(beside);
}

bool FoldingRow::folds(int width) const
{
    int beside = -m_beside;
    for (int i = 0; i < count(); ++i)
        beside += itemAt(i)->minimumSize().width() + m_beside;
    return width < beside;
}

int FoldingRow::heightForWidth(int width) const
{
    int highest = 0;
    int below = -m_below;
    for (int i = 0; i < count(); ++i) {
        const int height = itemAt(i)->sizeHint().height();
        highest = std::max(highest, height);
        below += height + m_below;
    }
    return folds(width) ? below : highest;
}

QSize FoldingRow::minimumSize() const
{
    QSize size;
    for (int i = 0; i < count(); ++i)
        size = size.expandedTo(itemAt(i)->minimumSize());
    return size;
}

void FoldingRow::setGeometry(const QRect &rect)
{
    const bool isFolded = folds(rect.width());
    setDirection(isFolded ? TopToBottom : LeftToRight);
    // Setting the same again would ask for a layout, and so on for ever.
    if (const int wanted = isFolded ? m_below : m_beside; spacing() != wanted)
        setSpacing(wanted);
    QBoxLayout::setGeometry(rect);
}
