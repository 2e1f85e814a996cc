// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/table/FileSelection.h"
#include "ui/table/TableLook.h"

#include <QStyledItemDelegate>

/// Paints the cells of the file table: ground, problem icon, and texts on one line. Look and
/// selection belong to the table and outlive the delegate.
class FileCellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    FileCellDelegate(const TableLook &look, const FileSelection &selection,
                     QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    /// What lies on the ground; rect is the cell without its padding.
    virtual void paintContent(QPainter &painter, const QStyleOptionViewItem &option,
                              const QRect &rect, const QModelIndex &index) const;
    const TableLook &look() const { return m_look; }
    /// The colour of lesser texts in the row.
    QColor muted(const QModelIndex &index) const;

private:
    void paintGround(QPainter &painter, const QStyleOptionViewItem &option,
                     const QModelIndex &index) const;
    void paintLevel(QPainter &painter, const QRect &cell, const QModelIndex &index) const;

    const TableLook &m_look;
    const FileSelection &m_selection;
};

const FileTableModel &fileTableModel(const QModelIndex &index);
