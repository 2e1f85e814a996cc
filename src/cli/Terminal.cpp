// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Terminal.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr int kPatience = 100; ///< milliseconds between two looks at the flag

} // namespace

ControllingTerminal::~ControllingTerminal()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool ControllingTerminal::isThere()
{
    if (m_descriptor < 0)
        m_descriptor = ::open("/dev/tty", O_RDONLY | O_CLOEXEC | O_NOCTTY);
    return m_descriptor >= 0;
}

std::optional<QByteArray> ControllingTerminal::readLine()
{
    if (!isThere())
        return {};
    QByteArray line;
    while (!m_interrupted) {
        // A signal may come just before the wait, and then does not end it.
        pollfd input{m_descriptor, POLLIN, 0};
        const int ready = ::poll(&input, 1, kPatience);
        if (ready == 0 || (ready < 0 && errno == EINTR))
            continue;
        char c = 0;
        if (ready < 0 || ::read(m_descriptor, &c, 1) != 1)
            return {};
        if (c == '\n')
            return line;
        line.append(c);
    }
    return {};
}
