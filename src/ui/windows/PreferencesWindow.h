// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/windows/UpdateCheck.h"

#include <QDialog>

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;

/// The few settings of the program. Each takes effect at once, or says when it will. Deletes itself
/// when closed.
class PreferencesWindow : public QDialog
{
    Q_OBJECT

public:
    /// The menu shows and hides columns; it belongs to the window.
    PreferencesWindow(QMenu *columns, QWidget *window);
    /// For tests of the update check.
    PreferencesWindow(const UpdateCheck::Limits &limits, QMenu *columns, QWidget *window);

protected:
    /// Another window may have changed something meanwhile.
    void showEvent(QShowEvent *event) override;

private:
    void addSection(const QString &title);
    /// A control with its label; without one, below the control of the row before.
    void addRow(const QString &label, QWidget *control);
    void addGeneral(QMenu *columns);
    void addDiagnostics();
    void addUpdates();
    void checkNow();
    bool takeFeed();

    QGridLayout *m_grid = nullptr;
    QComboBox *m_appearance = nullptr;
    QComboBox *m_logLevel = nullptr;
    QLineEdit *m_feed = nullptr;
    QPushButton *m_checkNow = nullptr;
    QLabel *m_found = nullptr;
    UpdateCheck m_check;
};
