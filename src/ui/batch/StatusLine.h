// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProgressBar>
#include <QTimer>
#include <QToolButton>
#include <QWidget>

class BadgeButton;
class ElidedLabel;

/// The foot of a batch window: what is going on, how many problems there are, and the buttons that
/// run. Work that is over in a moment shows no bar.
class StatusLine : public QWidget
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget *parent = nullptr);

    void setText(const QString &text);
    void setBusy(bool busy);
    void showProgress(qint64 currVal, qint64 maxVal);
    void hideProgress();
    void setProblems(qsizetype warnings, qsizetype criticals);
    void setBadge(qint64 criticals);
    /// Shows the button that ends what is going on.
    void setCancellable(bool cancellable);

    BadgeButton *testRunButton() const { return m_testRun; }
    BadgeButton *rollBackButton() const { return m_rollBack; }
    BadgeButton *renameButton() const { return m_rename; }
    /// What a list of problems points to.
    QWidget *problemsAnchor() const;

Q_SIGNALS:
    /// A click on one of the counts.
    void problemsClicked();
    void cancelClicked();
    /// The tool tip of the rename button is about to be shown; connect directly.
    void renameToolTipWanted();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QToolButton *makeButton(const QString &toolTip);
    void followLook();
    void updateBar();

    ElidedLabel *m_text;
    QProgressBar *m_bar;
    QToolButton *m_cancel;
    QToolButton *m_warnings;
    QToolButton *m_criticals;
    BadgeButton *m_testRun;
    BadgeButton *m_rollBack;
    BadgeButton *m_rename;
    QTimer m_barDelay;
    bool m_isBusy = false;
    bool m_isCancellable = false;
    bool m_hasProgress = false;
};
