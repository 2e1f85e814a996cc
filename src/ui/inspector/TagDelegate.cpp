// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/inspector/TagDelegate.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"

#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kAroundMark = 6;
constexpr qreal kRadius = 4;

/// Behind the whole row, with round corners at its ends alone.
void paintGround(QPainter &painter, const QStyleOptionViewItem &option, const QColor &color)
{
    QRect rect = option.rect;
    // Each cell paints its half of a rounded rectangle as wide as the row.
    const bool isFirst = option.viewItemPosition == QStyleOptionViewItem::Beginning;
    const bool isLast = option.viewItemPosition == QStyleOptionViewItem::End;
    const bool isMirrored = option.direction == Qt::RightToLeft;
    const int beyond = static_cast<int>(kRadius) * 2;
    if (isFirst)
        rect.adjust(isMirrored ? -beyond : 0, 0, isMirrored ? 0 : beyond, 0);
    else if (isLast)
        rect.adjust(isMirrored ? 0 : -beyond, 0, isMirrored ? beyond : 0, 0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, kRadius, kRadius);
}

} // namespace

int TagDelegate::indentation(const QFontMetrics &metrics)
{
    return Icons::extent(metrics) + kAroundMark;
}

void TagDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                        const QModelIndex &index) const
{
    const ThemeColors colors = ThemeColors::of(option.palette);
    const bool isGroup = !index.parent().isValid();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isUnderMouse = option.state.testFlag(QStyle::State_MouseOver);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setClipRect(option.rect);
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    if (isSelected || (isUnderMouse && !isGroup))
        paintGround(*painter, item, isSelected ? colors.selection : colors.stripe);

    if (isGroup)
        paintMark(*painter, item,
                  item.state.testFlag(QStyle::State_Open) ? "chevron-down"_L1 : "chevron-right"_L1);
    else if (isUnderMouse && index.column() == 0 && index.flags().testFlag(Qt::ItemIsDragEnabled))
        paintMark(*painter, item, "grip"_L1);

    const QVariant ink = index.data(Qt::ForegroundRole);
    painter->setFont(item.font);
    painter->setPen(ink.isValid() ? ink.value<QColor>() : colors.ink);
    const int start = index.column() == 0 ? indentation(item.fontMetrics) : 0;
    const QRect room =
        QStyle::visualRect(item.direction, item.rect, item.rect.adjusted(start, 0, -kPadding, 0));
    painter->drawText(room, static_cast<int>(Qt::AlignVCenter) | Qt::AlignLeading,
                      item.fontMetrics.elidedText(item.text, Qt::ElideRight, room.width()));
    painter->restore();
}

/// In the middle of the indentation.
void TagDelegate::paintMark(QPainter &painter, const QStyleOptionViewItem &option,
                            QLatin1StringView drawing)
{
    const QColor ink = ThemeColors::of(option.palette).muted;
    const QRect &cell = option.rect;
    const int side = Icons::extent(option.fontMetrics);
    const QRect place(cell.left() + kAroundMark / 2, cell.top() + (cell.height() - side) / 2, side,
                      side);
    painter.drawPixmap(QStyle::visualRect(option.direction, cell, place),
                       Icons::pixmap(drawing, side, ink, painter.device()->devicePixelRatioF()));
}

QSize TagDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QSize hint = QStyledItemDelegate::sizeHint(option, index);
    return {hint.width(), rowHeight(option.fontMetrics)};
}

int TagDelegate::rowHeight(const QFontMetrics &metrics)
{
    return std::max(Theme::kRowHeight, metrics.height() + 4);
}
