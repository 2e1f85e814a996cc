// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FileTableHeader.h"

#include "ui/table/TableLook.h"

#include <QMouseEvent>
#include <QPainter>

#include <array>

namespace {

constexpr int kMarkWidth = 8;
constexpr int kMarkHeight = 5;
constexpr int kMarkGap = 6;
constexpr int kExtraHeight = 11;
constexpr int kSeparatorInset = 8;

void drawMark(QPainter &painter, QPoint place, bool ascending, const QColor &ink)
{
    const int tip = ascending ? 0 : kMarkHeight;
    const std::array triangle{QPointF(place + QPoint(0, kMarkHeight - tip)),
                              QPointF(place + QPoint(kMarkWidth, kMarkHeight - tip)),
                              QPointF(place) + QPointF(kMarkWidth / 2.0, tip)};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawPolygon(triangle.data(), static_cast<int>(triangle.size()));
    painter.restore();
}

} // namespace

FileTableHeader::FileTableHeader(QWidget *parent)
    : QHeaderView(Qt::Horizontal, parent)
{
    setSectionsClickable(true);
    setSectionsMovable(true);
    setHighlightSections(false);
    setMouseTracking(true);
    setMinimumSectionSize(Theme::kRowHeight + TableLook::kPadding);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    connect(this, &QHeaderView::sectionClicked, this, [this](int section) {
        Q_EMIT sortRequested(section, section != m_sorted || !m_isAscending);
    });
}

QFont FileTableHeader::titleFont() const
{
    QFont result = font();
    result.setWeight(QFont::Medium);
    return result;
}

void FileTableHeader::markSort(int column, bool ascending)
{
    m_sorted = column;
    m_isAscending = ascending;
    viewport()->update();
}

void FileTableHeader::removeMark()
{
    markSort(-1, true);
}

QSize FileTableHeader::sectionSizeFromContents(int section) const
{
    const QFontMetrics metrics(titleFont());
    const QString title = model()->headerData(section, Qt::Horizontal).toString();
    return {metrics.horizontalAdvance(title) + 2 * TableLook::kPadding + kMarkGap + kMarkWidth,
            metrics.height() + kExtraHeight};
}

void FileTableHeader::paintEvent(QPaintEvent *event)
{
    const ThemeColors colors = ThemeColors::of(palette());
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), colors.card);
    painter.fillRect(0, viewport()->height() - 1, viewport()->width(), 1, colors.border);
    painter.end();
    QHeaderView::paintEvent(event);
}

void FileTableHeader::paintSection(QPainter *painter, const QRect &rect, int section) const
{
    const ThemeColors colors = ThemeColors::of(palette());
    const QRect inside = rect.adjusted(TableLook::kPadding, 0, -TableLook::kPadding, -1);
    const QVariant alignmentOfText =
        model()->headerData(section, Qt::Horizontal, Qt::TextAlignmentRole);
    const bool isAtEnd = alignmentOfText.isValid() &&
                         alignmentOfText.value<Qt::Alignment>().testFlag(Qt::AlignRight);
    const Qt::Alignment side =
        QStyle::visualAlignment(layoutDirection(), isAtEnd ? Qt::AlignRight : Qt::AlignLeft);
    painter->fillRect(rect.adjusted(0, 0, 0, -1), colors.card);
    painter->setFont(titleFont());
    painter->setPen(section == m_hovered ? colors.accent : colors.ink);
    const bool hasMark = section == m_sorted;
    const int markRoom = hasMark ? kMarkGap + kMarkWidth : 0;
    const QString title = QFontMetrics(titleFont())
                              .elidedText(model()->headerData(section, Qt::Horizontal).toString(),
                                          Qt::ElideRight, inside.width() - markRoom);
    const QRect text = QStyle::alignedRect(
        Qt::LeftToRight, side | Qt::AlignVCenter,
        QSize(QFontMetrics(titleFont()).horizontalAdvance(title), inside.height()), inside);
    painter->drawText(text, Qt::AlignCenter | Qt::TextSingleLine, title);
    if (hasMark) {
        const bool isLeftOfText = side.testFlag(Qt::AlignRight);
        const int gap = title.isEmpty() ? 0 : kMarkGap;
        const int x = isLeftOfText ? text.left() - gap - kMarkWidth : text.right() + 1 + gap;
        drawMark(*painter, {x, inside.center().y() - kMarkHeight / 2}, m_isAscending, colors.muted);
    }
    if (m_hovered >= 0 && section != logicalIndex(count() - 1)) {
        const int edge = isRightToLeft() ? rect.left() : rect.right();
        painter->fillRect(
            QRect(edge, rect.top() + kSeparatorInset, 1, rect.height() - 2 * kSeparatorInset),
            colors.border);
    }
}

void FileTableHeader::mouseMoveEvent(QMouseEvent *event)
{
    QHeaderView::mouseMoveEvent(event);
    m_hovered = logicalIndexAt(event->position().toPoint());
    viewport()->update();
}

void FileTableHeader::leaveEvent(QEvent *event)
{
    QHeaderView::leaveEvent(event);
    m_hovered = -1;
    viewport()->update();
}
