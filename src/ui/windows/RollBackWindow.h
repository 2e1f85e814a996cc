// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/TDoRollBackWindowController.h"

#include <QDialog>
#include <QPointer>

class Popover;
class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTableView;
class RecordsModel;

/// The application-modal window that shows what of one log can be undone, and undoes it: a table
/// with statuses and the problems of each record, the order, progress and buttons. Closing it by
/// the window manager or Escape cancels; during the rollback the first time ends that, and the
/// window shows what was done. The controller outlives it.
class RollBackWindow : public QDialog
{
    Q_OBJECT

public:
    explicit RollBackWindow(TDoRollBackWindowController &runner, QWidget *parent = nullptr);

    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void layOut();
    void connectAll();
    /// Takes over what the controller says now.
    void refresh();
    void refreshSummary();
    void showProblems(const QModelIndex &index);

    TDoRollBackWindowController &m_runner;
    RecordsModel *m_records;
    QTableView *m_table;
    QLabel *m_summary;
    QLabel *m_status;
    QProgressBar *m_bar;
    QCheckBox *m_onlyProblems;
    QCheckBox *m_reverse;
    QLabel *m_reverseReason;
    QPushButton *m_cancel;
    QPushButton *m_rollBack;
    QPointer<Popover> m_problems;
};
