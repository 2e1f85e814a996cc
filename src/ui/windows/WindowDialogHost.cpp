// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/WindowDialogHost.h"

#include "ui/windows/Dialogs.h"

#include <utility>

void WindowDialogHost::ask(const Question &question, Answered answered)
{
    Dialogs::ask(m_window, question, std::move(answered));
}

void WindowDialogHost::chooseFolder(const FolderPanel &panel, Chosen chosen)
{
    Dialogs::chooseFolder(m_window, panel, std::move(chosen));
}

void WindowDialogHost::chooseSaveFile(const SavePanel &panel, Chosen chosen)
{
    Dialogs::chooseSaveFile(m_window, panel, std::move(chosen));
}
