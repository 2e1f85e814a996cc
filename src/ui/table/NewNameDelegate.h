// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/table/FileCellDelegate.h"
#include "ui/table/FileCells.h"

/// Paints the new name part by part on the colours of the rules that made it, a new extension in
/// red and a kept one quietly, and behind them what the run would write instead, if it would.
class NewNameDelegate : public FileCellDelegate
{
    Q_OBJECT

public:
    using FileCellDelegate::FileCellDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    void paintContent(QPainter &painter, const QStyleOptionViewItem &option, const QRect &rect,
                      const QModelIndex &index) const override;

private:
    /// With the gap before it; 0 for none.
    int noteWidth(const QString &note) const;
    /// What the run would write instead, shortened to its place.
    void paintNote(QPainter &painter, const QStyleOptionViewItem &option, const QRect &place,
                   const FileCells::Note &note, const QModelIndex &index) const;
};
