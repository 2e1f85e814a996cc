// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"

#include <functional>

class TDoRollBackWindowController;
class TRollBackWindowController;

/// What the application as a whole asks of the desktop: its dialogs, the windows that belong to no
/// batch, and opening one. Questions without a window are alerts. Main thread only; outlives the
/// delegate and the controllers.
class TApplicationHost : public TDialogHost
{
public:
    virtual void updateMenus() = 0;
    virtual bool hasOpenDocuments() const = 0;
    /// Opens a new untitled batch and shows it.
    virtual void openUntitledDocument() = 0;
    /// finished runs when the user has left the dialog.
    virtual void showFirstRunDialog(std::function<void()> finished) = 0;
    virtual void showWelcomeWindow() = 0;
    /// Ends the program.
    virtual void quit() = 0;

    /// Windows that run modally: the controller outlives its window, and the window tells it of
    /// every click. close... takes the window away.
    virtual void showRollBackChooser(TRollBackWindowController &chooser) = 0;
    virtual void closeRollBackChooser() = 0;
    virtual void showRollBackWindow(TDoRollBackWindowController &runner) = 0;
    virtual void closeRollBackWindow() = 0;
};
