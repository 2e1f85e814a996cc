// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/Sandboxing.h"
#include "commonprocs/TimeUtils.h"
#include "document/RollbackNotice.h"
#include "document/TDocument.h"
#include "document/TDocumentRenaming.h"
#include "rollback/RollbackLog.h"

#include <QLocale>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kRestartDelay = 100ms;
constexpr auto kRecoveryStep = 50ms;
constexpr int kRecoveryLooks = 20;
constexpr qsizetype kRenameButton = 1;
constexpr qint64 kProgressStep = 10;
constexpr const char *kCancel = QT_TRANSLATE_NOOP("TDocument", "Cancel");
constexpr const char *kRename = QT_TRANSLATE_NOOP("TDocument", "Rename");
constexpr const char *kNoUndo = QT_TRANSLATE_NOOP("TDocument", "This run could not be undone. %@");
constexpr const char *kNamesAreOld = QT_TRANSLATE_NOOP(
    "TDocument", "The list shows names from before the last change. To see the new ones first, "
                 "cancel and choose Test Run (F5).");
constexpr const char *kLogTitle = QT_TRANSLATE_NOOP("TDocument", "Rename log:%@");
constexpr const char *kRecoveryTitle =
    QT_TRANSLATE_NOOP("TDocument", "An Interrupted Rename Is Still Being Looked Into");
constexpr const char *kRecoveryText = QT_TRANSLATE_NOOP(
    "TDocument", "An earlier run was cut off, and what it renamed cannot be found out because the "
                 "folder \"%@\" does not answer.");
constexpr const char *kElsewhere = QT_TRANSLATE_NOOP(
    "TDocument", "The files of this batch are elsewhere and can be renamed meanwhile.");
constexpr const char *kConcerned = QT_TRANSLATE_NOOP(
    "TDocument", "It may concern files of this batch. Please rename them when the folder answers "
                 "again, or remove from the batch what is in the folders of that run.");
constexpr const char *kGoOn = QT_TRANSLATE_NOOP("TDocument", "Go On");
constexpr const char *kStoppedTitle = QT_TRANSLATE_NOOP("TDocument", "The rename has stopped");
constexpr const char *kStoppedStatus = QT_TRANSLATE_NOOP("TDocument", "Rename stopped: %@, %@ not");
constexpr const char *kCancelledStatus =
    QT_TRANSLATE_NOOP("TDocument", "Rename cancelled: %@, %@ not");
constexpr const char *kOneRenamed = QT_TRANSLATE_NOOP("TDocument", "1 file renamed");
constexpr const char *kManyRenamed = QT_TRANSLATE_NOOP("TDocument", "%@ files renamed");
constexpr QLatin1StringView kApplication{"Tavrin"};
constexpr QLatin1StringView kLogs{"Logs"};

} // namespace

QString TDocumentServices::userLogsFolder()
{
    const TFileURL folder = getSandboxedAppSupportFolder(kApplication, kLogs);
    return folder.isValid() ? folder.path() : QString();
}

RenameGuard TDocument::guard() const
{
    RenameGuard guard;
    guard.analysed = m_errorLog.has_value();
    guard.batchLog = m_errorLog ? &*m_errorLog : nullptr;
    guard.hasProcessedFiles = hasProcessedFiles(m_sourceObjectArray);
    guard.running = m_isRenaming;
    guard.rules = static_cast<qsizetype>(m_ruleArray.size());
    guard.files = static_cast<qsizetype>(m_sourceObjectArray.size());
    if (const TFileURLs closed =
            sandboxIsOn() ? m_theFoldersWeUse.inaccessibleFolders() : TFileURLs();
        !closed.isEmpty())
        guard.inaccessibleFolder = nameOfFolder(closed.constFirst());
    return guard;
}

void TDocument::runRename()
{
    if (m_isClosing || m_isPreparing)
        return;
    if (isWorkingOutNames() && !m_isRenaming) {
        m_renameWanted = true;
        return;
    }
    const RenameGuard checks = guard();
    const RenameGuard::Answer answer = checks.check();
    switch (answer.verdict) {
    case RenameGuard::Verdict::Nothing:
        break;
    case RenameGuard::Verdict::ShowErrors:
        showTestRunLog();
        break;
    case RenameGuard::Verdict::Refused: {
        const auto form =
            checks.hasProcessedFiles ? TDialogHost::Form::Sheet : TDialogHost::Form::Alert;
        tell(&TDocumentHost::ask,
             TDialogHost::Question{form, answer.title, answer.text, QString(), {}},
             TDialogHost::Answered());
        break;
    }
    case RenameGuard::Verdict::AskForFolder:
        askForFolder();
        break;
    case RenameGuard::Verdict::Confirm:
        prepareRename();
        break;
    }
}

void TDocument::askForFolder()
{
    if (m_grants)
        m_grants->ask(m_theFoldersWeUse, m_theFoldersWeUse.firstInaccessible()->theURL(),
                      [this](bool granted) {
                          if (granted)
                              QTimer::singleShot(kRestartDelay, this, &TDocument::runRename);
                      });
}

/// What an earlier run did must not move while it is being found out, which takes an instant unless
/// a folder of it does not answer.
void TDocument::prepareRename()
{
    m_isPreparing = true;
    m_confirmVersion = m_batchVersion;
    awaitRecovery(kRecoveryLooks);
}

void TDocument::awaitRecovery(int looks)
{
    if (!m_services.recovery || m_services.recovery->isOver())
        makePlan();
    else if (looks > 0)
        QTimer::singleShot(kRecoveryStep, this, [this, looks] { awaitRecovery(looks - 1); });
    else
        tellOfRecovery();
}

void TDocument::tellOfRecovery()
{
    const bool isElsewhere = m_services.recovery->leavesAlone(m_facts.facts()->items());
    TDialogHost::Question question{TDialogHost::Form::Sheet,
                                   text(kRecoveryTitle),
                                   text(kRecoveryText, {m_services.recovery->folderAtHand()}),
                                   text(isElsewhere ? kElsewhere : kConcerned),
                                   {}};
    if (isElsewhere)
        question.buttons = {text(kCancel), text(kGoOn)};
    askOnce(question, [this, isElsewhere](qsizetype button) {
        if (isElsewhere && button == kRenameButton)
            return makePlan();
        m_isPreparing = false;
    });
}

/// An answer counts once, and not at all after another question.
void TDocument::askOnce(const TDialogHost::Question &question, TDialogHost::Answered answered)
{
    tell(&TDocumentHost::ask, question,
         [this, mail = m_mail, answered = std::move(answered),
          number = ++m_confirmation](qsizetype button) {
             if (!mail->isOpen() || number != m_confirmation)
                 return;
             ++m_confirmation;
             answered(button);
         });
}

void TDocument::makePlan()
{
    if (m_isClosing || m_confirmVersion != m_batchVersion) {
        m_isPreparing = false;
        return runRename();
    }
    const TDocumentFacts &known = m_facts.facts();
    m_renaming = std::make_unique<TDocumentRenaming>(
        m_services.fileManager, m_services.clock, m_mail,
        TDocumentRenaming::Input{known, m_facts.files(), preparedCopy(),
                                 m_theExtensionHandler->copyForRun(), m_theOptions,
                                 m_services.logsFolder ? m_services.logsFolder() : QString()});
    m_renaming->prepare([this](const QString &problem) { confirmRename(problem); });
}

void TDocument::confirmRename(const QString &problem)
{
    m_isPreparing = false;
    const RenameGuard::Answer answer = guard().check();
    if (m_isClosing || m_confirmVersion != m_batchVersion ||
        answer.verdict != RenameGuard::Verdict::Confirm) {
        m_renaming.reset();
        return runRename();
    }
    QStringList notes;
    if (m_areNamesOld)
        notes += text(kNamesAreOld);
    if (!problem.isEmpty())
        notes += text(kNoUndo, {problem});
    askOnce({TDialogHost::Form::StopSheet,
             answer.title,
             answer.text,
             notes.join(u'\n'),
             {text(kCancel), text(kRename)}},
            [this](qsizetype button) { renameAnswered(button); });
}

void TDocument::renameAnswered(qsizetype button)
{
    if (m_isClosing || button != kRenameButton) {
        m_renaming.reset();
    } else if (m_confirmVersion != m_batchVersion) {
        // What was asked about is not what would be renamed now.
        m_renaming.reset();
        runRename();
    } else {
        startRename();
    }
}

void TDocument::startRename()
{
    cancelAnalysis();
    m_isRenaming = true;
    m_remainingRenameOps = m_renaming->count();
    m_renamingWarnings = 0;
    m_renamingCriticals = 0;
    m_renameTextLog.clear();
    m_theProgressSheet = std::make_shared<TProgressSheetController>(m_remainingRenameOps);
    const auto sheet = m_theProgressSheet;
    idleStatus(); // of a run that went no further it would be wrong now
    Q_EMIT renamingChanged(true);
    tell(&TDocumentHost::showProgressSheet, sheet);
    m_renaming->start(
        sheet->abortFlag(),
        [this](TFileObject &file, const TRenameReport &report) { finishedRenameOp(file, report); },
        [this](const TRenameSummary &summary) { processingFinished(summary); });
}

void TDocument::finishedRenameOp(TFileObject &file, const TRenameReport &report)
{
    file.setErrLog(report.errors);
    if (report.unchanged) {
        m_forecasts.insert(file, {report.finalName, report.failure, true});
    } else {
        file.setHasBeenProcessed(true);
        file.setTargetURL(TFileURL(file.sourceURL().folder(), report.finalName));
        m_forecasts.insertOutcome(file, report.failure);
    }
    if (!m_theProgressSheet)
        return; // the user has seen the end of the run already
    if (m_theProgressSheet->abortRequest()) {
        m_remainingRenameOps = 0;
        return endProgressSheet();
    }
    --m_remainingRenameOps;
    m_renamingWarnings += report.warning ? 1 : 0;
    m_renamingCriticals += report.critical ? 1 : 0;
    if (m_remainingRenameOps % kProgressStep == 0 &&
        m_theProgressSheet->updateProgress(m_remainingRenameOps, m_renamingWarnings,
                                           m_renamingCriticals))
        tell(&TDocumentHost::progressSheetChanged);
}

void TDocument::endProgressSheet()
{
    if (!m_theProgressSheet)
        return;
    m_theProgressSheet->prepareToClose();
    m_theProgressSheet.reset();
    tell(&TDocumentHost::endProgressSheet);
}

void TDocument::processingFinished(const TRenameSummary &summary)
{
    const bool wasAborted = !m_theProgressSheet || m_theProgressSheet->abortRequest();
    endProgressSheet();
    m_remainingRenameOps = 0;
    if (!summary.rollbackLog.isEmpty())
        setRollbackURL(TFileURL::fileURLWithPath(summary.rollbackLog));
    if (summary.interrupted)
        tellWhereItStopped(summary.renamed, wasAborted ? kCancelledStatus : kStoppedStatus);
    m_renameTextLog = m_renaming->textLog();
    const QString title = text(kLogTitle, {TimeUtils::systemDateAndTime(summary.finished)});
    tell(&TDocumentHost::showLogWindow,
         std::make_shared<TLogWindowController>(title, m_renameTextLog, m_services.clock));
    if (summary.interrupted && !wasAborted)
        tell(&TDocumentHost::ask,
             TDialogHost::Question{
                 TDialogHost::Form::Alert, text(kStoppedTitle), summary.problem, QString(), {}},
             TDialogHost::Answered());
    m_renaming.reset();
    m_isRenaming = false;
    m_outcome = {summary.renamed, summary.failed, 0, !summary.rollbackLog.isEmpty()};
    updateNamesAge();
    redisplay();
    Q_EMIT renamingChanged(false);
    if (m_isClosing)
        Q_EMIT closed();
}

/// Else only the log would tell which part of the batch has its new names.
void TDocument::tellWhereItStopped(qsizetype renamed, const char *status)
{
    const QLocale locale;
    const QString done = renamed == 1 ? text(kOneRenamed)
                                      : text(kManyRenamed, {locale.toString(qlonglong{renamed})});
    setStatus(status, {done, locale.toString(qlonglong{m_renaming->count() - renamed})});
}

std::optional<TDocument::RunOutcome> TDocument::runOutcome() const
{
    return m_outcome && hasProcessedFiles(m_sourceObjectArray) ? m_outcome : std::nullopt;
}

void TDocument::rolledBack(const QVariantMap &userInfo)
{
    if (!m_outcome || !m_outcome->canBeUndone ||
        userInfo.value(RollbackNotice::kLog).toString() != m_rollbackURL.path())
        return;
    m_outcome->restored += userInfo.value(RollbackNotice::kRestored).toLongLong();
    redisplay();
}

void TDocument::setRollbackURL(const TFileURL &log)
{
    m_rollbackURL = log;
    tell(&TDocumentHost::setRollBackEnabled, true);
}

void TDocument::saveRollBackLog(const std::vector<TRenameTRX> &transactions)
{
    const QString folder = m_services.logsFolder ? m_services.logsFolder() : QString();
    if (folder.isEmpty())
        return;
    const auto writer = RollbackLogWriter::create(folder);
    if (!writer)
        return;
    for (const TRenameTRX &transaction : transactions)
        writer.value()->append(transaction);
    if (const TResult<QString> path = writer.value()->finish(m_services.clock.now()))
        setRollbackURL(TFileURL::fileURLWithPath(path.value()));
}

void TDocument::rollBackThis()
{
    if (m_rollbackURL.isValid())
        tell(&TDocumentHost::rollBackLogWithURL, m_rollbackURL);
}
