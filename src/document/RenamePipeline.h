// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TRenameRun.h"
#include "rollback/RollbackLog.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

/// The second thread of a rename run: evaluates names ahead of the mover, and writes text log and
/// transactions behind it. Values go in and out through two bounded hand-offs; nothing else is
/// shared while it runs.
class RenamePipeline
{
public:
    /// A file that the mover is done with.
    struct Done
    {
        TRenameReport report;
        QString textLog;      ///< lines from the evaluation
        bool planned = false; ///< it had a target
        bool aborted = false; ///< no rules: text log lines only, no record
    };
    struct Settings
    {
        std::span<const TFileItem> files;
        const TRenameRun::Settings *run = nullptr;
        TMetadataSource *metadata = nullptr;      ///< may be null
        RollbackLogWriter *rollbackLog = nullptr; ///< may be null
        TRenameRun::TextLog textLog;              ///< may be empty; called on the pipeline's thread
    };

    explicit RenamePipeline(Settings settings);
    ~RenamePipeline();

    /// The next name in list order; waits for it. Called at most once a file.
    TEvaluatedName next();
    /// Hands a file over to be written down.
    void hand(Done done);
    /// Waits until everything handed over is written; evaluates no further.
    void finish();

private:
    void work(const std::stop_token &stop);
    void evaluateChunk(std::vector<TEvaluatedName> &chunk);
    void write(const Done &done);
    void handChunk();

    Settings m_settings;
    TFileObject m_file;                   ///< the worker's
    qsizetype m_nextToEvaluate = 0;       ///< the worker's
    std::deque<TEvaluatedName> m_current; ///< the mover's
    std::vector<Done> m_outgoing;         ///< the mover's

    std::mutex m_mutex;
    std::condition_variable_any m_workerWakes;
    std::condition_variable m_moverWakes;
    std::deque<std::vector<TEvaluatedName>> m_evaluated; ///< guarded
    std::deque<std::vector<Done>> m_done;                ///< guarded
    std::jthread m_thread; ///< last, so that it ends before what it uses
};
