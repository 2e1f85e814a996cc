// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FileSource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 kWindowSize = 32 * 1024;

} // namespace

FileSource::FileSource(const QByteArray &path)
{
    // Without O_NONBLOCK the open itself would wait for a pipe's other end.
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0)
        return;
    struct stat facts = {};
    if (::fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        ::close(descriptor);
        return;
    }
    m_descriptor = descriptor;
    m_size = facts.st_size;
}

FileSource::~FileSource()
{
    if (m_mapping)
        ::munmap(m_mapping, static_cast<size_t>(m_size));
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

qint64 FileSource::read(qint64 at, char *to, qint64 count)
{
    if (at < 0 || count <= 0 || at >= m_size)
        return 0;
    if (count > kWindowSize)
        return readFile(at, to, count);
    if (at < m_windowStart || at + count > m_windowStart + m_window.size()) {
        m_window.resize(kWindowSize);
        m_window.resize(readFile(at, m_window.data(), kWindowSize));
        m_windowStart = at;
    }
    const qint64 there = std::min(count, m_windowStart + m_window.size() - at);
    std::memcpy(to, m_window.constData() + (at - m_windowStart), static_cast<size_t>(there));
    return there;
}

const char *FileSource::map()
{
    if (!m_mapping && m_size > 0) {
        void *mapping =
            ::mmap(nullptr, static_cast<size_t>(m_size), PROT_READ, MAP_PRIVATE, m_descriptor, 0);
        m_mapping = mapping == MAP_FAILED ? nullptr : mapping;
    }
    return static_cast<const char *>(m_mapping);
}

qint64 FileSource::readFile(qint64 at, char *to, qint64 count) const
{
    qint64 done = 0;
    while (done < count) {
        const ssize_t got =
            ::pread(m_descriptor, to + done, static_cast<size_t>(count - done), at + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += got;
    }
    return done;
}
