// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TRollBackWindowController.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kApplication{"Tavrin"};
constexpr QLatin1StringView kLogs{"Logs"};
constexpr QLatin1StringView kTick{"tick"};
/// Some 200,000 records; larger ones are not looked into before they are chosen.
constexpr qint64 kLargestLog = 64LL * 1024 * 1024;

} // namespace

TRollBackWindowController::TRollBackWindowController(MainThread &mainThread, WorkerQueue &worker,
                                                     Ended ended)
    : m_ended(std::move(ended))
    , m_work(mainThread, worker)
{
    m_work.run([](const auto &, const auto &) { return availableLogs(); },
               [this](TFileURLs logs) {
                   m_logs = std::move(logs);
                   m_summaries.resize(static_cast<std::size_t>(m_logs.size()));
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

const std::optional<RollbackLogSummary> &TRollBackWindowController::summary(qsizetype row)
{
    if (m_asked.insert(row).second) {
        m_waiting.push_back(row);
        readNextSummary();
    }
    return m_summaries[static_cast<std::size_t>(row)];
}

/// One after another, so that other work of the queue never waits for many; what was scrolled to
/// last is seen first.
void TRollBackWindowController::readNextSummary()
{
    if (m_isReading || m_waiting.empty() || !m_ended)
        return;
    m_isReading = true;
    const qsizetype row = m_waiting.back();
    m_waiting.pop_back();
    m_work.run([path = m_logs[row].path()](
                   const auto &, const auto &) { return summaryOfRollbackLog(path, kLargestLog); },
               [this, row](RollbackLogSummary summary) {
                   m_isReading = false;
                   m_summaries[static_cast<std::size_t>(row)] = std::move(summary);
                   Q_EMIT summaryCame(row);
                   readNextSummary();
               });
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
