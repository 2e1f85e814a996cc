// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/QtMainThread.h"
#include "settings/Preferences.h"
#include "support/FaultyFileManager.h"
#include "support/Rules.h"
#include "support/TemporaryTree.h"
#include "support/WindowTools.h"
#include "ui/batch/ApplicationCommands.h"
#include "ui/batch/BatchWindow.h"
#include "ui/controls/Popover.h"
#include "ui/table/FilePane.h"
#include "ui/tiles/RecipeCard.h"

/// The application around a batch window, which only notes what it is asked.
class NotedCommands : public ApplicationCommands
{
public:
    QStringList calls;

    void newBatch() override { calls += QStringLiteral("new"); }
    void quitRequested() override { calls += QStringLiteral("quit"); }
    void rollBackEarlier() override { calls += QStringLiteral("roll back earlier"); }
    void rollBackLog(const TFileURL &log) override
    {
        calls += QStringLiteral("roll back ") + log.pathExtension();
    }
    void showPreferences() override { calls += QStringLiteral("preferences"); }
    void showHelp(HelpWindow::Topic) override { calls += QStringLiteral("help"); }
    void showWelcome() override { calls += QStringLiteral("welcome"); }
    void showAbout() override { calls += QStringLiteral("about"); }
    void checkForUpdates() override { calls += QStringLiteral("updates"); }
};

/// A shown batch window over real files.
struct BatchFixture
{
    TemporaryTree tree;
    FaultyFileManager disk;
    SystemClock clock;
    QtMainThread mainThread;
    Notifications notifications;
    NotedCommands commands;
    WorkerQueue worker;
    std::unique_ptr<BatchWindow> window;

    explicit BatchFixture(const QStringList &files = {})
    {
        qputenv("XDG_CONFIG_HOME", tree.path(QStringLiteral("config")).toUtf8());
        resetSettingsForTests();
        open();
        TFileURLs urls;
        for (const QString &file : files)
            urls += TFileURL::fileURLWithPath(tree.file(QStringLiteral("files/") + file));
        if (!urls.isEmpty())
            window->addFiles(urls);
        settle();
    }
    TDocument &document() const { return window->document(); }
    RecipeCard &recipe() const { return *window->findChild<RecipeCard *>(); }
    FilePane &files() const { return *window->findChild<FilePane *>(); }
    QAction &command(const QString &text) const
    {
        QAction *const action = WindowTools::command(*window, text);
        if (action == nullptr)
            qFatal("no command %s", qUtf8Printable(text));
        return *action;
    }
    Popover *popover() const
    {
        for (auto *popover : window->findChildren<Popover *>()) {
            if (popover->isVisible())
                return popover;
        }
        return nullptr;
    }
    void open()
    {
        window = std::make_unique<BatchWindow>(
            TDocumentServices{mainThread, disk, clock, notifications, worker,
                              PresetsManager(QString(), tree.path(QStringLiteral("presets"))),
                              [this] { return tree.folder(QStringLiteral("Logs")); },
                              TDocumentGatherer::Make()},
            commands);
        window->show();
        window->activateWindow();
        (void)QTest::qWaitForWindowActive(window.get());
    }
    /// Until nothing is under way and the menus have followed.
    bool settle() const
    {
        const TDocument &doc = document();
        const bool isIdle = QTest::qWaitFor(
            [&doc] {
                return !doc.isReceivingDrop() && doc.remainingAOps() == 0 && !doc.isAnalysing() &&
                       !doc.isRenaming();
            },
            20'000);
        QTest::qWait(1); // the menus come up to date with the next turn of the event loop
        return isIdle;
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QWidget *const focus = QApplication::focusWidget();
        QTest::keyClick(focus != nullptr ? focus : window.get(), key, modifiers);
    }
    void type(const QString &text) const { QTest::keyClicks(QApplication::focusWidget(), text); }
    QStringList targets() const
    {
        QStringList targets;
        for (const auto &file : document().sourceObjectArray())
            targets += file->targetName();
        return targets;
    }
    QStringList rules() const
    {
        QStringList names;
        for (const TRulePtr &rule : document().ruleArray())
            names += TRuleKinds::identifierForRule(*rule);
        return names;
    }
    QStringList names() const { return tree.list(QStringLiteral("files")); }
};
