// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/application/ApplicationHost.h"

#include <QStringList>

#include <functional>
#include <memory>

class FileTableView;
class Popover;
class RecipeCard;

/// The program as its main() puts it together, with one batch window, driven from within. Lives in
/// the XDG folders of the environment, which should be fresh ones.
class WindowScene
{
public:
    /// Starts the program and waits until its window stands; no greeting opens.
    WindowScene();
    ~WindowScene();
    WindowScene(const WindowScene &) = delete;
    WindowScene &operator=(const WindowScene &) = delete;

    /// Marks the first run as done, for this process and those that start later.
    static void skipGreetings();
    /// Runs the event loop until the condition holds; false when that takes a minute.
    static bool wait(const std::function<bool()> &condition);
    /// Runs the event loop for a while, so that everything is painted.
    static void settle(int milliseconds = 150);

    ApplicationHost &host() { return *m_host; }
    BatchWindow &window() const { return *m_window; }
    TDocument &document() const;
    RecipeCard &recipe() const;
    FileTableView &table() const;

    void addFiles(const QStringList &paths);
    bool isIdle() const;
    bool waitIdle() const;
    /// Appends a rule of the kind, with some of its settings changed.
    TRulePtr addRule(const QString &kind, const QVariantMap &settings = {});
    /// Opens a rule's editor as a double click on its tile does; null when none opens.
    Popover *openEditor(const TRulePtr &rule);
    Popover *openExtensionEditor();
    Popover *popover() const;
    void closePopover();

private:
    std::unique_ptr<ApplicationHost> m_host;
    BatchWindow *m_window = nullptr;
};
