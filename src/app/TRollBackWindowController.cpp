// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TRollBackWindowController.h"

#include "rollback/RollbackLog.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kApplication{"Tavrin"};
constexpr QLatin1StringView kLogs{"Logs"};
constexpr QLatin1StringView kTick{"tick"};

} // namespace

TRollBackWindowController::TRollBackWindowController(MainThread &mainThread, WorkerQueue &worker,
                                                     Ended ended)
    : m_ended(std::move(ended))
    , m_work(mainThread, worker)
{
    m_work.run([](const auto &, const auto &) { return availableLogs(); },
               [this](TFileURLs logs) {
                   m_logs = std::move(logs);
                   Q_EMIT tableReloaded();
               });
}

TFileURLs TRollBackWindowController::availableLogs()
{
    TFileURLs logs;
    const TFileURL folder = getSandboxedAppSupportFolder(kApplication, kLogs);
    if (folder.isValid())
        for (const QString &path : rollbackLogPaths(folder.path()))
            logs += TFileURL::fileURLWithPath(path);
    return logs;
}

TableCell TRollBackWindowController::logName(qsizetype row) const
{
    return {removeExtensionFromFilename(m_logs[row].lastPathComponent()), TImage(kTick), {}};
}

void TRollBackWindowController::rowClicked(qsizetype row)
{
    m_selectedRow = row;
    if (std::exchange(m_chooseEnabled, isRow(row)) != m_chooseEnabled)
        Q_EMIT chooseButtonChanged();
}

void TRollBackWindowController::rowDoubleClicked(qsizetype row)
{
    if (!isRow(row))
        return;
    m_row = row;
    stopModal(kChosen);
}

void TRollBackWindowController::chooseRollback()
{
    m_row = m_selectedRow;
    stopModal(kChosen);
}

void TRollBackWindowController::cancel()
{
    m_row = -1;
    stopModal(kCancelled);
}

void TRollBackWindowController::stopModal(int code)
{
    const Ended ended = std::exchange(m_ended, {});
    if (ended)
        ended(code == kChosen && isRow(m_row) ? std::optional(m_logs[m_row]) : std::nullopt);
}
