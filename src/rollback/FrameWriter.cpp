// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/FrameWriter.h"

#include "rollback/Checksum.h"

#include <QtEndian>

#include <algorithm>
#include <cerrno>
#include <unistd.h>

using namespace JournalFormat;

FrameWriter::FrameWriter(int file, quint32 nextSequence)
    : m_buffer(static_cast<std::size_t>(kFrameHeaderSize + kFrameSize))
    , m_at(payload())
    , m_file(file)
    , m_sequence(nextSequence)
{
}

void FrameWriter::writePreamble()
{
    write(kPreamble, kPreambleSize);
}

void FrameWriter::begin(Record kind, qsizetype atMost)
{
    Q_ASSERT(atMost < kMaxRecord);
    const qsizetype needed = atMost + 1;
    if (m_buffer.data() + m_buffer.size() - m_at < needed)
        flush();
    if (m_buffer.data() + m_buffer.size() - m_at < needed) {
        m_buffer.resize(static_cast<std::size_t>(kFrameHeaderSize + needed));
        m_at = payload();
    }
    putByte(static_cast<quint8>(kind));
}

void FrameWriter::putFixed(quint64 value)
{
    qToLittleEndian(value, m_at);
    m_at += sizeof value;
}

void FrameWriter::putVarint(quint64 value)
{
    for (; value >= 0x80U; value >>= 7U)
        putByte(static_cast<quint8>(value | 0x80U));
    putByte(static_cast<quint8>(value));
}

void FrameWriter::putSigned(qint64 value)
{
    putVarint((static_cast<quint64>(value) << 1U) ^ static_cast<quint64>(value >> 63));
}

void FrameWriter::putBytes(QByteArrayView bytes)
{
    putVarint(static_cast<quint64>(bytes.size()));
    m_at = std::copy(bytes.begin(), bytes.end(), m_at);
}

bool FrameWriter::flush()
{
    const qsizetype length = m_at - payload();
    m_at = payload();
    if (length == 0 || m_error != 0)
        return m_error == 0;
    char *const header = m_buffer.data();
    qToLittleEndian(static_cast<quint32>(length), header);
    qToLittleEndian(m_sequence++, header + 4);
    const quint32 sum = crc32c({header, 8});
    qToLittleEndian(crc32c({payload(), length}, sum), header + 8);
    write(header, kFrameHeaderSize + length);
    return m_error == 0;
}

void FrameWriter::write(const char *at, qsizetype size)
{
    while (size > 0 && m_error == 0) {
        const ssize_t count = ::write(m_file, at, static_cast<std::size_t>(size));
        if (count < 0) {
            m_error = errno == EINTR ? 0 : errno;
            continue;
        }
        at += count;
        size -= count;
        m_written += count;
    }
}
