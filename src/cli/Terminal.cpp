// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Terminal.h"

#include <fcntl.h>
#include <unistd.h>

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
    char c = 0;
    while (::read(m_descriptor, &c, 1) == 1) {
        if (c == '\n')
            return line;
        line.append(c);
    }
    return {};
}
