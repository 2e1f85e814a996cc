// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/LogsCommand.h"

#include "cli/LogsFolder.h"
#include "commonprocs/TimeUtils.h"
#include "rollback/RollbackLog.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kText{"Lists the rollback logs of past runs, newest first: date, "
                                  "number of files and path. The number "
                                  "is -1 for a log that cannot be read."};

} // namespace

Command::Help LogsCommand::help() const
{
    return {"logs"_L1, "[--json]"_L1, "list the rollback logs, newest first"_L1, kText, {}};
}

OptionGroups LogsCommand::optionGroups() const
{
    return {Console::commonOptions()};
}

int LogsCommand::run(const CommandLine &line)
{
    if (!line.words().isEmpty())
        return usageError(u"logs takes no arguments, but was given %1"_s.arg(line.words().first()));
    const QString problem = LogsFolder::problem(environment().fileManager);
    if (!problem.isEmpty())
        console().message(problem);
    JsonWriter json;
    json.beginArray();
    for (const SavedRollbackLog &log : savedRollbackLogs(LogsFolder::path())) {
        json.newLine().beginObject();
        json.key("path"_L1).value(log.path).key("name"_L1).value(log.name);
        json.key("date"_L1).value(TimeUtils::iso8601(log.date));
        json.key("files"_L1).value(qint64{log.files}).endObject();
        if (!console().isJson())
            console().printLine(
                u"%1  %2  %3"_s.arg(TimeUtils::iso8601(log.date)).arg(log.files, 7).arg(log.path));
    }
    if (console().isJson())
        printJson(json.newLine().endArray());
    return problem.isEmpty() ? ExitStatus::kDone : ExitStatus::kIncomplete;
}
