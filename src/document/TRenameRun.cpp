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

constexpr qsizetype kIntentGroup = 64;
constexpr QLatin1StringView kStartedLine{"Job started at %@, scheduling %ld renames.\n\n"};
constexpr QLatin1StringView kFinishedLine{"\n\nJob finished at %@"};

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

    TResult<bool> makeJournal();
    TRenameSummary run(const Report &report, const std::atomic<bool> &abort);

private:
    /// A file whose target is decided but which has not moved.
    struct Pending
    {
        qsizetype index;
        TEvaluatedName name;
        MovePlanner::Plan plan;
    };

    const TFileItem &item(qsizetype index) const
    {
        return m_run.m_files[static_cast<std::size_t>(index)];
    }
    qsizetype groupSize(qsizetype index) const;
    bool announceIntents(std::span<const Pending> group);
    void takeGroup(qsizetype first, qsizetype count, std::vector<Pending> &group);
    void execute(Pending &pending);
    TMoveResult moveOne(Pending &pending);
    void conclude(Pending &pending, const TMoveResult &result);
    void closeLogs();

    TRenameRun &m_run;
    FileMover m_mover;
    std::unique_ptr<RunJournal> m_journal;
    std::unique_ptr<RollbackLogWriter> m_rollbackLog;
    std::unique_ptr<RenamePipeline> m_pipeline;
    const Report *m_report = nullptr;
    TRenameSummary m_summary;
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
    if (m_settings.logsFolder.isEmpty())
        return true;
    return m_private->makeJournal();
}

TRenameSummary TRenameRun::run(const Report &report, const std::atomic<bool> &abort)
{
    return m_private->run(report, abort);
}

TResult<bool> TRenameRun::Private::makeJournal()
{
    auto rollbackLog = RollbackLogWriter::create(m_run.m_settings.logsFolder);
    if (!rollbackLog)
        return TResult<bool>::failure(rollbackLog.message());
    auto journal =
        RunJournal::create(m_run.m_settings.logsFolder, m_run.m_clock, m_run.m_fileManager);
    if (!journal)
        return TResult<bool>::failure(journal.message());
    for (const TFileItem &file : m_run.m_files)
        journal.value()->addFile(file);
    if (!journal.value()->syncPlan())
        return TResult<bool>::failure(journal.value()->problem());
    m_journal = std::move(journal).value();
    m_rollbackLog = std::move(rollbackLog).value();
    return true;
}

TRenameSummary TRenameRun::Private::run(const Report &report, const std::atomic<bool> &abort)
{
    const auto total = static_cast<qsizetype>(m_run.m_files.size());
    m_report = &report;
    if (m_run.m_textLog)
        m_run.m_textLog(formatted(kStartedLine, {TimeUtils::systemDateAndTime(m_run.m_clock.now()),
                                                 QString::number(total)}));
    m_pipeline = std::make_unique<RenamePipeline>(
        m_run.m_fileManager,
        RenamePipeline::Settings{m_run.m_files, &m_run.m_settings, m_run.m_metadata,
                                 m_rollbackLog.get(), m_run.m_textLog});

    std::vector<Pending> group;
    m_summary.interrupted = abort.load() && total > 0;
    for (qsizetype i = 0; i < total && !m_summary.interrupted;) {
        const qsizetype count = groupSize(i);
        takeGroup(i, count, group);
        i += count;
        m_summary.interrupted = !announceIntents(group);
        for (Pending &pending : group) {
            if (m_summary.interrupted)
                break;
            m_summary.interrupted = abort.load();
            if (!m_summary.interrupted)
                execute(pending);
        }
    }
    m_pipeline->finish();
    closeLogs();
    if (m_run.m_textLog)
        m_run.m_textLog(
            formatted(kFinishedLine, {TimeUtils::systemDateAndTime(m_run.m_clock.now())}));
    return m_summary;
}

qsizetype TRenameRun::Private::groupSize(qsizetype index) const
{
    if (!m_journal || !m_journal->needsIntent(index))
        return 1;
    return std::min(kIntentGroup, static_cast<qsizetype>(m_run.m_files.size()) - index);
}

void TRenameRun::Private::takeGroup(qsizetype first, qsizetype count, std::vector<Pending> &group)
{
    group.clear();
    for (qsizetype i = first; i < first + count; ++i) {
        RenamePipeline::Planned planned = m_pipeline->next();
        group.push_back({i, std::move(planned.name), std::move(planned.plan)});
    }
}

bool TRenameRun::Private::announceIntents(std::span<const Pending> group)
{
    bool any = false;
    for (const Pending &pending : group) {
        if (!m_journal || !m_journal->needsIntent(pending.index) || !pending.plan.moves())
            continue;
        m_journal->addIntent(pending.index, pending.plan.finalName);
        any = true;
    }
    if (!any || m_journal->syncIntents())
        return true;
    m_summary.problem = m_journal->problem();
    return false;
}

TMoveResult TRenameRun::Private::moveOne(Pending &pending)
{
    const TFileItem &file = item(pending.index);
    while (true) {
        if (!pending.plan.refusal.isEmpty())
            return {TMoveResult::Way::Failed, 0, pending.plan.refusal};
        TMoveResult result =
            m_mover.move(*file.url.folder(), file.url.lastPathComponent(), pending.plan.finalName);
        if (result.ok())
            return result;
        // Somebody took the name meanwhile: the next number is tried.
        const bool again = result.error == EEXIST && !pending.name.extension.isEmpty();
        m_pipeline->replan([&](MovePlanner &planner) {
            planner.takeBack(file, pending.plan);
            if (again)
                pending.plan = planner.planAgain(file, pending.name, pending.plan.finalName);
        });
        if (!again)
            return result;
        if (!announceIntents(std::span(&pending, 1))) {
            m_pipeline->replan([&](MovePlanner &planner) { planner.takeBack(file, pending.plan); });
            m_summary.interrupted = true;
            return {TMoveResult::Way::Failed, 0, m_summary.problem};
        }
    }
}

void TRenameRun::Private::execute(Pending &pending)
{
    if (pending.name.base.isNull()) {
        TRenameReport nothing;
        nothing.index = pending.index;
        m_pipeline->hand({std::move(nothing), std::move(pending.name.textLog), false, true});
        return;
    }
    if (pending.plan.unchanged) {
        conclude(pending, {TMoveResult::Way::Itself, 0, QString()});
        return;
    }
    const TMoveResult result = moveOne(pending);
    if (result.ok() && m_journal)
        m_journal->recordMove(pending.index, pending.plan.finalName);
    conclude(pending, result);
}

void TRenameRun::Private::conclude(Pending &pending, const TMoveResult &result)
{
    const bool renamed = !pending.plan.uniqueBase.isNull();
    if (renamed)
        TRenameOperation::applyUniqueBase(
            pending.name, removeExtensionFromFilename(item(pending.index).url.lastPathComponent()),
            pending.plan.uniqueBase);
    TRenameReport report;
    report.index = pending.index;
    report.finalName = pending.plan.finalName;
    report.errors = std::move(pending.name.errors);
    report.failure = result.text;
    report.unchanged = pending.plan.unchanged;
    report.success = result.ok() && !report.unchanged;
    report.warning = pending.name.wasEmpty || renamed;
    report.critical = !result.ok();
    m_summary.renamed += report.success ? 1 : 0;
    m_summary.unchanged += report.unchanged ? 1 : 0;
    m_summary.failed += report.critical ? 1 : 0;
    m_summary.criticals += report.critical ? 1 : 0;
    m_summary.warnings += report.warning ? 1 : 0;
    if (*m_report)
        (*m_report)(report);
    m_pipeline->hand(
        {std::move(report), std::move(pending.name.textLog), !pending.name.tookTooLong, false});
}

void TRenameRun::Private::closeLogs()
{
    if (!m_rollbackLog)
        return;
    const TResult<QString> path = m_rollbackLog->finish(m_run.m_clock.now());
    if (!path) {
        // The journal stays open, so that the next start makes a log of it.
        m_summary.problem = path.message();
        return;
    }
    m_summary.rollbackLog = path.value();
    m_journal->finish();
}
