// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/editors/CSVTableModel.h"

#include <QTableView>

/// Shows a CSV table with the column in use marked. A click on a column, or Return in it, chooses
/// it.
class CSVTableView : public QTableView
{
    Q_OBJECT

public:
    explicit CSVTableView(CSVTableModel *model, QWidget *parent = nullptr);

    /// One that the table does not have marks nothing.
    void setChosenColumn(qint64 column);
    qint64 chosenColumn() const { return m_chosen; }

Q_SIGNALS:
    void columnChosen(int column);

private:
    void addHeaders();
    void fitColumns();
    void scrollToChosen();
    void describeChosen();
    bool hasChosen() const;

    qint64 m_chosen = -1;
};
