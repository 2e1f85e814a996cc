// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FileCellDelegate.h"

#include "ui/table/FileCells.h"

#include <QPainter>

namespace {

/// No text this long is shown in full, so the rest is not measured.
constexpr qsizetype kMostShown = 400;
constexpr qsizetype kShownEnd = 60;
constexpr float kCursorStrength = 0.6F;
constexpr QChar kEllipsis{u'\u2026'};

QString withoutMiddle(const QString &text)
{
    if (text.size() <= kMostShown)
        return text;
    return text.first(kMostShown - kShownEnd) + kEllipsis + text.last(kShownEnd);
}

/// What is left of a text that was cut is shaped anew, and may come out wider than its room.
QString fitted(const QString &text, const QFontMetrics &metrics, Qt::TextElideMode mode, int room)
{
    QString shown = metrics.elidedText(text, mode, room);
    if (shown.size() == text.size())
        return shown;
    if (const int excess = metrics.horizontalAdvance(shown) - room; excess > 0)
        shown = metrics.elidedText(text, mode, room - excess);
    return shown;
}

} // namespace

const FileTableModel &fileTableModel(const QModelIndex &index)
{
    return *static_cast<const FileTableModel *>(index.model());
}

FileCellDelegate::FileCellDelegate(const TableLook &look, const FileSelection &selection,
                                   QObject *parent)
    : QStyledItemDelegate(parent)
    , m_look(look)
    , m_selection(selection)
{
}

QSize FileCellDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const
{
    const QString text = withoutMiddle(index.data(Qt::DisplayRole).toString());
    return {QFontMetrics(m_look.font).horizontalAdvance(text) + 2 * TableLook::kPadding,
            Theme::kRowHeight};
}

void FileCellDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    paintGround(*painter, option, index);
    if (index.column() == FileTableModel::Status)
        return paintLevel(*painter, option.rect, index);
    const QRect rect = option.rect.adjusted(TableLook::kPadding, 0, -TableLook::kPadding, 0);
    if (rect.width() <= 0)
        return;
    painter->save();
    painter->setClipRect(option.rect);
    painter->setLayoutDirection(option.direction);
    painter->setFont(m_look.font);
    paintContent(*painter, option, rect, index);
    painter->restore();
}

QColor FileCellDelegate::muted(const QModelIndex &index) const
{
    return m_selection.contains(index.row()) ? m_look.mutedOnSelection : m_look.colors.muted;
}

void FileCellDelegate::paintGround(QPainter &painter, const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    const ThemeColors &colors = m_look.colors;
    if (m_selection.contains(index.row()))
        painter.fillRect(option.rect, colors.selection);
    else
        painter.fillRect(option.rect, index.row() % 2 == 0 ? colors.card : colors.stripe);
    // The cursor shows as a line around its row while the table has the keyboard.
    const bool isCurrent = m_selection.currentIndex().row() == index.row();
    if (!isCurrent || !option.widget->hasFocus() ||
        (m_selection.rows().count() == 1 && m_selection.contains(index.row())))
        return;
    QColor line = colors.accent;
    line.setAlphaF(kCursorStrength);
    painter.fillRect(QRect(option.rect.left(), option.rect.top(), option.rect.width(), 1), line);
    painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), line);
}

void FileCellDelegate::paintLevel(QPainter &painter, const QRect &cell,
                                  const QModelIndex &index) const
{
    const FileTableModel &model = fileTableModel(index);
    const TFileObject &file = model.file(index.row());
    const int level = FileCells::level(file, model.forecast(index.row()));
    QRect place(0, 0, m_look.iconSide, m_look.iconSide);
    place.moveCenter(cell.center());
    if (level == TErrorTypes::kNone && file.hasBeenProcessed())
        return m_look.done.paint(&painter, place, Qt::AlignCenter, QIcon::Disabled);
    const auto known =
        static_cast<std::size_t>(std::clamp(level, 0, static_cast<int>(m_look.levels.size()) - 1));
    // Of names from before the last change, that they were sound says nothing.
    const bool isOld = level == TErrorTypes::kNone && model.document().areNamesOld();
    m_look.levels[known].paint(&painter, place, Qt::AlignCenter,
                               isOld ? QIcon::Disabled : QIcon::Normal);
}

void FileCellDelegate::paintContent(QPainter &painter, const QStyleOptionViewItem &option,
                                    const QRect &rect, const QModelIndex &index) const
{
    const bool isName = index.column() == FileTableModel::Name;
    const FileTableModel &model = fileTableModel(index);
    const QFontMetrics metrics(m_look.font);
    const QString text = withoutMiddle(index.data(Qt::DisplayRole).toString());
    QString shown = fitted(text, metrics, isName ? Qt::ElideMiddle : Qt::ElideRight, rect.width());
    if (const QString shorter = shown == text ? QString() : model.shortText(index);
        !shorter.isEmpty())
        shown = fitted(shorter, metrics, Qt::ElideRight, rect.width());
    // Names, numbers and dates read as their own text does, whichever way the window runs.
    painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const Qt::Alignment alignment = QStyle::visualAlignment(
        option.direction, index.column() == FileTableModel::Size ? Qt::AlignRight : Qt::AlignLeft);
    const bool isDone = model.file(index.row()).hasBeenProcessed();
    painter.setPen(isName && !isDone ? m_look.colors.ink : muted(index));
    painter.drawText(rect, static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
                     shown);
}
