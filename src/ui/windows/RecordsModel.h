// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/TDoRollBackWindowController.h"

#include <QAbstractTableModel>

/// The records of a rollback as its controller shows them: all, or those that something is in the
/// way of. Of all nothing is kept a row.
class RecordsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Original, Current, Status, ColumnCount };

    RecordsModel(const TDoRollBackWindowController &runner, QObject *parent);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void setOnlyProblems(bool only);
    /// Of all records, whichever are shown.
    int problemCount() const { return static_cast<int>(m_problems.size()); }
    /// The number of the record in the run.
    int recordOf(int row) const;
    /// What there is to say of a file that was moved back to another name than its old one; else
    /// empty.
    QString note(int row) const;
    /// What there is to say of a file without problems.
    QString allIsWell(int row) const;

private:
    void findProblems();
    QString statusName(qint64 status) const;
    const TRenameTRX &recordAt(int row) const;
    QString toolTip(const QModelIndex &index) const;

    const TDoRollBackWindowController &m_runner;
    std::vector<int> m_problems; ///< numbers of records
    bool m_onlyProblems = false;
};
