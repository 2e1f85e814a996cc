// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/FrameReader.h"

#include "rollback/Checksum.h"

#include <QtEndian>

using namespace JournalFormat;

FrameReader::FrameReader(QIODevice &device)
    : m_device(device)
{
}

bool FrameReader::readPreamble()
{
    const QByteArray start = m_device.read(kPreambleSize);
    m_end = kPreambleSize;
    return start == QByteArrayView(kPreamble, kPreambleSize);
}

bool FrameReader::next(QByteArrayView &payload)
{
    char header[kFrameHeaderSize];
    if (m_device.read(header, kFrameHeaderSize) != kFrameHeaderSize)
        return false;
    const auto length = static_cast<qsizetype>(qFromLittleEndian<quint32>(header));
    if (length == 0 || length > kMaxPayload || qFromLittleEndian<quint32>(header + 4) != m_sequence)
        return false;
    m_payload.resize(length);
    if (m_device.read(m_payload.data(), length) != length)
        return false;
    if (crc32c(m_payload, crc32c({header, 8})) != qFromLittleEndian<quint32>(header + 8))
        return false;
    m_end += kFrameHeaderSize + length;
    ++m_sequence;
    payload = m_payload;
    return true;
}

QByteArrayView FieldReader::take(quint64 size)
{
    if (!m_ok || size > static_cast<quint64>(m_rest.size())) {
        m_ok = false;
        return {};
    }
    const QByteArrayView taken = m_rest.first(static_cast<qsizetype>(size));
    m_rest = m_rest.sliced(taken.size());
    return taken;
}

quint8 FieldReader::byte()
{
    const QByteArrayView taken = take(1);
    return m_ok ? static_cast<quint8>(taken.front()) : quint8{0};
}

quint64 FieldReader::fixed()
{
    const QByteArrayView taken = take(sizeof(quint64));
    return m_ok ? qFromLittleEndian<quint64>(taken.data()) : 0;
}

quint64 FieldReader::varint()
{
    quint64 value = 0;
    for (unsigned shift = 0; shift < 64; shift += 7) {
        const quint8 next = byte();
        value |= static_cast<quint64>(next & 0x7FU) << shift;
        if (next < 0x80U)
            return m_ok ? value : 0;
    }
    m_ok = false;
    return 0;
}

qint64 FieldReader::signedValue()
{
    const quint64 value = varint();
    return static_cast<qint64>((value >> 1U) ^ (~(value & 1U) + 1U));
}

QByteArrayView FieldReader::bytes()
{
    return take(varint());
}
