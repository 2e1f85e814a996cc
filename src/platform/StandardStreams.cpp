// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/StandardStreams.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

void fillClosedStreams()
{
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) == -1 && errno == EBADF)
            ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}
