// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TDoRollBackWindowController.h"

#include "commonprocs/Sandboxing.h"
#include "document/RollbackNotice.h"
#include "rollback/RollbackLog.h"
#include "settings/logging.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kInitializing =
    QT_TRANSLATE_NOOP("TDoRollBackWindowController", "Initializing... processing log");
constexpr const char *kRollingBack =
    QT_TRANSLATE_NOOP("TDoRollBackWindowController", "Rolling back renames...");
constexpr const char *kStopping =
    QT_TRANSLATE_NOOP("TDoRollBackWindowController", "Stopping after the file in hand...");
constexpr const char *kRollBack = QT_TRANSLATE_NOOP("TDoRollBackWindowController", "Roll Back");
constexpr const char *kComplete =
    QT_TRANSLATE_NOOP("TDoRollBackWindowController", "Roll Back Complete");
constexpr QLatin1StringView kLogTitle{"rollback TRX table view"};
constexpr QLatin1StringView kUnknownColumn{" column %@ not processed"};
constexpr QLatin1StringView kRollbackTitle{"rollback"};
constexpr QLatin1StringView kTick{"tick"};
constexpr QLatin1StringView kRedX{"stop"};
constexpr QLatin1StringView kGreenArrow{"green arrow"};
constexpr qsizetype kProblemsColumn = 1;
constexpr int kFull = 100;

TableCell::Ink originalInk(qint64 status)
{
    if (status == RollbackRun::kRenamedFound)
        return TableCell::Ink::Normal;
    return status == RollbackRun::kFailed ? TableCell::Ink::Red : TableCell::Ink::Grey;
}

TImage statusImage(qint64 status)
{
    if (status == RollbackRun::kRestored)
        return TImage(kTick);
    return TImage(status == RollbackRun::kRenamedFound ? kGreenArrow : kRedX);
}

/// The same report, made on the main thread.
RollbackRun::Progress posted(const RollbackRun::Progress &report, const BackgroundWork::Post &post)
{
    return [report, post](qsizetype current, qsizetype total) {
        post([report, current, total] { report(current, total); });
    };
}

} // namespace

/// What the first pass hands over.
struct TDoRollBackWindowController::Checked
{
    std::shared_ptr<RollbackRun> run; ///< null when the log could not be read
    Records records;
    TFolderAccessList folders;
    bool recommendsReverse = false;
    QString problem;
};

/// What the second pass hands over.
struct TDoRollBackWindowController::Undone
{
    Records records;
    QHash<qsizetype, QString> otherNames;
};

TDoRollBackWindowController::TDoRollBackWindowController(const Services &services,
                                                         std::function<void(int)> ended)
    : m_fileManager(services.fileManager)
    , m_notifications(services.notifications)
    , m_ended(std::move(ended))
    , m_statusText(tr(kInitializing))
    , m_grants(services.host, services.notifications)
    , m_work(services.mainThread, services.worker)
{
}

TDoRollBackWindowController::~TDoRollBackWindowController()
{
    *m_stopped = true;
}

void TDoRollBackWindowController::loadLog(const TFileURL &log)
{
    if (!log.isValid())
        return;
    m_log = log.path();
    m_work.run(
        [log, report = reporter(), &fileManager = m_fileManager](
            const BackgroundWork::StopFlag &stop, const BackgroundWork::Post &post) {
            return processLogInBackground(log, fileManager, posted(report, post), stop);
        },
        [this](Checked checked) { loadFinished(std::move(checked)); });
}

TDoRollBackWindowController::Checked
TDoRollBackWindowController::processLogInBackground(const TFileURL &log, FileManager &fileManager,
                                                    const RollbackRun::Progress &progress,
                                                    const BackgroundWork::StopFlag &stop)
{
    Checked checked;
    TResult<Records> records = readRollbackLog(log.path());
    if (!records) {
        checked.problem = records.message();
        return checked;
    }
    checked.run =
        std::make_shared<RollbackRun>(fileManager, std::move(records).value(), log.path());
    checked.run->processLog(progress, &stop);
    if (stop)
        return checked;
    checked.records = checked.run->transactions();
    checked.recommendsReverse = checked.run->recommendsReverse();
    if (sandboxIsOn())
        for (const TRenameTRX &record : checked.records)
            checked.folders.addParentFolderIfNeededForURL(record.renamedURL);
    return checked;
}

RollbackRun::Progress TDoRollBackWindowController::reporter()
{
    return [this](qsizetype current, qsizetype total) { loadProgressing(current, total); };
}

void TDoRollBackWindowController::loadProgressing(qsizetype current, qsizetype total)
{
    const auto percent = static_cast<int>(current * kFull / total);
    if (std::exchange(m_progress, percent) != percent)
        Q_EMIT progressChanged();
}

void TDoRollBackWindowController::loadFinished(Checked checked)
{
    if (!checked.run) { // the window stays as it is, which only Cancel leaves
        zelWarn(kRollbackTitle, checked.problem);
        return;
    }
    m_run = std::move(checked.run);
    m_records = std::move(checked.records);
    m_folders = std::move(checked.folders);
    m_recommendsReverse = checked.recommendsReverse;
    m_progressShown = false;
    m_state = State::Analysed;
    Q_EMIT tableReloaded();
    Q_EMIT changed();
}

void TDoRollBackWindowController::rollBack()
{
    if (!rollBackButtonEnabled())
        return;
    m_isAsking = true;
    m_grants.getAuthorization(m_folders, [this](bool granted) {
        m_isAsking = false;
        if (granted && !m_hasEnded)
            performBackgroundRollBack();
        else
            Q_EMIT changed();
    });
    if (m_isAsking)
        Q_EMIT changed();
}

void TDoRollBackWindowController::performBackgroundRollBack()
{
    m_state = State::RollingBack;
    m_statusText = tr(kRollingBack);
    m_progress = 0;
    m_progressShown = true;
    Q_EMIT progressChanged();
    Q_EMIT changed();
    m_work.run(
        [run = m_run, report = reporter(), reverse = m_reverse,
         stopped = m_stopped](const BackgroundWork::StopFlag &, const BackgroundWork::Post &post) {
            Undone undone;
            run->performRollBack(
                posted(report, post), *stopped, reverse,
                [&](qsizetype index, const TFileURL &target) {
                    const TRenameTRX &record = run->transactions()[static_cast<std::size_t>(index)];
                    if (target.lastPathComponent() != record.originalURL.lastPathComponent())
                        undone.otherNames.insert(index, target.lastPathComponent());
                });
            undone.records = run->transactions();
            return undone;
        },
        [this](Undone undone) { rollBackComplete(std::move(undone)); });
}

void TDoRollBackWindowController::rollBackComplete(Undone undone)
{
    m_records = std::move(undone.records);
    m_otherNames = std::move(undone.otherNames);
    const bool isAnyLeft =
        std::any_of(m_records.begin(), m_records.end(), [](const TRenameTRX &record) {
            return record.renamedExistsWithStatus == RollbackRun::kRenamedFound;
        });
    *m_stopped = *m_stopped && isAnyLeft; // else it was too late to stop
    m_progressShown = false;
    m_state = State::Complete;
    Q_EMIT tableReloaded();
    Q_EMIT changed();
    const auto restored =
        std::count_if(m_records.begin(), m_records.end(), [](const TRenameTRX &record) {
            return record.renamedExistsWithStatus == RollbackRun::kRestored;
        });
    m_notifications.post(RollbackNotice::kRolledBack,
                         {{RollbackNotice::kLog, m_log},
                          {RollbackNotice::kRestored, static_cast<qlonglong>(restored)}});
}

void TDoRollBackWindowController::stop()
{
    *m_stopped = true;
    m_statusText = tr(kStopping);
    Q_EMIT changed();
}

void TDoRollBackWindowController::cancel()
{
    *m_stopped = true;
    m_work.cancel();
    if (!std::exchange(m_hasEnded, true))
        m_ended(kEndCode);
}

bool TDoRollBackWindowController::rollBackButtonEnabled() const
{
    return m_state == State::Analysed && !m_isAsking && !m_hasEnded;
}

QString TDoRollBackWindowController::rollBackButtonTitle() const
{
    return tr(m_state == State::Complete && !*m_stopped ? kComplete : kRollBack);
}

TableCell TDoRollBackWindowController::cell(qsizetype row, QLatin1StringView column) const
{
    const TRenameTRX &record = m_records[static_cast<std::size_t>(row)];
    const qint64 status = record.renamedExistsWithStatus;
    if (column == kOriginalColumn)
        return {record.originalURL.lastPathComponent(), {}, originalInk(status)};
    if (column == kCurrentColumn)
        return {record.renamedURL.lastPathComponent(),
                {},
                status == RollbackRun::kRenamedFound ? TableCell::Ink::Normal
                                                     : TableCell::Ink::Grey};
    if (column == kStatusColumn)
        return {{}, statusImage(status), {}};
    zelWarn(kLogTitle, formatted(kUnknownColumn, {column}));
    return {};
}

const TErrorLog *TDoRollBackWindowController::clicked(qsizetype row, qsizetype column) const
{
    const bool isRow = row >= 0 && row < static_cast<qsizetype>(m_records.size());
    return isRow && column == kProblemsColumn ? &m_records[static_cast<std::size_t>(row)].errorLog
                                              : nullptr;
}
