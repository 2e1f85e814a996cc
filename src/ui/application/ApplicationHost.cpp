// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/application/ApplicationHost.h"

#include "document/TDocumentHelpers.h"
#include "metadata/HelperProcess.h"
#include "ui/batch/ViewMenu.h"
#include "ui/batch/WindowMemory.h"
#include "ui/windows/AboutDialog.h"
#include "ui/windows/Dialogs.h"
#include "ui/windows/FirstRunDialog.h"
#include "ui/windows/Placing.h"
#include "ui/windows/PreferencesWindow.h"
#include "ui/windows/RatingQuestion.h"
#include "ui/windows/RollBackChooserWindow.h"
#include "ui/windows/RollBackWindow.h"
#include "ui/windows/Translations.h"
#include "ui/windows/UiSettings.h"
#include "ui/windows/UpdateNotice.h"
#include "ui/windows/WelcomeWindow.h"
#include "ui/windows/WindowKeys.h"

#include <QApplication>
#include <QWindow>

#include <algorithm>

namespace {

/// Shows a window that keeps everything else waiting.
void showModally(QDialog &dialog)
{
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
}

/// A click on a window that waits for its sheet takes the keyboard there, where it is dead.
void handToSheetOf(const QWindow *window)
{
    for (QWidget *sheet : QApplication::topLevelWidgets()) {
        const QWidget *const behind = sheet->parentWidget();
        if (sheet->isVisible() && sheet->windowModality() == Qt::WindowModal && behind != nullptr &&
            behind->window()->windowHandle() == window)
            QMetaObject::invokeMethod(sheet, &QWidget::activateWindow, Qt::QueuedConnection);
    }
}

/// Its click may still be under way.
void take(QDialog *dialog)
{
    if (dialog == nullptr)
        return;
    dialog->hide();
    dialog->deleteLater();
}

/// A window that is open comes to the front; else a new one, which deletes itself.
template <typename Make>
void showOnce(QPointer<QDialog> &window, Make make)
{
    if (!window)
        window = make();
    window->show();
    window->raise();
    window->activateWindow();
}

/// These two last as long as the program, which may end without a recovery that hangs.
FileManager &theDisk()
{
    static DiskFileManager disk;
    return disk;
}

const Clock &theClock()
{
    static const SystemClock clock;
    return clock;
}

} // namespace

ApplicationHost::ApplicationHost()
    : m_delegate({*this, m_mainThread, m_notifications, theDisk(), theClock(), m_system})
{
    WindowKeys::addToDialogs(*this, [this] { quitRequested(); });
    connect(qApp, &QGuiApplication::lastWindowClosed, this, &ApplicationHost::quitIfDone);
    connect(qApp, &QGuiApplication::focusWindowChanged, this, [](const QWindow *now) {
        if (now != nullptr)
            handToSheetOf(now);
    });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) {
        if (auto *batch = now != nullptr ? qobject_cast<BatchWindow *>(now->window()) : nullptr)
            m_lastUsed = batch;
    });
}

ApplicationHost::~ApplicationHost()
{
    delete m_chooser; // their controllers are the delegate's
    delete m_rollBack;
}

void ApplicationHost::start(const TFileURLs &files, const QString &preset)
{
    m_files = files;
    m_preset = preset;
    m_delegate.awakeFromNib();
    Translations::install();
    ViewMenu::restoreAppearance();
    m_delegate.applicationWillFinishLaunching();
    m_delegate.applicationDidFinishLaunching();
}

void ApplicationHost::open(const TFileURLs &files)
{
    if (m_isQuitting)
        return;
    BatchWindow *batch = currentBatch();
    if (batch == nullptr) { // the first one is on its way
        m_files += files;
        return;
    }
    if (!files.isEmpty())
        batch->addFiles(files);
    batch->setWindowState(batch->windowState() & ~Qt::WindowMinimized);
    batch->raise();
    batch->activateWindow();
}

TDocumentServices ApplicationHost::documentServices()
{
    return {m_mainThread,
            theDisk(),
            theClock(),
            m_notifications,
            m_delegate.worker(),
            PresetsManager::standard(),
            &TDocumentServices::userLogsFolder,
            gatherersWithHelpers(m_mainThread),
            {},
            m_delegate.recovery()};
}

BatchWindow *ApplicationHost::currentBatch() const
{
    if (m_lastUsed && !m_lastUsed->document().isClosing())
        return m_lastUsed;
    const auto open = std::find_if(m_batches.rbegin(), m_batches.rend(), [](const auto &batch) {
        return !batch->document().isClosing();
    });
    return open == m_batches.rend() ? nullptr : open->get();
}

void ApplicationHost::ask(const Question &question, Answered answered)
{
    Dialogs::ask(m_rollBack, question, std::move(answered));
}

void ApplicationHost::chooseFolder(const FolderPanel &panel, Chosen chosen)
{
    Dialogs::chooseFolder(m_rollBack, panel, std::move(chosen));
}

void ApplicationHost::chooseSaveFile(const SavePanel &panel, Chosen chosen)
{
    Dialogs::chooseSaveFile(m_rollBack, panel, std::move(chosen));
}

void ApplicationHost::updateMenus()
{
    for (const auto &batch : m_batches)
        batch->updateMenus();
}

void ApplicationHost::openUntitledDocument()
{
    newBatch();
    BatchWindow &batch = *m_batches.back();
    if (!m_preset.isEmpty())
        batch.usePreset(std::exchange(m_preset, {}));
    if (!m_files.isEmpty())
        batch.addFiles(std::exchange(m_files, {}));
    if (m_firstRunFinished)
        Placing::onceOnScreen(batch, [this] { showFirstRun(); });
}

/// The greeting comes before there is anything to greet with; it waits for the first window.
void ApplicationHost::showFirstRunDialog(std::function<void()> finished)
{
    m_firstRunFinished = std::move(finished);
}

void ApplicationHost::showFirstRun()
{
    m_firstRun = new FirstRunDialog(
        [this, finished = std::exchange(m_firstRunFinished, {})] {
            finished();
            showWelcomeWindow();
        },
        currentBatch()); // deletes itself
    m_firstRun->show();
}

/// At every start, over a window that stands where it will stay.
void ApplicationHost::showWelcomeWindow()
{
    if (m_isQuitting || m_firstRunFinished || (m_firstRun && m_firstRun->isVisible()))
        return;
    if (BatchWindow *batch = currentBatch())
        Placing::onceOnScreen(*batch, [this] { greet(); });
    else
        greet();
}

/// The welcome as long as it is wanted, and what else may be due.
void ApplicationHost::greet()
{
    RatingQuestion::countRun();
    const BatchWindow *batch = currentBatch();
    const bool isEmpty = batch != nullptr && batch->document().sourceObjectArray().empty() &&
                         !batch->document().isReceivingDrop();
    if (UiSettings::showsWelcome() && isEmpty) // who came with files knows how to begin
        showWelcome();
    else if (!UiSettings::showsWelcome())
        RatingQuestion::askIfDue(*this);
    if (UiSettings::looksForUpdates())
        updates().checkAtStart();
}

UpdateNotice &ApplicationHost::updates()
{
    if (!m_updates)
        m_updates = std::make_unique<UpdateNotice>(*this);
    return *m_updates;
}

void ApplicationHost::checkForUpdates()
{
    updates().check(currentBatch());
}

void ApplicationHost::showWelcome()
{
    showOnce(m_welcome, [this] { return new WelcomeWindow(currentBatch()); });
}

void ApplicationHost::showHelp(HelpWindow::Topic topic)
{
    showOnce(m_help, [this] { return new HelpWindow(currentBatch()); });
    static_cast<HelpWindow &>(*m_help).turnTo(topic);
}

void ApplicationHost::showAbout()
{
    showOnce(m_about, [this] { return new AboutDialog(standardMetadataHelper(), currentBatch()); });
}

void ApplicationHost::showPreferences()
{
    BatchWindow *batch = currentBatch();
    showOnce(m_preferences, [batch] {
        return new PreferencesWindow(batch == nullptr ? nullptr : batch->columnsMenu(), batch);
    });
}

void ApplicationHost::newBatch()
{
    const BatchWindow *before = currentBatch();
    m_batches.push_back(std::make_unique<BatchWindow>(documentServices(), *this));
    BatchWindow *batch = m_batches.back().get();
    if (before != nullptr && !before->isMaximized() && !before->isFullScreen())
        WindowMemory::openBeside(*batch, *before);
    connect(batch, &BatchWindow::finished, this, [this, batch] { batchFinished(batch); });
    m_lastUsed = batch;
    batch->show();
}

/// The call may come from within the window, so it is destroyed a little later.
void ApplicationHost::batchFinished(BatchWindow *batch)
{
    const auto found = std::find_if(m_batches.begin(), m_batches.end(),
                                    [batch](const auto &each) { return each.get() == batch; });
    if (found == m_batches.end())
        return;
    m_gone.push_back(std::move(*found));
    m_batches.erase(found);
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_gone.clear();
            quitIfDone();
        },
        Qt::QueuedConnection);
}

void ApplicationHost::quitRequested()
{
    quit();
}

void ApplicationHost::quit()
{
    if (!m_isQuitting)
        Q_EMIT quitting();
    m_isQuitting = true;
    const QWidgetList windows = QApplication::topLevelWidgets();
    std::vector<QPointer<QWidget>> open(windows.begin(), windows.end());
    for (const QPointer<QWidget> &window : open) {
        if (window && window->isVisible())
            window->close();
    }
    QMetaObject::invokeMethod(this, &ApplicationHost::quitIfDone, Qt::QueuedConnection);
}

void ApplicationHost::quitIfDone()
{
    if (!m_batches.empty() || !m_gone.empty())
        return;
    const QWidgetList windows = QApplication::topLevelWidgets();
    const bool isUsed = std::any_of(windows.begin(), windows.end(), [](const QWidget *window) {
        return window->isVisible() && window->windowType() != Qt::ToolTip;
    });
    if (isUsed && !m_isQuitting)
        return;
    if (!m_isQuitting)
        Q_EMIT quitting();
    m_isQuitting = true;
    QCoreApplication::quit();
}

void ApplicationHost::rollBackEarlier()
{
    m_delegate.rollBack();
}

void ApplicationHost::rollBackLog(const TFileURL &log)
{
    m_delegate.rollBackLogWithURL(log);
}

void ApplicationHost::showRollBackChooser(TRollBackWindowController &chooser)
{
    m_chooser = new RollBackChooserWindow(chooser, currentBatch());
    showModally(*m_chooser);
}

void ApplicationHost::closeRollBackChooser()
{
    take(m_chooser);
    m_chooser = nullptr;
}

void ApplicationHost::showRollBackWindow(TDoRollBackWindowController &runner)
{
    m_rollBack = new RollBackWindow(runner, currentBatch());
    showModally(*m_rollBack);
}

void ApplicationHost::closeRollBackWindow()
{
    take(m_rollBack);
    m_rollBack = nullptr;
}
