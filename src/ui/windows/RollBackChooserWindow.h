// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/TRollBackWindowController.h"

#include <QDialog>

class PickList;

/// The application-modal window in which a saved rollback log is chosen. Closing it by the window
/// manager or Escape cancels. The controller outlives it.
class RollBackChooserWindow : public QDialog
{
    Q_OBJECT

public:
    explicit RollBackChooserWindow(TRollBackWindowController &chooser, QWidget *parent = nullptr);

    void reject() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    TRollBackWindowController &m_chooser;
    PickList *m_list;
};
