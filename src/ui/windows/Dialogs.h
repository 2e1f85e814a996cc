// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"

class QWidget;

/// Questions and panels for code without widgets. Nothing waits: answers come through callbacks
/// while the event loop runs. With a window, they are modal to it and go away with it (their answer
/// then never comes); without one, they are windows of their own.
namespace Dialogs {

void ask(QWidget *window, const TDialogHost::Question &question, TDialogHost::Answered answered);
void chooseFolder(QWidget *window, const TDialogHost::FolderPanel &panel,
                  TDialogHost::Chosen chosen);
void chooseSaveFile(QWidget *window, const TDialogHost::SavePanel &panel,
                    TDialogHost::Chosen chosen);

} // namespace Dialogs
