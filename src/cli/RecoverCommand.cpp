// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RecoverCommand.h"

#include "cli/LogsFolder.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kText{
    "Turns the journals that interrupted runs left (a crash, a power cut) into rollback logs, so "
    "that "
    "those runs can be undone. rename and rollback do the same before they start."};

} // namespace

Command::Help RecoverCommand::help() const
{
    return {"recover"_L1, "[--json]"_L1, "make rollback logs of interrupted runs"_L1, kText, {}};
}

OptionGroups RecoverCommand::optionGroups() const
{
    return {Console::commonOptions()};
}

int RecoverCommand::run(const CommandLine &line)
{
    if (!line.words().isEmpty())
        return usageError(
            u"recover takes no arguments, but was given %1"_s.arg(line.words().first()));
    const auto recovered = LogsFolder::recover(environment(), console());
    if (!recovered)
        return ExitStatus::kInterrupted;
    const std::vector<RecoveredRun> &runs = *recovered;
    JsonWriter json;
    json.beginArray();
    for (const RecoveredRun &run : runs) {
        json.newLine().beginObject().key("rollbackLog"_L1);
        json.valueOrNull(run.rollbackLog.isEmpty() ? QString() : run.rollbackLog);
        json.key("files"_L1).value(qint64{run.files});
        json.key("renamed"_L1).value(qint64{run.renamed}).endObject();
        if (!console().isJson() && !run.rollbackLog.isEmpty())
            console().printLine(run.rollbackLog);
    }
    if (console().isJson())
        printJson(json.newLine().endArray());
    const bool failed = std::any_of(runs.begin(), runs.end(),
                                    [](const RecoveredRun &run) { return !run.problem.isEmpty(); });
    return failed ? ExitStatus::kIncomplete : ExitStatus::kDone;
}
