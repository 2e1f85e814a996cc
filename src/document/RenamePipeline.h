// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/RenameChunk.h"
#include "document/RunRecorder.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

/// The second thread of a rename run: evaluates names and decides targets ahead of the mover, and
/// reports and records behind it, so that the mover does next to nothing but move. Files pass in
/// chunks through two bounded hand-offs.
///
/// Targets are decided as if every earlier move succeeded, which is nearly always so. When one does
/// not, the mover asks for what was decided ahead to be decided anew.
class RenamePipeline
{
public:
    struct Settings
    {
        std::span<const TFileItem> files;
        const TRenameRun::Settings *run = nullptr;
        TMetadataSource *metadata = nullptr; ///< may be null
    };

    /// Starts at once; fileManager is not owned.
    RenamePipeline(FileManager &fileManager, const Settings &settings);
    ~RenamePipeline();

    /// The next files in list order, which are the mover's until it hands them back; waits for
    /// them. Null when all have been handed out.
    RenameChunk *next();
    /// A move did not go as planned. Takes back what was decided for the files from the given entry
    /// of the mover's chunk on, lets mend put the picture right, and decides again. Costs little
    /// more than the few files that are decided ahead after a failure.
    void replan(std::size_t firstEntry, const std::function<void(MovePlanner &)> &mend);
    /// Gives the mover's chunk back, to be recorded as far as it has moved. The recorder is not
    /// owned and the same each time; it is used by this thread until finish returns.
    void hand(RunRecorder &recorder);
    /// Waits until everything handed over is recorded; evaluates no further.
    void finish();

private:
    using Chunk = std::unique_ptr<RenameChunk>;

    void announceFolders();
    void work(const std::stop_token &stop);
    bool canEvaluate() const;
    Chunk emptyChunk();
    void makeChunk(qsizetype count);
    TEvaluatedName evaluate(qsizetype index);
    const TFileItem &item(qsizetype index) const
    {
        return m_settings.files[static_cast<std::size_t>(index)];
    }

    Settings m_settings;
    TFileObject m_file;                                 ///< the worker's
    std::vector<Chunk> m_spare;                         ///< the worker's, to be filled again
    Chunk m_current;                                    ///< the mover's
    std::chrono::steady_clock::time_point m_lastWaking; ///< of the worker, by the mover

    std::mutex m_planning; ///< held while targets are decided; taken before m_mutex
    MovePlanner m_planner; ///< guarded by m_planning

    std::mutex m_mutex; ///< guards the rest
    std::condition_variable_any m_workerWakes;
    std::condition_variable m_moverWakes;
    qsizetype m_nextToEvaluate = 0;
    qsizetype m_nextToHandOut = 0;
    qsizetype m_chunkSize;
    std::deque<Chunk> m_ahead;
    std::deque<Chunk> m_done;
    RunRecorder *m_recorder = nullptr;
    std::jthread m_thread; ///< last, so that it ends before what it uses
};
