// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Cli.h"
#include "cli/Interrupt.h"
#include "commonprocs/ByteNames.h"
#include "platform/StandardStreams.h"

#include <unistd.h>

int main(int argc, char **argv)
{
    fillClosedStreams();
    Interrupt::ignoreClosedPipes();
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
