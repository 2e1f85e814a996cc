// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TCSVRule.h"

#include <QAbstractTableModel>
#include <QTimer>

/// The table of a CSV rule, cell by cell as the rule uses them; nothing is copied. Rows and columns
/// are numbered from 1; a header row is none of the rows and gives the columns their titles. The
/// rows of a large table come in portions, because views keep something for each. Main thread only.
class CSVTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit CSVTableModel(QObject *parent);

    /// Null: no table. columns is the length of its longest row.
    void setTable(const TStringTablePtr &rows, int columns);
    const TStringTablePtr &table() const { return m_rows; }
    /// Of the table, whether they have come or not.
    int tableRows() const;
    void setHasHeader(bool hasHeader);
    void setTrimsQuotes(bool trims);
    /// The length of the longest row. Any thread.
    static int columnsOf(const TStringTablePtr &rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void letIn(int rows);
    void cellsChanged();
    QString cell(std::size_t row, int column) const;
    QString columnTitle(int column) const;

    TStringTablePtr m_rows;
    int m_columns = 0;
    int m_shown = 0; ///< rows that have come
    QTimer m_growing;
    bool m_hasHeader = false;
    bool m_trimsQuotes = false;
};
