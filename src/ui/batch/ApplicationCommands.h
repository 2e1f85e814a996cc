// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"
#include "ui/windows/HelpWindow.h"

/// What a batch window asks of the application around it. Main thread only; outlives the windows.
class ApplicationCommands
{
public:
    ApplicationCommands() = default;
    ApplicationCommands(const ApplicationCommands &) = delete;
    ApplicationCommands &operator=(const ApplicationCommands &) = delete;
    virtual ~ApplicationCommands() = default;

    virtual void newBatch() = 0;
    /// Closes every batch, then ends the program.
    virtual void quitRequested() = 0;
    /// Chooses a saved log, then rolls it back.
    virtual void rollBackEarlier() = 0;
    virtual void rollBackLog(const TFileURL &log) = 0;
    virtual void showPreferences() = 0;
    virtual void showHelp(HelpWindow::Topic topic) = 0;
    virtual void showWelcome() = 0;
    virtual void showAbout() = 0;
    virtual void checkForUpdates() = 0;
};
