// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/Checksum.h"

#include <QtEndian>

#include <array>

namespace {

constexpr quint32 kPolynomial = 0x82F63B78U; // bits reversed
constexpr std::size_t kSlices = 8;

using Tables = std::array<std::array<quint32, 256>, kSlices>;

constexpr Tables makeTables()
{
    Tables tables{};
    for (quint32 byte = 0; byte < 256; ++byte) {
        quint32 sum = byte;
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum & 1U) != 0 ? (sum >> 1U) ^ kPolynomial : sum >> 1U;
        tables[0][byte] = sum;
    }
    for (std::size_t slice = 1; slice < kSlices; ++slice)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const quint32 before = tables[slice - 1][byte];
            tables[slice][byte] = (before >> 8U) ^ tables[0][before & 0xFFU];
        }
    return tables;
}

constexpr Tables kTables = makeTables();

/// Eight bytes at once: one look-up a byte in the table of its distance to the end.
quint32 eightBytes(quint32 sum, const char *at)
{
    const quint64 word = qFromLittleEndian<quint64>(at) ^ sum;
    quint32 result = 0;
    for (std::size_t i = 0; i < kSlices; ++i)
        result ^= kTables[kSlices - 1 - i][(word >> (8 * i)) & 0xFFU];
    return result;
}

} // namespace

quint32 crc32c(QByteArrayView bytes, quint32 start)
{
    quint32 sum = ~start;
    const char *at = bytes.data();
    const char *const end = at + bytes.size();
    for (; end - at >= 8; at += 8)
        sum = eightBytes(sum, at);
    for (; at != end; ++at)
        sum = (sum >> 8U) ^ kTables[0][(sum ^ static_cast<quint8>(*at)) & 0xFFU];
    return ~sum;
}
