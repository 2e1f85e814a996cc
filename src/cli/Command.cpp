// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Command.h"

#include "cli/HelpText.h"
#include "commonprocs/easyfile.h"

#include <cerrno>

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
        return finish(usageError(line.message()));
    if (line.value().has("help"_L1)) {
        m_console.print(HelpText::forCommand(*this));
        return finish(ExitStatus::kDone);
    }
    if (const TResult<bool> configured = m_console.configure(line.value()); !configured)
        return finish(usageError(configured.message()));
    if (stopsBetweenFiles() && m_environment.takeOverSignals)
        m_environment.takeOverSignals();
    return finish(run(line.value()));
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

int Command::finish(int status)
{
    m_console.flush();
    const int error = m_environment.out.error();
    if (error == 0)
        return status;
    // A reader that leaves early (head) needs no message.
    if (error != EPIPE)
        m_console.message(u"cannot write to standard output: %1"_s.arg(textForErrno(error)));
    return status == ExitStatus::kDone ? ExitStatus::kIncomplete : status;
}
