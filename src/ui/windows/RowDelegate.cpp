// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/RowDelegate.h"

#include "document/TErrorTypes.h"
#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"

#include <QApplication>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kRoom = 8; ///< of a row beside its line of text
constexpr QChar kIsolate{0x2068};
constexpr QChar kEndIsolate{0x2069};
constexpr int kInset = 5; ///< of a cell's content from its sides

/// Where a row's content lies. Several lines of text need room of their own between rows.
QRect contentOf(const QStyleOptionViewItem &option)
{
    const bool isWrapped = option.features.testFlag(QStyleOptionViewItem::WrapText);
    const int room = isWrapped ? kRoom / 2 : 0;
    return option.rect.adjusted(kInset, room, -kInset, -room);
}

int iconSide()
{
    return Icons::extent(QFontMetrics(QApplication::font()));
}

QIcon dot(const QColor &color)
{
    const qreal ratio = qApp->devicePixelRatio();
    const int side = iconSide();
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const int margin = side * 3 / 16;
    painter.drawEllipse(margin, margin, side - 2 * margin, side - 2 * margin);
    return QIcon(pixmap);
}

QColor inkOf(TableCell::Ink ink, const ThemeColors &colors)
{
    switch (ink) {
    case TableCell::Ink::Grey:
        return colors.muted;
    case TableCell::Ink::Red:
        return colors.extension;
    case TableCell::Ink::Normal:
        break;
    }
    return colors.ink;
}

} // namespace

QIcon RowDelegate::icon(const TImage &image)
{
    const ThemeColors colors = ThemeColors::of(QApplication::palette());
    const QString &name = image.name();
    if (name == "tick"_L1)
        return Icons::forLevel(TErrorTypes::kNone);
    if (name == "achtung"_L1)
        return Icons::forLevel(TErrorTypes::kWarning);
    if (name == "stop"_L1)
        return Icons::forLevel(TErrorTypes::kCritical);
    if (name == "dot-green"_L1)
        return dot(colors.good);
    if (name == "dot-red"_L1)
        return dot(colors.critical);
    if (name == "green arrow"_L1)
        return QIcon(
            Icons::pixmap("roll-back"_L1, iconSide(), colors.good, qApp->devicePixelRatio()));
    return {};
}

int RowDelegate::rowHeight(const QFontMetrics &metrics)
{
    return std::max(Theme::kRowHeight, metrics.height() + kRoom);
}

void RowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                        const QModelIndex &index) const
{
    QStyleOptionViewItem ground(option);
    initStyleOption(&ground, index);
    ground.widget->style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &ground, painter,
                                          ground.widget);
    QStyleOptionViewItem content(option);
    content.state &= ~(QStyle::State_Selected | QStyle::State_MouseOver);
    content.rect = contentOf(option);
    QStyledItemDelegate::paint(painter, content, index);
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem content(option);
    content.rect = contentOf(option);
    QSize size = QStyledItemDelegate::sizeHint(content, index);
    size.rheight() += option.rect.height() - content.rect.height();
    size.setHeight(std::max(size.height(), rowHeight(option.fontMetrics)));
    return size;
}

void RowDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    // Names keep their own direction: "3.txt" must not read "txt.3" among right-to-left texts.
    if (option->direction == Qt::RightToLeft && !option->text.isEmpty())
        option->text = kIsolate + option->text + kEndIsolate;
    const ThemeColors colors = ThemeColors::of(option->palette);
    const auto ink = static_cast<TableCell::Ink>(index.data(kInkRole).toInt());
    option->palette.setColor(QPalette::Highlight, colors.selection);
    for (const auto role : {QPalette::Text, QPalette::HighlightedText})
        option->palette.setColor(role, inkOf(ink, colors));
    if (option->features.testFlag(QStyleOptionViewItem::WrapText))
        option->decorationAlignment = Qt::AlignHCenter | Qt::AlignTop;
    else
        option->textElideMode = Qt::ElideMiddle;
    option->state &= ~QStyle::State_HasFocus; // the selection shows where the keyboard is
}
