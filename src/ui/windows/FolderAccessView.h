// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TFolderAccessViewController.h"

#include <QDialog>

/// The window that shows which folders a batch uses and which of them are granted. Deletes itself
/// when closed; the list outlives it.
class FolderAccessView : public QDialog
{
    Q_OBJECT

public:
    FolderAccessView(TFolderAccessList &list, TDialogHost &host, Notifications &notifications,
                     QWidget *window);

    /// The list has other folders.
    void refresh();

private:
    class Model;
    TFolderAccessViewController m_controller;
    Notifications::Subscription m_gotAuthorized;
    Model *m_model;
};
