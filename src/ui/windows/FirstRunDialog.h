// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <functional>

/// The greeting of the very first start: what Tavrin does with files, and what it does not. Deletes
/// itself when closed.
class FirstRunDialog : public QDialog
{
    Q_OBJECT

public:
    /// finished is called once, when the user has left the dialog in whatever way.
    explicit FirstRunDialog(std::function<void()> finished, QWidget *parent = nullptr);
};
