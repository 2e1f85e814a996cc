// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ByteOutput.h"

#include <cerrno>
#include <unistd.h>

namespace {
constexpr qsizetype kBufferSize = qsizetype{64} * 1024;
constexpr std::chrono::milliseconds kLongestWait{50};
} // namespace

void ByteOutput::write(QByteArrayView bytes)
{
    if (m_error != 0)
        return;
    m_buffer.append(bytes);
    if (m_buffer.size() >= kBufferSize ||
        std::chrono::steady_clock::now() - m_lastFlush >= kLongestWait)
        flush();
}

void ByteOutput::flush()
{
    if (m_error == 0 && !m_buffer.isEmpty())
        m_error = writeAll(m_buffer);
    m_buffer.resize(0);
    m_lastFlush = std::chrono::steady_clock::now();
}

int DescriptorOutput::writeAll(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written =
            ::write(m_descriptor, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return errno;
        bytes = bytes.sliced(written);
    }
    return 0;
}
