// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Cli.h"
#include "cli/Interrupt.h"
#include "commonprocs/ByteNames.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// Fills standard streams that the caller closed, so that no journal or log ever gets their numbers
/// and is written into; using them still fails.
void fillClosedStreams()
{
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) == -1 && errno == EBADF)
            ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

} // namespace

int main(int argc, char **argv)
{
    fillClosedStreams();
    Interrupt::ignoreClosedPipes();
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(ByteNames::fromBytes(argv[i]));
    DescriptorOutput out(STDOUT_FILENO);
    DescriptorOutput err(STDERR_FILENO);
    ControllingTerminal terminal;
    DiskFileManager disk;
    SystemClock clock;
    CliEnvironment environment{out,  err,   STDIN_FILENO,          terminal,
                               disk, clock, Interrupt::requested()};
    environment.outIsTerminal = ::isatty(STDOUT_FILENO) == 1;
    environment.errIsTerminal = ::isatty(STDERR_FILENO) == 1;
    environment.takeOverSignals = Interrupt::takeOverSignals;
    return Cli::run(arguments, environment);
}
