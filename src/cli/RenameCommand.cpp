// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RenameCommand.h"

#include "cli/JsonText.h"
#include "cli/LogsFolder.h"
#include "cli/ShellWords.h"

#include <array>
#include <cerrno>
#include <future>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kYes{"yes"};
constexpr QLatin1StringView kNoUndo{"no-undo"};

constexpr std::array kRunOptions{
    OptionInfo{kYes, ""_L1, "rename without asking"_L1, 'y'},
    OptionInfo{kNoUndo, ""_L1, "rename even when no record for undoing can be made"_L1},
};

constexpr QLatin1StringView kInterruptedBefore{"interrupted; nothing was renamed"};
constexpr QLatin1StringView kText{
    "Renames the files, after a question. The batch is analysed first; critical problems refuse "
    "the "
    "run. Nothing is ever overwritten: where a name is taken, \"-1\" and so on is added.\n"
    "Every run leaves a rollback log, from which tavrin-cli rollback undoes it. Ctrl-C stops after "
    "the current file and leaves a log of what was done."};

constexpr QLatin1StringView kExamples{
    "tavrin-cli rename --rule 'Text theText=\"Holiday \"' --rule Counter photos/\n"
    "tavrin-cli rename --yes --recipe recipe.json --json --files-from list.txt"};

TErrorLog countsOf(const AnalysisPass &pass)
{
    TErrorLog log;
    for (qsizetype i = 0; i < pass.warnings(); ++i)
        log.append({TErrorTypes::kWarning, {}});
    for (qsizetype i = 0; i < pass.criticals(); ++i)
        log.append({TErrorTypes::kCritical, {}});
    return log;
}

} // namespace

Command::Help RenameCommand::help() const
{
    return {"rename"_L1, "[recipe] [options] [--] PATH..."_L1,
            "rename files; asks first, and can be undone"_L1, kText, kExamples};
}

OptionGroups RenameCommand::optionGroups() const
{
    OptionGroups groups = BatchCommand::optionGroups();
    groups.insert(groups.begin() + 2, OptionGroup{"Run"_L1, kRunOptions});
    return groups;
}

int RenameCommand::run(const CommandLine &line)
{
    if (const auto status = understand(line))
        return *status;
    if (!line.has(kYes) && (files().readsInput() || !console().canAsk()))
        return refuseUnasked();
    if (!LogsFolder::recover(environment(), console()))
        return refuse(ExitStatus::kInterrupted, kInterruptedBefore);
    // The plan of a run that nobody will be asked about is written while the batch is analysed; it
    // goes away with a refused run. Its thread starts beside the listing, since a new thread may
    // have to wait for a processor.
    const bool beside = line.has(kYes);
    std::promise<bool> listed;
    std::future<TResult<bool>> prepared =
        std::async(beside ? std::launch::async : std::launch::deferred,
                   [this, isListed = listed.get_future()]() mutable {
                       return isListed.get() ? prepare() : TResult<bool>(false);
                   });
    const std::optional<int> notListed = collect(line);
    if (!notListed)
        makeRun(line);
    listed.set_value(!notListed);
    if (notListed)
        return *notListed;
    const std::unique_ptr<BatchReport> report = BatchReport::make(console());
    const std::optional<RenameGuard::Answer> answer = analyse(*report);
    if (!answer)
        return refuse(ExitStatus::kInterrupted, kInterruptedBefore);
    const TResult<bool> plan = prepared.get();
    if (!plan && !line.has(kNoUndo))
        return refuseWithoutUndo(plan.message());
    if (answer->verdict != RenameGuard::Verdict::Confirm)
        return refuseWithPreview(*answer);
    return rename(line, *answer, plan, *report);
}

int RenameCommand::refuseUnasked()
{
    if (const QString problem = files().listProblem(); !problem.isEmpty())
        return refuse(ExitStatus::kUsageError, problem);
    const QString why = files().readsInput()
                            ? u"standard input is the list of paths, so it cannot answer"_s
                            : u"nobody is there to be asked"_s;
    return refuse(ExitStatus::kNotConfirmed,
                  why + u"; nothing was renamed. Give --yes to rename without a question"_s);
}

void RenameCommand::makeRun(const CommandLine &line)
{
    m_logsFolder = LogsFolder::made();
    m_source = metadataSource();
    m_run = std::make_unique<TRenameRun>(
        environment().fileManager, environment().clock, files().files(),
        TRenameRun::Settings{recipe().freshRules(), recipe().extensionHandler->copyForRun(),
                             recipe().options, m_logsFolder, line.has(kYes)});
    m_run->setMetadataSource(m_source.get());
    if (console().isJson())
        m_run->setTextLog(
            [this](const QString &text) { appendJsonCharacters(m_outcome.textLog, text); });
}

TResult<bool> RenameCommand::prepare()
{
    if (!m_logsFolder.isEmpty())
        return m_run->prepare();
    return TResult<bool>::failure(
        u"The folder %1 cannot be made; check the permissions of the folders above it."_s.arg(
            LogsFolder::path()));
}

std::optional<RenameGuard::Answer> RenameCommand::analyse(BatchReport &report)
{
    AnalysisPass pass = analysis(false);
    while (!pass.atEnd()) {
        const TAnalysisResult result = pass.step();
        if (interrupted())
            return {};
        report.batchProblems(pass.lastProblems(), result.errors);
        console().progress().show("Analysing"_L1, pass.done(), pass.total());
    }
    const TErrorLog log = countsOf(pass);
    RenameGuard guard;
    guard.analysed = true;
    guard.batchLog = &log;
    guard.skipErrorList = true;
    guard.rules = static_cast<qsizetype>(recipe().rules.size());
    guard.files = pass.total();
    return guard.check();
}

int RenameCommand::refuseWithPreview(const RenameGuard::Answer &answer)
{
    const std::unique_ptr<BatchReport> report = BatchReport::make(console());
    if (!recipe().rules.empty() && files().files().empty()) {
        report->finish(RenameOutcome{{}, files().missing(), {}});
        console().message(u"no files: none of the paths holds a file to rename"_s);
        return ExitStatus::kIncomplete;
    }
    PreviewOutcome outcome = preview(*report);
    outcome.refused = true;
    if (outcome.interrupted)
        return endInterrupted(*report, outcome);
    report->finish(outcome);
    console().message(answer.title + ": "_L1 + answer.text);
    return ExitStatus::kRefused;
}

int RenameCommand::refuseWithoutUndo(const QString &problem)
{
    return refuse(ExitStatus::kNotConfirmed,
                  u"this run could not be undone. %1 Nothing was renamed; give --no-undo to "
                  "rename all the same"_s.arg(problem));
}

void RenameCommand::warnOfNoUndo(const QString &problem)
{
    console().message(u"this run cannot be undone. %1"_s.arg(problem));
}

std::optional<int> RenameCommand::confirm(const CommandLine &line, const QStringList &question)
{
    if (line.has(kYes))
        return {};
    const bool yes = console().ask(question);
    if (interrupted())
        return refuse(ExitStatus::kInterrupted, kInterruptedBefore);
    if (!yes)
        return refuse(ExitStatus::kNotConfirmed, u"not confirmed; nothing was renamed"_s);
    return {};
}

int RenameCommand::rename(const CommandLine &line, const RenameGuard::Answer &answer,
                          const TResult<bool> &prepared, BatchReport &report)
{
    QStringList question = answer.title.split(u'\n') + answer.text.split(u'\n');
    if (!prepared) {
        warnOfNoUndo(prepared.message());
        question.append(u"This run could not be undone."_s);
    }
    if (const auto status = confirm(line, question))
        return *status;
    if (const auto begun = m_run->begin(); !begun) {
        if (!line.has(kNoUndo))
            return refuseWithoutUndo(begun.message());
        warnOfNoUndo(begun.message());
    }
    m_outcome.missing = files().missing();
    move(report);
    report.finish(m_outcome);
    return status();
}

void RenameCommand::move(BatchReport &report)
{
    // The run reports what it did; what the names looked like in the analysis is worked out beside
    // it, file by file, instead of being kept.
    std::optional<AnalysisPass> targets;
    if (report.wantsTargets())
        targets.emplace(recipe(), files().files(), metadataSource(), console().hasColour());
    const auto reported = [&](const TRenameReport &file) {
        TAnalysisResult target;
        while (targets && targets->done() <= file.index)
            target = targets->step();
        report.renamed(files().files()[static_cast<std::size_t>(file.index)], target, file);
        console().progress().show("Renaming"_L1, file.index + 1, total());
    };
    m_outcome.summary = m_run->run(reported, environment().interrupted);
}

int RenameCommand::status()
{
    const TRenameSummary &summary = m_outcome.summary;
    if (!summary.problem.isEmpty())
        console().message(summary.problem);
    const bool isCutOff = summary.interrupted || environment().out.error() == ECANCELED;
    if (isCutOff && interrupted()) {
        QString story = u"interrupted after renaming %1 of %2"_s.arg(
            QString::number(summary.renamed), counted(total(), "file"_L1, "files"_L1));
        if (!summary.rollbackLog.isEmpty())
            story += "; to undo: tavrin-cli rollback "_L1 + shellQuoted(summary.rollbackLog);
        console().message(story);
        return ExitStatus::kInterrupted;
    }
    const bool complete = summary.failed == 0 && m_outcome.missing == 0 && !summary.interrupted &&
                          summary.problem.isEmpty();
    return complete ? ExitStatus::kDone : ExitStatus::kIncomplete;
}
