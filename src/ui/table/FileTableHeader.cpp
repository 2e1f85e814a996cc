// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FileTableHeader.h"

#include "ui/table/TableLook.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <array>

namespace {

constexpr int kMarkWidth = 8;
constexpr int kMarkHeight = 5;
constexpr int kMarkGap = 6;
constexpr int kExtraHeight = 11;
constexpr int kSeparatorInset = 8;
constexpr int kFocusInset = 3;
constexpr int kStepLetters = 2; ///< that an edge moves by

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

bool isArrow(const QKeyEvent &key)
{
    return key.key() == Qt::Key_Left || key.key() == Qt::Key_Right;
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
    setFocusPolicy(Qt::TabFocus);
    setAccessibleDescription(tr("Left and Right choose a column, Enter sorts by it, Alt moves it, "
                                "Ctrl makes it narrower or wider, Escape goes back."));
    connect(this, &QHeaderView::sectionClicked, this, &FileTableHeader::requestSort);
}

void FileTableHeader::requestSort(int section)
{
    Q_EMIT sortRequested(section, section != m_sorted || !m_isAscending);
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
    describeReached();
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
    if (hasFocus() && section == m_reached) {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(colors.accent, 1.5));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(
            QRectF(rect).adjusted(kFocusInset, kFocusInset, -kFocusInset, -kFocusInset - 1),
            Theme::kFieldRadius, Theme::kFieldRadius);
        painter->restore();
    }
    if ((m_hovered >= 0 || hasFocus()) && section != logicalIndex(count() - 1)) {
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

int FileTableHeader::shownFrom(int visual, int step) const
{
    while (visual >= 0 && visual < count() && isSectionHidden(logicalIndex(visual)))
        visual += step;
    return visual >= 0 && visual < count() ? visual : -1;
}

void FileTableHeader::reach(int visual)
{
    if (visual < 0)
        return;
    m_reached = logicalIndex(visual);
    describeReached();
    Q_EMIT columnReached(m_reached);
    viewport()->update();
}

void FileTableHeader::moveReached(int step)
{
    const int from = visualIndex(m_reached);
    const int to = shownFrom(from + step, step);
    if (to < 0)
        return;
    moveSection(from, to);
    reach(to);
}

void FileTableHeader::resizeReached(int step)
{
    // The last column takes up what the others leave.
    const bool isLast = shownFrom(count() - 1, -1) == visualIndex(m_reached);
    if (isLast || sectionResizeMode(m_reached) != Interactive)
        return;
    const int width =
        sectionSize(m_reached) + step * kStepLetters * QFontMetrics(titleFont()).averageCharWidth();
    resizeSection(m_reached, std::clamp(width, minimumSectionSize(), TableLook::kMostWidth));
    reach(visualIndex(m_reached));
}

void FileTableHeader::describeReached()
{
    if (m_reached < 0)
        return;
    const QString title =
        model()->headerData(m_reached, Qt::Horizontal, Qt::AccessibleTextRole).toString();
    setAccessibleName(m_reached != m_sorted ? title
                      : m_isAscending       ? tr("%1, sorted ascending").arg(title)
                                            : tr("%1, sorted descending").arg(title));
}

/// Its middle is where a menu belongs that a key opens: below the title.
QVariant FileTableHeader::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (query != Qt::ImCursorRectangle || m_reached < 0)
        return QHeaderView::inputMethodQuery(query);
    return QRect(sectionViewportPosition(m_reached), 0, sectionSize(m_reached), 2 * height());
}

/// Arrows are the column's, whatever the menus mean by them elsewhere.
bool FileTableHeader::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && isArrow(static_cast<QKeyEvent &>(*event)))
        event->accept();
    return QHeaderView::event(event);
}

void FileTableHeader::focusInEvent(QFocusEvent *event)
{
    QHeaderView::focusInEvent(event);
    const int start = visualIndex(m_reached < 0 ? std::max(m_sorted, 0) : m_reached);
    const int next = shownFrom(start, 1);
    reach(next < 0 ? shownFrom(start, -1) : next);
}

/// No key that means nothing here is for the rows below.
void FileTableHeader::keyPressEvent(QKeyEvent *event)
{
    event->accept();
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int step = (event->key() == Qt::Key_Right) == !isRightToLeft() ? 1 : -1;
    if (isArrow(*event) && modifiers == Qt::AltModifier)
        return moveReached(step);
    if (isArrow(*event) && modifiers == Qt::ControlModifier)
        return resizeReached(step);
    if (modifiers != Qt::NoModifier)
        return;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        return reach(shownFrom(visualIndex(m_reached) + step, step));
    case Qt::Key_Home:
        return reach(shownFrom(0, 1));
    case Qt::Key_End:
        return reach(shownFrom(count() - 1, -1));
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return requestSort(m_reached);
    case Qt::Key_Escape:
    case Qt::Key_Down:
        Q_EMIT left();
        return;
    default:
        return;
    }
}
