// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"

class QWidget;

/// The dialogs of one window. The window owns it, and their answers end with the window.
class WindowDialogHost : public TDialogHost
{
public:
    explicit WindowDialogHost(QWidget *window)
        : m_window(window)
    {
    }

    void ask(const Question &question, Answered answered) override;
    void chooseFolder(const FolderPanel &panel, Chosen chosen) override;
    void chooseSaveFile(const SavePanel &panel, Chosen chosen) override;

private:
    QWidget *m_window;
};
