// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TAppDelegate.h"

#include "app/Globals.h"
#include "app/TDoRollBackWindowController.h"
#include "app/TRollBackWindowController.h"
#include "commonprocs/Sandboxing.h"
#include "settings/Preferences.h"
#include "settings/PrefsWriter.h"
#include "settings/UserDefaults.h"
#include "settings/logging.h"

#include <QCoreApplication>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr const char *kContext = "TAppDelegate";
constexpr QLatin1StringView kNeverEver{"neverEver"};
constexpr const char *kOldSystemTitle =
    QT_TRANSLATE_NOOP("TAppDelegate", "OS Version not supported");
constexpr const char *kOldSystemText = QT_TRANSLATE_NOOP(
    "TAppDelegate",
    "This application requires at least OSX version 10.6.8 or later to run. Sorry.");
constexpr const char *kInterruptedTitle =
    QT_TRANSLATE_NOOP("TAppDelegate", "A Rename Was Interrupted");
constexpr const char *kInterruptedText = QT_TRANSLATE_NOOP(
    "TAppDelegate", "An earlier run over %ld files was cut off after it had renamed %ld of them. "
                    "Do you want to look at what can be undone?");
constexpr const char *kUnknownNote =
    QT_TRANSLATE_NOOP("TAppDelegate", "What became of %ld of them could not be found out.");
constexpr const char *kKeep = QT_TRANSLATE_NOOP("TAppDelegate", "Keep");
constexpr const char *kUndo = QT_TRANSLATE_NOOP("TAppDelegate", "Undo...");
constexpr const char *kProblemTitle =
    QT_TRANSLATE_NOOP("TAppDelegate", "An Interrupted Rename Could Not Be Recovered");
constexpr qsizetype kUndoButton = 1;
constexpr QLatin1StringView kLogsFolder{"Tavrin/Logs"};
/// At the end; a recovery that was cut off is done again at the next start.
constexpr auto kRecoveryPatience = 2s;

QString shown(const char *text)
{
    return QCoreApplication::translate(kContext, text);
}

QString shown(const char *text, std::initializer_list<QString> arguments)
{
    return formatted(shown(text), arguments);
}

QVersionNumber leastVersion()
{
    return {10, 6, 8};
}

TDialogHost::Question alert(const QString &title, const QString &text)
{
    return {TDialogHost::Form::Alert, title, text, {}, {}};
}

} // namespace

TAppDelegate::TAppDelegate(const Services &services)
    : m_services(services)
{
}

TAppDelegate::~TAppDelegate()
{
    m_runner.reset(); // stops at the file in hand; its queue waits for no more than that
    if (!m_recovery->waitFor(kRecoveryPatience))
        m_recovery->abandon();
}

void TAppDelegate::awakeFromNib()
{
    initPrefsWriter();
    initPreferences();
    WritePreferences(thePreferences()); // from now on the store carries the mark of this program
    initGlobals();
    initSandbox();
    if (sandboxIsOn())
        m_services.host.ask(alert(sandboxNoticeTitle(), sandboxNoticeText()));
    initUserDefaults();
    showFirstRun();
    checkSystemVersion();
}

void TAppDelegate::initUserDefaults()
{
    UserDefaults::registerDefault(kNeverEver, 0);
    initLogging();
}

void TAppDelegate::showFirstRun()
{
    if (!thePreferences().firstRun)
        return;
    m_services.host.showFirstRunDialog([] {});
    thePreferences().firstRun = false;
    WritePreferences(thePreferences());
}

void TAppDelegate::checkSystemVersion()
{
    const std::optional<QVersionNumber> version = m_services.system.version();
    m_isSupported = !version || *version >= leastVersion();
    if (!m_isSupported)
        m_services.host.ask(alert(shown(kOldSystemTitle), shown(kOldSystemText)),
                            [&host = m_services.host](qsizetype) { host.quit(); });
}

void TAppDelegate::applicationWillFinishLaunching()
{
    if (m_isSupported)
        updateMenus();
}

void TAppDelegate::updateMenus()
{
    m_services.host.updateMenus();
}

void TAppDelegate::applicationDidFinishLaunching()
{
    if (!m_isSupported)
        return;
    postSafely([this] { openNewDocumentIfNeeded(); });
    recoverInterrupted();
}

void TAppDelegate::openNewDocumentIfNeeded()
{
    if (!m_services.host.hasOpenDocuments())
        m_services.host.openUntitledDocument();
    postSafely([this] { m_services.host.showWelcomeWindow(); });
}

void TAppDelegate::recoverInterrupted()
{
    const auto tell = [this, &mainThread = m_services.mainThread,
                       alive = std::weak_ptr(m_alive)](std::vector<RecoveredRun> found) {
        mainThread.post([this, alive, runs = std::move(found)] {
            if (alive.expired())
                return;
            m_recovered.insert(m_recovered.end(), runs.begin(), runs.end());
            offerNext();
        });
    };
    m_recovery->start(appSupportDirURL().appendingPathComponent(kLogsFolder).path(),
                      m_services.fileManager, m_services.clock, tell);
}

/// One after another, and none over a rollback window; when that closes, the next one comes.
void TAppDelegate::offerNext()
{
    if (m_recovered.empty() || isRollingBack())
        return;
    const RecoveredRun run = std::move(m_recovered.front());
    m_recovered.pop_front();
    offer(run);
}

void TAppDelegate::offer(const RecoveredRun &run)
{
    const auto answered = [this, alive = std::weak_ptr(m_alive),
                           log = run.rollbackLog](qsizetype button) {
        if (alive.expired())
            return;
        if (button == kUndoButton)
            rollBackLogWithURL(TFileURL::fileURLWithPath(log));
        offerNext();
    };
    if (!run.problem.isEmpty()) {
        m_services.host.ask(alert(shown(kProblemTitle), run.problem),
                            [answered](qsizetype) { answered(-1); });
        return;
    }
    if (run.rollbackLog.isEmpty()) { // nothing had been renamed, so there is nothing to tell
        offerNext();
        return;
    }
    TDialogHost::Question question =
        alert(shown(kInterruptedTitle),
              shown(kInterruptedText, {QString::number(run.files), QString::number(run.renamed)}));
    if (run.unknown > 0)
        question.note = shown(kUnknownNote, {QString::number(run.unknown)});
    question.buttons = {shown(kKeep), shown(kUndo)};
    m_services.host.ask(question, answered);
}

void TAppDelegate::rollBack()
{
    if (isRollingBack())
        return;
    m_chooser = std::make_unique<TRollBackWindowController>(
        m_services.mainThread, m_worker,
        [this](const std::optional<TFileURL> &log) { chooserEnded(log); });
    m_services.host.showRollBackChooser(*m_chooser);
}

void TAppDelegate::chooserEnded(const std::optional<TFileURL> &log)
{
    m_services.host.closeRollBackChooser();
    // The chooser is on its way out of a call from its window, so it goes a little later.
    m_services.mainThread.post([gone = std::shared_ptr(std::move(m_chooser))] {});
    if (log)
        rollBackLogWithURL(*log);
    offerNext();
}

void TAppDelegate::rollBackLogWithURL(const TFileURL &log)
{
    if (isRollingBack())
        return;
    m_runner = std::make_unique<TDoRollBackWindowController>(
        TDoRollBackWindowController::Services{m_services.host, m_services.mainThread,
                                              m_rollBackWorker, m_services.notifications,
                                              m_services.fileManager},
        [this](int) { runnerEnded(); });
    m_runner->loadLog(log);
    m_services.host.showRollBackWindow(*m_runner);
}

void TAppDelegate::runnerEnded()
{
    m_services.host.closeRollBackWindow();
    m_services.mainThread.post([gone = std::shared_ptr(std::move(m_runner))] {});
    offerNext();
}

/// Runs on the main queue, unless the delegate is gone by then.
void TAppDelegate::postSafely(MainThread::Work work)
{
    m_services.mainThread.post([alive = std::weak_ptr(m_alive), work = std::move(work)] {
        if (!alive.expired())
            work();
    });
}
