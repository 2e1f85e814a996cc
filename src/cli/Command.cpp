// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Command.h"

#include "cli/HelpText.h"

using namespace Qt::StringLiterals;

Command::Command(CliEnvironment &environment)
    : m_environment(environment)
    , m_console(environment)
{
}

int Command::execute(const QStringList &arguments)
{
    m_console.guessForm(arguments);
    const OptionGroups groups = optionGroups();
    const TResult<CommandLine> line = CommandLine::parse(groups, arguments);
    if (!line)
        return m_console.finish(usageError(line.message()));
    if (line.value().has("help"_L1)) {
        m_console.print(HelpText::forCommand(*this));
        return m_console.finish(ExitStatus::kDone);
    }
    if (const TResult<bool> configured = m_console.configure(line.value()); !configured)
        return m_console.finish(usageError(configured.message()));
    return m_console.finish(run(line.value()));
}

void Command::takeOverSignals()
{
    if (m_environment.takeOverSignals)
        m_environment.takeOverSignals();
}

int Command::refuse(int status, const QString &text)
{
    return m_console.refuse(status, text);
}

int Command::usageError(const QString &text)
{
    const int status = refuse(ExitStatus::kUsageError, text);
    m_console.message(u"see: tavrin-cli %1 --help"_s.arg(help().name));
    return status;
}

void Command::printJson(const JsonWriter &json)
{
    m_console.print(json.bytes());
    m_console.print("\n");
}
