// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TApplicationHost.h"
#include "support/ScriptedDialogs.h"

/// The desktop as the application sees it, for tests: every call as one line, and scripted answers.
class ScriptedApplicationHost : public ScriptedDialogs<TApplicationHost>
{
public:
    bool documentIsOpen = false;
    TRollBackWindowController *chooser = nullptr; ///< while its window is shown
    TDoRollBackWindowController *runner = nullptr;
    std::function<void()> finishFirstRun;

    void updateMenus() override { record(QStringLiteral("update menus")); }
    bool hasOpenDocuments() const override { return documentIsOpen; }
    void openUntitledDocument() override
    {
        documentIsOpen = true;
        record(QStringLiteral("open untitled"));
    }
    void showFirstRunDialog(std::function<void()> finished) override
    {
        finishFirstRun = std::move(finished);
        record(QStringLiteral("first run"));
    }
    void showWelcomeWindow() override { record(QStringLiteral("welcome")); }
    void quit() override { record(QStringLiteral("quit")); }
    void showRollBackChooser(TRollBackWindowController &controller) override
    {
        chooser = &controller;
        record(QStringLiteral("chooser"));
    }
    void closeRollBackChooser() override
    {
        chooser = nullptr;
        record(QStringLiteral("close chooser"));
    }
    void showRollBackWindow(TDoRollBackWindowController &controller) override
    {
        runner = &controller;
        record(QStringLiteral("rollback window"));
    }
    void closeRollBackWindow() override
    {
        runner = nullptr;
        record(QStringLiteral("close rollback window"));
    }
};
