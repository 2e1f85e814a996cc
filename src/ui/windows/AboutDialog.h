// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

/// What this is: version, licence, and the libraries in use. Deletes itself when closed.
class AboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AboutDialog(QWidget *window);

    /// Versions of Tavrin, its libraries and the system, a line each, for reports of faults.
    static QString details();
};
