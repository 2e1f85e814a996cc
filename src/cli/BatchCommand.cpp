// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/BatchCommand.h"

#include "cli/RecipeReader.h"
#include "cli/RuleForms.h"
#include "document/ForecastStepper.h"

using namespace Qt::StringLiterals;

BatchCommand::BatchCommand(CliEnvironment &environment)
    : Command(environment)
    , m_files(environment, console())
{
}

OptionGroups BatchCommand::optionGroups() const
{
    return {RecipeReader::options(), BatchFiles::options(), Console::batchOptions(),
            Console::commonOptions()};
}

std::optional<int> BatchCommand::understand(const CommandLine &line)
{
    if (const QString problem = m_files.understand(line); !problem.isEmpty())
        return usageError(problem);
    const PresetsManager presets = PresetsManager::standard();
    TResult<Recipe> recipe = RecipeReader(presets).read(line);
    if (!recipe)
        return usageError(recipe.message());
    m_recipe = std::move(recipe).value();
    for (const QString &problem : m_recipe.patternProblems())
        console().message(problem);
    takeOverSignals();
    return {};
}

std::optional<int> BatchCommand::collect(const CommandLine &line)
{
    const TResult<bool> collected =
        m_files.collect(line, m_recipe.readsSizeOrDate() ? FileExpansion::Detail::Everything
                                                         : FileExpansion::Detail::Identity);
    if (!collected)
        return refuse(ExitStatus::kUsageError, collected.message());
    if (!collected.value() || !m_files.sort(m_recipe))
        return refuse(ExitStatus::kInterrupted, u"interrupted; nothing was renamed"_s);
    for (const TRulePtr &rule : m_recipe.rules)
        console().detail("rule: "_L1 + RuleForms::ruleText(*rule));
    console().detail(counted(total(), "file"_L1, "files"_L1));
    return {};
}

AnalysisPass BatchCommand::analysis(bool colourCode)
{
    return AnalysisPass(m_recipe, m_files.files(), metadataSource(), colourCode);
}

std::unique_ptr<TMetadataSource> BatchCommand::metadataSource()
{
    return m_files.metadataSource(m_recipe.metadataKinds(), m_recipe.imageWish());
}

PreviewOutcome BatchCommand::preview(BatchReport &report)
{
    AnalysisPass pass = analysis(console().hasColour());
    const TRuleList rules = m_recipe.freshRules();
    const std::unique_ptr<TExtensionHandler> handler = m_recipe.extensionHandler->copyForRun();
    ForecastStepper forecast(environment().fileManager,
                             {&rules, handler.get(), m_recipe.options, pass.total()});
    for (const TFileItem &item : m_files.files())
        forecast.announce(item);
    while (!pass.atEnd() && !interrupted() && environment().out.error() == 0) {
        const TAnalysisResult result = pass.step();
        if (interrupted()) // which ends the wait for metadata, so the result may lack it
            break;
        report.batchProblems(pass.lastProblems(), result.errors);
        report.previewed(pass.lastFile(), result,
                         forecast.step(pass.lastFile(), pass.lastMetadata()));
        console().progress().show("Analysing"_L1, pass.done(), pass.total());
    }
    const bool refused = pass.criticals() > 0 || m_recipe.rules.empty();
    return {pass.total(),      pass.warnings(), pass.criticals(),
            m_files.missing(), refused,         interrupted()};
}

int BatchCommand::endInterrupted(BatchReport &report, const PreviewOutcome &outcome)
{
    if (console().isJson())
        report.finish(outcome);
    console().message(u"interrupted before the end of the preview; nothing was renamed"_s);
    return ExitStatus::kInterrupted;
}
