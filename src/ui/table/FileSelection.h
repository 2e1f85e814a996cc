// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/table/FileTableModel.h"
#include "ui/table/RowRanges.h"

#include <QItemSelectionModel>

/// The selected rows of the file table. Qt's own selection takes quadratic time for many separate
/// rows, such as the matches of a search, so the rows are kept here as ranges and Qt is shown the
/// first of them only, for those who ask it (assistive technology). Follows files through sorts,
/// filters and undo.
class FileSelection : public QItemSelectionModel
{
    Q_OBJECT

public:
    explicit FileSelection(FileTableModel &model, QObject *parent = nullptr);

    bool contains(int row) const { return m_rows.contains(row); }
    const RowRanges &rows() const { return m_rows; }
    void setRows(RowRanges rows);

    void select(const QModelIndex &index, SelectionFlags command) override;
    void select(const QItemSelection &selection, SelectionFlags command) override;
    void clear() override;

Q_SIGNALS:
    void rowsChanged();

private:
    void take(RowRanges rows);
    void inserted(const QModelIndex &parent, int first, int last);
    void removed(const QModelIndex &parent, int first, int last);
    void mappingStarts();
    void mapped(const std::vector<qsizetype> &newRows);
    void mirror();

    FileTableModel &m_model;
    RowRanges m_rows;
    /// What was selected before the gesture that is under way (a drag over rows, Shift with
    /// arrows).
    RowRanges m_before;
    QModelIndex m_current; ///< while rows are being mapped
    bool m_isMapping = false;
};
