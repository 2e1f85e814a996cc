// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocumentAnalysis.h"
#include "document/TProgressSheetController.h"
#include "document/TRenameRun.h"

#include <functional>
#include <memory>

/// One live run of a document from the plan to its log: prepared before the confirmation, so that
/// the question can say whether the run could be undone; moving on a worker of its own; reports
/// posted to the main thread.
///
/// Main thread only. Its end asks the mover to stop, and waits until the file in hand and the logs
/// are finished.
class TDocumentRenaming
{
public:
    struct Input
    {
        TDocumentFacts facts;
        TDocumentFiles files;
        TRuleList rules; ///< copied and prepared
        std::unique_ptr<TExtensionHandler> extensionHandler;
        TOptions options;
        QString logsFolder; ///< empty: the run leaves no log
    };
    /// Gets why the run could not be undone; empty when it could.
    using Prepared = std::function<void(const QString &problem)>;
    using Report = std::function<void(TFileObject &file, const TRenameReport &report)>;
    using Finished = std::function<void(const TRenameSummary &summary)>;

    TDocumentRenaming(FileManager &fileManager, const Clock &clock, TDocumentMailPtr mail,
                      Input input);
    ~TDocumentRenaming();

    qsizetype count() const { return static_cast<qsizetype>(m_files->size()); }
    /// Makes the plan; nothing moves yet.
    void prepare(const Prepared &prepared);
    /// Moves until the end or until the flag is set. Reports come in list order, then the summary.
    void start(const TProgressSheetController::AbortFlag &abort, Report report, Finished finished);
    /// The text log; complete once the run has finished.
    const QString &textLog() const;

private:
    struct Shared;

    std::shared_ptr<Shared> m_shared; ///< what the worker uses
    TDocumentFiles m_files;
    TDocumentMailPtr m_mail;
    TProgressSheetController::AbortFlag m_abort;
    Report m_report;
    Finished m_finished;
    WorkerQueue m_worker; ///< last, so that it ends before what it uses
};
