// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/ExitStatus.h"
#include "cli/JsonWriter.h"

/// One verb of the command line. A command is made for one execution; the environment is not owned
/// and must outlive it.
class Command
{
public:
    /// What the help of a verb says. Texts of several lines are wrapped where they are shown.
    struct Help
    {
        QLatin1StringView name;
        QLatin1StringView usage;   ///< what follows the name, one form a line
        QLatin1StringView summary; ///< half a line
        QLatin1StringView text;    ///< paragraphs
        QLatin1StringView examples;
    };

    explicit Command(CliEnvironment &environment);
    Command(const Command &) = delete;
    Command &operator=(const Command &) = delete;
    virtual ~Command() = default;

    virtual Help help() const = 0;
    virtual OptionGroups optionGroups() const = 0;
    /// Reads the arguments after the verb, does the work and returns an exit status.
    int execute(const QStringList &arguments);

protected:
    virtual int run(const CommandLine &line) = 0;
    CliEnvironment &environment() { return m_environment; }
    Console &console() { return m_console; }
    /// From here on the verb looks at interrupted() between two files. Before, signals just end the
    /// program, whatever it may be waiting for.
    void takeOverSignals();
    bool interrupted() const { return m_environment.interrupted.load(); }
    /// Says why nothing is done, also as JSON when that was asked for, and returns the status.
    int refuse(int status, const QString &text);
    /// The same for a line that makes no sense, with a hint where help is.
    int usageError(const QString &text);
    /// Prints a finished JSON document.
    void printJson(const JsonWriter &json);

private:
    CliEnvironment &m_environment;
    Console m_console;
};
