// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PreviewCommand.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kText{
    "Shows what each file would be called, and every problem, without touching anything. The new "
    "name is the one that a run would write, with \"-1\" and so on where a name is taken.\n"
    "Folders stand for all files in them, hidden ones left out; a path that is named itself is "
    "always taken."};

constexpr QLatin1StringView kExamples{
    "tavrin-cli preview --rule 'Text theText=\"Holiday \"' --rule Counter photos/\n"
    "tavrin-cli preview --preset 'Clean up blanks' --sort fileName *.txt\n"
    "find . -name '*.htm' -print0 | tavrin-cli preview --rule Original \\\n"
    "    --extension 'handlingMethod=2 map=htm:html' -0 --files-from -"};

} // namespace

Command::Help PreviewCommand::help() const
{
    return {"preview"_L1, "[recipe] [options] [--] PATH..."_L1,
            "show what each file would be called, and every problem"_L1, kText, kExamples};
}

int PreviewCommand::run(const CommandLine &line)
{
    if (const auto status = understand(line))
        return *status;
    if (const auto status = collect(line))
        return *status;
    const std::unique_ptr<BatchReport> report = BatchReport::make(console());
    const PreviewOutcome outcome = preview(*report);
    if (outcome.interrupted)
        return endInterrupted(*report, outcome);
    report->finish(outcome);
    if (outcome.refused) {
        console().message(recipe().rules.empty()
                              ? u"no rules: give at least one --rule, --preset or --recipe"_s
                              : u"critical problems: a run with this recipe would be refused"_s);
        return ExitStatus::kRefused;
    }
    return outcome.files == 0 || outcome.missing > 0 ? ExitStatus::kIncomplete : ExitStatus::kDone;
}
