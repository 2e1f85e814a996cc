// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/TAppDelegate.h"
#include "platform/QtMainThread.h"
#include "ui/application/ContextMenuKey.h"
#include "ui/batch/ApplicationCommands.h"
#include "ui/batch/BatchWindow.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

class RollBackChooserWindow;
class RollBackWindow;
class UpdateNotice;

/// The program around its batch windows: owns the doors to the system, the delegate, every batch
/// and the windows that belong to none. Ends the program when the last window has gone and its
/// batch has nothing under way any more. Made by main() after the application object, which it does
/// not outlive; main thread only.
class ApplicationHost : public QObject, public TApplicationHost, public ApplicationCommands
{
    Q_OBJECT

public:
    ApplicationHost();
    ~ApplicationHost() override;

    /// The three steps of a start; the untitled batch that follows gets the files, and the rules of
    /// the preset unless its name is empty.
    void start(const TFileURLs &files, const QString &preset = {});
    /// What a later start of the program hands over: files for the window in use, which comes to
    /// the front.
    void open(const TFileURLs &files);

    // TDialogHost
    void ask(const Question &question, Answered answered = {}) override;
    void chooseFolder(const FolderPanel &panel, Chosen chosen) override;
    void chooseSaveFile(const SavePanel &panel, Chosen chosen) override;

    // TApplicationHost
    void updateMenus() override;
    bool hasOpenDocuments() const override { return !m_batches.empty(); }
    void openUntitledDocument() override;
    void showFirstRunDialog(std::function<void()> finished) override;
    void showWelcomeWindow() override;
    void quit() override;
    void showRollBackChooser(TRollBackWindowController &chooser) override;
    void closeRollBackChooser() override;
    void showRollBackWindow(TDoRollBackWindowController &runner) override;
    void closeRollBackWindow() override;

    // ApplicationCommands
    void newBatch() override;
    void quitRequested() override;
    void rollBackEarlier() override;
    void rollBackLog(const TFileURL &log) override;
    void showPreferences() override;
    void showHelp(HelpWindow::Topic topic) override;
    void showWelcome() override;
    void showAbout() override;
    void checkForUpdates() override;

Q_SIGNALS:
    /// The program is about to end; later starts are no longer its business.
    void quitting();

private:
    TDocumentServices documentServices();
    BatchWindow *currentBatch() const;
    void showFirstRun();
    void greet();
    UpdateNotice &updates();
    void batchFinished(BatchWindow *batch);
    void quitIfDone();

    ContextMenuKey m_contextMenuKey;
    Notifications m_notifications;
    RunningSystem m_system;
    QtMainThread m_mainThread; ///< what was posted and never ran refers to the above
    TAppDelegate m_delegate;
    QPointer<RollBackChooserWindow> m_chooser;
    QPointer<RollBackWindow> m_rollBack;
    QPointer<BatchWindow> m_lastUsed;
    QPointer<QDialog> m_firstRun;
    QPointer<QDialog> m_welcome;
    QPointer<QDialog> m_help;
    QPointer<QDialog> m_about;
    QPointer<QDialog> m_preferences;
    std::unique_ptr<UpdateNotice> m_updates;  ///< null until it is wanted
    std::function<void()> m_firstRunFinished; ///< while that dialog waits for the first batch
    TFileURLs m_files;                        ///< for the first batch
    QString m_preset;                         ///< likewise
    bool m_isQuitting = false;
    /// Last, so that they go first: documents use all of the above.
    std::vector<std::unique_ptr<BatchWindow>> m_batches;
    std::vector<std::unique_ptr<BatchWindow>> m_gone; ///< to be destroyed soon
};
