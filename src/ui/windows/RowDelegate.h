// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TableCell.h"

#include <QIcon>
#include <QStyledItemDelegate>

/// Paints rows of lists in the scheme's colours: quiet selection, text of a cell's ink. Long texts
/// are elided in the middle.
class RowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// Item data role of a TableCell::Ink, as an int.
    static constexpr int kInkRole = Qt::UserRole;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// A row high enough for the font.
    static int rowHeight(const QFontMetrics &metrics);
    /// The drawing of a cell's image; null for none.
    static QIcon icon(const TImage &image);

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};
