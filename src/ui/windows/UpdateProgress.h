// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

/// Says that Tavrin looks for a new version, until it is closed; rejected when the user does not
/// want to wait. Deletes itself when closed.
class UpdateProgress : public QDialog
{
    Q_OBJECT

public:
    explicit UpdateProgress(QWidget *window);
};
