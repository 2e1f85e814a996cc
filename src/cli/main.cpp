// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Cli.h"
#include "cli/Interrupt.h"
#include "commonprocs/ByteNames.h"
#include "platform/StandardStreams.h"
#include "settings/logging.h"

#include <array>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Lines of the engine's log, which come from any thread, one at a time, look like every other
/// message of the program.
void writeLogLine(const QString &line)
{
    constexpr std::array kMarks{"<Warning: > "_L1, "<***Error: > "_L1};
    QStringView text = line;
    for (const QLatin1StringView mark : kMarks)
        if (text.startsWith(mark))
            text = text.sliced(mark.size());
    DescriptorOutput err(STDERR_FILENO, Interrupt::requested());
    err.write(Console::messageLine(text));
    err.flush();
}

} // namespace

int main(int argc, char **argv)
{
    fillClosedStreams();
    Interrupt::ignoreClosedPipes();
    setLogSink(writeLogLine);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(ByteNames::fromBytes(argv[i]));
    DescriptorOutput out(STDOUT_FILENO, Interrupt::requested());
    DescriptorOutput err(STDERR_FILENO, Interrupt::requested());
    ControllingTerminal terminal(Interrupt::requested());
    static DiskFileManager disk; // these two last, for a recovery that hangs keeps them
    static const SystemClock clock;
    CliEnvironment environment{out,  err,   STDIN_FILENO,          terminal,
                               disk, clock, Interrupt::requested()};
    environment.outIsTerminal = ::isatty(STDOUT_FILENO) == 1;
    environment.errIsTerminal = ::isatty(STDERR_FILENO) == 1;
    environment.takeOverSignals = Interrupt::takeOverSignals;
    return Cli::run(arguments, environment);
}
