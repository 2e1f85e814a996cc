// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/MovePlanner.h"
#include "document/TRenameRun.h"
#include "rollback/RollbackLog.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

/// The second thread of a rename run: evaluates names and decides targets ahead of the mover, and
/// writes text log and transactions behind it. Values go in and out through two bounded hand-offs.
///
/// Targets are decided as if every earlier move succeeded, which is nearly always so. When one does
/// not, the mover asks for what was decided ahead to be decided anew.
class RenamePipeline
{
public:
    /// A file on its way to the mover.
    struct Planned
    {
        TEvaluatedName name;
        MovePlanner::Plan plan;
    };
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

    RenamePipeline(FileManager &fileManager, Settings settings);
    ~RenamePipeline();

    /// The next file in list order; waits for it. Called at most once a file.
    Planned next();
    /// A move did not go as planned. Takes back what was decided for files not handed out yet, lets
    /// mend put the picture right, and decides again. Costs little more than the few files that are
    /// decided ahead after a failure.
    void replan(const std::function<void(MovePlanner &)> &mend);
    /// Hands a file over to be written down.
    void hand(Done done);
    /// Waits until everything handed over is written; evaluates no further.
    void finish();

private:
    using Chunk = std::deque<Planned>;

    void announceFolders();
    void work(const std::stop_token &stop);
    bool canEvaluate() const;
    void makeChunk(qsizetype count);
    TEvaluatedName evaluate(qsizetype index);
    void write(const Done &done);
    void handChunk();
    const TFileItem &item(qsizetype index) const
    {
        return m_settings.files[static_cast<std::size_t>(index)];
    }

    Settings m_settings;
    TFileObject m_file;            ///< the worker's
    Chunk m_current;               ///< the mover's
    qsizetype m_nextToHandOut = 0; ///< the mover's
    std::vector<Done> m_outgoing;  ///< the mover's

    std::mutex m_planning; ///< held while targets are decided; taken before m_mutex
    MovePlanner m_planner; ///< guarded by m_planning

    std::mutex m_mutex; ///< guards the rest
    std::condition_variable_any m_workerWakes;
    std::condition_variable m_moverWakes;
    qsizetype m_nextToEvaluate = 0;
    qsizetype m_chunkSize;
    std::deque<Chunk> m_ahead;
    std::deque<std::vector<Done>> m_done;
    std::jthread m_thread; ///< last, so that it ends before what it uses
};
