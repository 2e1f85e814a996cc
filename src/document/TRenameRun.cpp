// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TRenameRun.h"

#include "commonprocs/TimeUtils.h"
#include "commonprocs/easyfile.h"
#include "document/MovePlanner.h"
#include "document/RenamePipeline.h"
#include "rollback/RunJournal.h"

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kIntentGroup = 64;
constexpr QLatin1StringView kStartedLine{"Job started at %@, scheduling %ld renames.\n\n"};
constexpr QLatin1StringView kFinishedLine{"\n\nJob finished at %@"};

/// The names come from another processor's caches; asked for now, they are here when the move
/// before theirs is done.
void prefetchNames(const RenameChunk &chunk, std::size_t next)
{
    if (next + 1 < chunk.entries.size())
        __builtin_prefetch(&chunk.entries[next + 1].from);
    if (next < chunk.entries.size()) {
        __builtin_prefetch(chunk.entries[next].from.constData());
        __builtin_prefetch(chunk.entries[next].to.constData());
    }
}

} // namespace

/// The mover's side of a run.
class TRenameRun::Private
{
public:
    explicit Private(TRenameRun &run)
        : m_run(run)
        , m_mover(run.m_fileManager)
    {
    }

    void startPipeline();
    TResult<bool> writePlan();
    TResult<bool> syncPlan();
    TResult<bool> begin();
    TRenameSummary run(const Report &report, const std::atomic<bool> &abort);

private:
    const TFileItem &item(qsizetype index) const
    {
        return m_run.m_files[static_cast<std::size_t>(index)];
    }
    bool needsIntent(qsizetype index) const { return m_journal && m_journal->needsIntent(index); }
    TResult<bool> withoutLogs();
    void moveChunk(RenameChunk &chunk, const std::atomic<bool> &abort);
    std::size_t endOfGroup(const RenameChunk &chunk, std::size_t start) const;
    bool announceIntents(const RenameChunk &chunk, std::size_t start, std::size_t end);
    TMoveResult moveEntry(RenameChunk &chunk, std::size_t at, std::size_t endOfGroup);
    void closeLogs(TRenameSummary &summary);

    TRenameRun &m_run;
    FileMover m_mover;
    std::unique_ptr<RunJournal> m_journal;
    std::unique_ptr<RollbackLogWriter> m_rollbackLog;
    std::unique_ptr<RenamePipeline> m_pipeline;
    bool m_hasBegun = false;
    bool m_interrupted = false;
    QString m_problem; ///< why the run has to stop
};

TRenameRun::TRenameRun(FileManager &fileManager, const Clock &clock,
                       std::span<const TFileItem> files, Settings settings)
    : m_fileManager(fileManager)
    , m_clock(clock)
    , m_files(files)
    , m_settings(std::move(settings))
    , m_private(std::make_unique<Private>(*this))
{
}

TRenameRun::~TRenameRun() = default;

TResult<bool> TRenameRun::prepare()
{
    TResult<bool> planned = true;
    if (!m_settings.logsFolder.isEmpty())
        planned = m_private->writePlan();
    // The first names are evaluated while the plan is on its way to the disk.
    if (m_settings.confirmed)
        m_private->startPipeline();
    return planned ? m_private->syncPlan() : planned;
}

TResult<bool> TRenameRun::begin()
{
    return m_private->begin();
}

TRenameSummary TRenameRun::run(const Report &report, const std::atomic<bool> &abort)
{
    return m_private->run(report, abort);
}

TResult<bool> TRenameRun::Private::writePlan()
{
    auto rollbackLog = RollbackLogWriter::create(m_run.m_settings.logsFolder);
    if (!rollbackLog)
        return TResult<bool>::failure(rollbackLog.message());
    if (auto reserved = rollbackLog.value()->reserve(m_run.m_files); !reserved)
        return reserved;
    auto journal =
        RunJournal::create(m_run.m_settings.logsFolder, m_run.m_clock, m_run.m_fileManager);
    if (!journal)
        return TResult<bool>::failure(journal.message());
    for (const TFileItem &file : m_run.m_files)
        journal.value()->addFile(file);
    m_journal = std::move(journal).value();
    m_rollbackLog = std::move(rollbackLog).value();
    return true;
}

TResult<bool> TRenameRun::Private::syncPlan()
{
    return !m_journal || m_journal->syncPlan() ? TResult<bool>(true) : withoutLogs();
}

TResult<bool> TRenameRun::Private::begin()
{
    if (m_hasBegun)
        return true;
    m_hasBegun = true;
    // The first names are evaluated while the plan gets its last sync.
    if (!m_pipeline)
        startPipeline();
    return !m_journal || m_journal->begin() ? TResult<bool>(true) : withoutLogs();
}

/// The journal has failed: the run could not be undone.
TResult<bool> TRenameRun::Private::withoutLogs()
{
    const QString problem = m_journal->problem();
    m_journal.reset();
    m_rollbackLog.reset();
    return TResult<bool>::failure(problem);
}

void TRenameRun::Private::startPipeline()
{
    m_pipeline = std::make_unique<RenamePipeline>(
        m_run.m_fileManager,
        RenamePipeline::Settings{m_run.m_files, &m_run.m_settings, m_run.m_metadata});
}

TRenameSummary TRenameRun::Private::run(const Report &report, const std::atomic<bool> &abort)
{
    const TResult<bool> begun = begin();
    if (!begun)
        m_problem = begun.message();
    const auto total = static_cast<qsizetype>(m_run.m_files.size());
    if (m_run.m_textLog)
        m_run.m_textLog(formatted(kStartedLine, {TimeUtils::systemDateAndTime(m_run.m_clock.now()),
                                                 QString::number(total)}));
    RunRecorder recorder({m_run.m_files, &report, &m_run.m_textLog, m_rollbackLog.get()});
    m_interrupted = !begun || (abort.load() && total > 0);
    for (RenameChunk *chunk = nullptr; !m_interrupted && (chunk = m_pipeline->next()) != nullptr;) {
        moveChunk(*chunk, abort);
        m_pipeline->hand(recorder);
    }
    m_pipeline->finish();
    TRenameSummary summary = recorder.summary();
    summary.interrupted = m_interrupted;
    summary.problem = m_problem;
    summary.finished = m_run.m_clock.now();
    closeLogs(summary);
    if (m_run.m_textLog)
        m_run.m_textLog(formatted(kFinishedLine, {TimeUtils::systemDateAndTime(summary.finished)}));
    return summary;
}

void TRenameRun::Private::moveChunk(RenameChunk &chunk, const std::atomic<bool> &abort)
{
    std::size_t announced = 0;
    for (std::size_t i = 0; i < chunk.entries.size(); ++i) {
        if (i >= announced) {
            announced = endOfGroup(chunk, i);
            m_interrupted = !announceIntents(chunk, i, announced);
        }
        m_interrupted = m_interrupted || abort.load();
        if (m_interrupted)
            return;
        prefetchNames(chunk, i + 1);
        RenameEntry &entry = chunk.entries[i];
        entry.result = moveEntry(chunk, i, announced);
        if (entry.result.ok() && entry.plan.moves() && m_journal)
            m_journal->recordMove(chunk.indexOf(i), entry.to);
        chunk.moved = i + 1;
        if (m_interrupted)
            return;
    }
}

/// Files that must be announced go in groups, whose targets then stay as they are.
std::size_t TRenameRun::Private::endOfGroup(const RenameChunk &chunk, std::size_t start) const
{
    if (!needsIntent(chunk.indexOf(start)))
        return start + 1;
    return std::min(start + kIntentGroup, chunk.entries.size());
}

bool TRenameRun::Private::announceIntents(const RenameChunk &chunk, std::size_t start,
                                          std::size_t end)
{
    bool any = false;
    for (std::size_t i = start; i < end; ++i) {
        const RenameEntry &entry = chunk.entries[i];
        if (!needsIntent(chunk.indexOf(i)) || !entry.plan.moves())
            continue;
        m_journal->addIntent(chunk.indexOf(i), entry.to);
        any = true;
    }
    if (!any || m_journal->syncIntents())
        return true;
    m_problem = m_journal->problem();
    return false;
}

TMoveResult TRenameRun::Private::moveEntry(RenameChunk &chunk, std::size_t at,
                                           std::size_t endOfGroup)
{
    RenameEntry &entry = chunk.entries[at];
    const TFileItem &file = item(chunk.indexOf(at));
    while (true) {
        if (!entry.plan.refusal.isEmpty())
            return {TMoveResult::Way::Failed, 0, entry.plan.refusal};
        if (!entry.plan.moves())
            return {TMoveResult::Way::Itself, 0, {}};
        TMoveResult result = m_mover.move(*file.url.folder(), entry.from, entry.to);
        if (result.ok())
            return result;
        // Somebody took the name meanwhile: the next number is tried.
        const bool again = result.error == EEXIST && !entry.name.extension.isEmpty();
        m_pipeline->replan(endOfGroup, [&](MovePlanner &planner) {
            planner.takeBack(file, entry.plan);
            if (again)
                entry.setPlan(planner.planAgain(file, entry.name, entry.plan.finalName));
        });
        if (!again)
            return result;
        if (!announceIntents(chunk, at, at + 1)) {
            m_pipeline->replan(endOfGroup,
                               [&](MovePlanner &planner) { planner.takeBack(file, entry.plan); });
            m_interrupted = true;
            return {TMoveResult::Way::Failed, 0, m_problem};
        }
    }
}

void TRenameRun::Private::closeLogs(TRenameSummary &summary)
{
    if (!m_rollbackLog)
        return;
    const TResult<QString> path = m_rollbackLog->finish(summary.finished);
    if (!path) {
        // The journal stays open, so that the next start makes a log of it.
        summary.problem = path.message();
        return;
    }
    summary.rollbackLog = path.value();
    m_journal->finish(summary.rollbackLog);
}
