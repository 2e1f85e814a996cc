// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/table/FileKinds.h"

#include <QTimer>
#include <QWidget>

class PillButton;
class QLabel;
class QBoxLayout;
class QLineEdit;

/// The filters above the file table, with the number of files that pass each, and the search field,
/// which goes below them where the row is too narrow for both.
class FilterRow : public QWidget
{
    Q_OBJECT

public:
    using Filter = FileKinds::Filter;

    explicit FilterRow(QWidget *parent = nullptr);

    QLineEdit *searchField() const { return m_search; }
    QList<PillButton *> filters() const { return {m_pills.begin(), m_pills.end()}; }
    void setCount(Filter filter, qint64 count);
    void chooseAll();
    /// Without telling anyone.
    void clearSearch();
    /// What became of the search, beside its field; empty when it found something.
    void setRemark(const QString &remark);
    /// Something of the window's own, before the search field; the row owns it.
    void addControl(QWidget *control);

Q_SIGNALS:
    void filterChosen(FileKinds::Filter filter);
    /// Comes a moment after the last key; empty when the field was cleared.
    void searchChanged(const QString &text);
    /// Return in the search field, after searchChanged.
    void searchConfirmed();
    /// Escape or the arrow downwards in the search field.
    void searchLeft();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void searchNow();
    void followChecked();
    void followFont();

    QBoxLayout *m_tools;
    std::array<PillButton *, FileKinds::kFilterCount> m_pills{};
    QLabel *m_remark;
    QLineEdit *m_search;
    QAction *m_lens;
    QTimer m_pause;
    QString m_searched;
};
