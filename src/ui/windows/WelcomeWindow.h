// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

/// How it works, in three pictures. Deletes itself when closed. Whether it opens at start is the
/// user's choice (UiSettings::showsWelcome).
class WelcomeWindow : public QDialog
{
    Q_OBJECT

public:
    explicit WelcomeWindow(QWidget *parent = nullptr);
};
