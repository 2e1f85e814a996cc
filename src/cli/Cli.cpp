// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Cli.h"

#include "cli/ArchiveCommand.h"
#include "cli/HelpText.h"
#include "cli/LogsCommand.h"
#include "cli/PresetsCommand.h"
#include "cli/PreviewCommand.h"
#include "cli/RecoverCommand.h"
#include "cli/RenameCommand.h"
#include "cli/RollbackCommand.h"
#include "cli/RulesCommand.h"
#include "cli/SettingValue.h"
#include "cli/TableCommand.h"
#include "cli/TagsCommand.h"

using namespace Qt::StringLiterals;

namespace {

std::vector<Command::Help> helpOf(const std::vector<std::unique_ptr<Command>> &commands)
{
    std::vector<Command::Help> verbs;
    verbs.reserve(commands.size());
    for (const auto &command : commands)
        verbs.push_back(command->help());
    return verbs;
}

int refuseVerb(const QStringList &arguments, CliEnvironment &environment,
               const std::vector<Command::Help> &verbs)
{
    QStringList names;
    for (const Command::Help &verb : verbs)
        names.append(verb.name);
    Console console(environment);
    console.guessForm(arguments);
    const QString text = arguments.isEmpty()
                             ? u"a verb is needed; possible: %1"_s.arg(names.join(u", "_s))
                             : SettingValue::unknownWord(u"verb"_s, arguments.first(), names);
    console.refuse(ExitStatus::kUsageError, text);
    console.message(u"see: tavrin-cli --help"_s);
    console.flush();
    return ExitStatus::kUsageError;
}

int print(CliEnvironment &environment, const QByteArray &text)
{
    Console console(environment);
    console.print(text);
    return console.finish(ExitStatus::kDone);
}

} // namespace

namespace Cli {

std::vector<std::unique_ptr<Command>> commands(CliEnvironment &environment)
{
    std::vector<std::unique_ptr<Command>> all;
    all.push_back(std::make_unique<PreviewCommand>(environment));
    all.push_back(std::make_unique<RenameCommand>(environment));
    all.push_back(std::make_unique<RollbackCommand>(environment));
    all.push_back(std::make_unique<LogsCommand>(environment));
    all.push_back(std::make_unique<RecoverCommand>(environment));
    all.push_back(std::make_unique<TagsCommand>(environment));
    all.push_back(std::make_unique<TableCommand>(environment));
    all.push_back(std::make_unique<PresetsCommand>(environment));
    all.push_back(std::make_unique<RulesCommand>(environment));
    all.push_back(std::make_unique<ArchiveCommand>(environment));
    return all;
}

int run(const QStringList &arguments, CliEnvironment &environment)
{
    const QString verb = arguments.value(0);
    if (verb == "--version"_L1 || verb == "-V"_L1)
        return print(environment, "tavrin-cli " TAVRIN_VERSION "\n");
    const auto all = commands(environment);
    if (verb == "--help"_L1 || verb == "-h"_L1 || (verb == "help"_L1 && arguments.size() == 1))
        return print(environment, HelpText::forProgram(helpOf(all)));
    const bool wantsHelp = verb == "help"_L1;
    const QString wanted = wantsHelp ? arguments[1] : verb;
    for (const auto &command : all) {
        if (command->help().name == wanted)
            return command->execute(wantsHelp ? QStringList{u"--help"_s} : arguments.sliced(1));
    }
    return refuseVerb(wantsHelp ? arguments.sliced(1) : arguments, environment, helpOf(all));
}

} // namespace Cli
