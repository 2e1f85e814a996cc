// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/PngChunkFeed.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr qint64 kSignatureSize = 8;
constexpr qint64 kFrameSize = 12; // length, type and checksum
constexpr int kMostChunks = 100000;
constexpr char kEmptyPixels[] = "\0\0\0\0IDAT\x35\xAF\x06\x1E";
// Pixels, frames of animations and the end: nothing to read there.
constexpr const char *kSkipped[] = {"IDAT", "fdAT", "fcTL", "acTL"};

bool isSkipped(const QByteArray &type)
{
    return std::any_of(std::begin(kSkipped), std::end(kSkipped),
                       [&](const char *skipped) { return type == skipped; });
}

} // namespace

PngChunkFeed::PngChunkFeed(ByteSource &source)
    : m_source(source)
    , m_nextChunk(kSignatureSize)
    , m_end(kSignatureSize)
    , m_tail(kEmptyPixels, sizeof(kEmptyPixels) - 1)
{
}

bool PngChunkFeed::read(char *to, qint64 count)
{
    while (count > 0) {
        if (m_position >= m_end && !openNextPiece()) {
            if (m_tail.size() < count)
                return false;
            std::memcpy(to, m_tail.constData(), static_cast<size_t>(count));
            m_tail.remove(0, count);
            return true;
        }
        const qint64 got = m_source.read(m_position, to, std::min(count, m_end - m_position));
        if (got <= 0)
            return false;
        m_position += got;
        to += got;
        count -= got;
    }
    return true;
}

bool PngChunkFeed::openNextPiece()
{
    for (; m_chunks < kMostChunks; ++m_chunks) {
        const auto length = static_cast<qint64>(m_source.big(m_nextChunk, 4).value_or(0));
        const QByteArray type = m_source.bytes(m_nextChunk + 4, 4);
        const qint64 start = m_nextChunk;
        if (type == "IEND" || !m_source.contains(start, kFrameSize + length))
            return false;
        m_nextChunk = start + kFrameSize + length;
        if (isSkipped(type))
            continue;
        m_seen.insert(type);
        m_position = start;
        m_end = m_nextChunk;
        return true;
    }
    return false;
}
