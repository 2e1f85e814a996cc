// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

/// Paints the rows of the inspector's tree: titles of categories behind a chevron, and below them
/// names and values at one indentation. A grip under the mouse tells what can be dragged.
class TagDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// From texts to the end of their cell.
    static constexpr int kPadding = 8;
    /// How far titles and names stand from the tree's edge, behind their marks.
    static int indentation(const QFontMetrics &metrics);
    static int rowHeight(const QFontMetrics &metrics);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    static void paintMark(QPainter &painter, const QStyleOptionViewItem &option,
                          QLatin1StringView drawing);
};
