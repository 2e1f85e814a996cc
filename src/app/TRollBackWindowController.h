// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/URLListProcessing.h"
#include "document/TableCell.h"
#include "platform/BackgroundWork.h"
#include "rollback/RollbackLog.h"

#include <QObject>

#include <optional>
#include <set>
#include <vector>

/// The chooser of a saved rollback log, without its window. The worker lists the logs. Owned by the
/// application delegate; main thread only.
class TRollBackWindowController : public QObject
{
    Q_OBJECT

public:
    static constexpr int kCancelled = 0;
    static constexpr int kChosen = 1;
    /// Called once, when the user has chosen a log or gone away without one.
    using Ended = std::function<void(const std::optional<TFileURL> &log)>;

    /// Starts listing. The queue outlives the controller.
    TRollBackWindowController(MainThread &mainThread, WorkerQueue &worker, Ended ended);

    /// All logs of the logs folder, which is made when missing; newest first. Any thread.
    static TFileURLs availableLogs();

    const TFileURLs &theLogs() const { return m_logs; }
    qsizetype theRow() const { return m_row; }
    /// The cell "logName" of a row.
    TableCell logName(qsizetype row) const;
    /// What the row's run was about; unset until the worker, which is asked by the first call, has
    /// looked into its log.
    const std::optional<RollbackLogSummary> &summary(qsizetype row);
    bool chooseButtonEnabled() const { return m_chooseEnabled; }

    /// A click on a row; one below the last is none.
    void rowClicked(qsizetype row);
    void rowDoubleClicked(qsizetype row);
    /// The choose button.
    void chooseRollback();
    void cancel();

Q_SIGNALS:
    void tableReloaded();
    void summaryCame(qsizetype row);
    void chooseButtonChanged();

private:
    bool isRow(qsizetype row) const { return row >= 0 && row < m_logs.size(); }
    void stopModal(int code);
    void readNextSummary();

    TFileURLs m_logs;
    std::vector<std::optional<RollbackLogSummary>> m_summaries; ///< a row each
    std::set<qsizetype> m_asked;      ///< rows, whether they have come or not
    std::vector<qsizetype> m_waiting; ///< of those, the latest last
    bool m_isReading = false;
    qsizetype m_row = -1;
    qsizetype m_selectedRow = -1;
    bool m_chooseEnabled = false;
    Ended m_ended; ///< empty once called
    BackgroundWork m_work;
};
