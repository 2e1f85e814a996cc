// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TProgressSheetController.h"

#include <QDialog>

#include <memory>

class QLabel;
class QProgressBar;

/// The window-modal sheet of a rename run: bar, text and cancel button. The window that opened it
/// owns it and closes it when the run ends; the user's Escape cancels the run, not the sheet.
class ProgressSheet : public QDialog
{
    Q_OBJECT

public:
    ProgressSheet(std::shared_ptr<TProgressSheetController> controller, QWidget *window);

    /// Shows what the controller says now; cheap, repainting is joined.
    void refresh();
    void reject() override;

private:
    std::shared_ptr<TProgressSheetController> m_controller;
    QProgressBar *m_bar;
    QLabel *m_text;
};
