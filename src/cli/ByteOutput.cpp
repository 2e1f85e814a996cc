// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ByteOutput.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <optional>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qsizetype kBufferSize = qsizetype{64} * 1024;
constexpr std::chrono::milliseconds kLongestWait{50};
constexpr int kPatience = 50;                    ///< milliseconds between two looks at the flag
constexpr std::chrono::milliseconds kGrace{500}; ///< for a reader, once somebody wants to stop
constexpr qsizetype kSureToFit = qsizetype{PIPE_BUF}; ///< what a pipe with room takes at once

bool isFile(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

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

DescriptorOutput::DescriptorOutput(int descriptor, const std::atomic<bool> &interrupted)
    : m_descriptor(descriptor)
    , m_mayBlock(!isFile(descriptor))
    , m_interrupted(interrupted)
{
}

int DescriptorOutput::writeAll(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        if (const int error = m_mayBlock ? waitForRoom() : 0; error != 0)
            return error;
        const qsizetype size = m_mayBlock ? std::min(bytes.size(), kSureToFit) : bytes.size();
        const ssize_t written = ::write(m_descriptor, bytes.data(), static_cast<size_t>(size));
        if (written < 0 && errno != EINTR)
            return errno;
        bytes = bytes.sliced(std::max<ssize_t>(written, 0));
    }
    return 0;
}

int DescriptorOutput::waitForRoom()
{
    std::optional<std::chrono::steady_clock::time_point> asked;
    pollfd room{m_descriptor, POLLOUT, 0};
    while (true) {
        const int ready = ::poll(&room, 1, kPatience);
        if (ready > 0 || (ready < 0 && errno != EINTR))
            return 0; // what is wrong with the descriptor is left for write to say
        const auto now = std::chrono::steady_clock::now();
        if (m_interrupted && now - asked.value_or(now) >= kGrace)
            return ECANCELED;
        if (m_interrupted && !asked)
            asked = now;
    }
}
