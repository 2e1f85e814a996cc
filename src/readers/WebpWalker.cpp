// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"

namespace {

constexpr qint64 kFirstChunk = 12;
constexpr int kMostChunks = 100000;
constexpr qint64 kLargestBlock = qint64{16} * 1024 * 1024;
constexpr int kDepth = 8;

class Walk
{
public:
    explicit Walk(ByteSource &source)
        : m_source(source)
    {
    }

    ImageFacts run()
    {
        m_facts.depth = kDepth;
        m_facts.colorModel = kModelRgb;
        m_facts.hasAlpha = false;
        qint64 at = kFirstChunk;
        for (int i = 0; i < kMostChunks && m_source.contains(at, 8); ++i) {
            const auto size = static_cast<qint64>(number(at + 4, 4));
            readChunk(m_source.bytes(at, 4), at + 8, size);
            at += 8 + size + (size & 1);
        }
        return m_facts;
    }

private:
    void readChunk(const QByteArray &type, qint64 at, qint64 size)
    {
        if (type == "VP8X")
            readExtended(at);
        else if (type == "VP8L" && m_facts.width == 0)
            readLossless(at);
        else if (type == "VP8 " && m_facts.width == 0)
            readLossy(at);
        else if (type == "ALPH")
            m_facts.hasAlpha = true;
        else if (type == "ICCP" && size <= kLargestBlock)
            m_facts.profile = m_source.bytes(at, size);
        else if (type == "EXIF" && size <= kLargestBlock)
            m_facts.exif = withoutPrefix(m_source.bytes(at, size));
    }

    void readExtended(qint64 at)
    {
        m_facts.hasAlpha = (number(at, 1) & 0x10) != 0;
        m_facts.width = static_cast<qint64>(number(at + 4, 3)) + 1;
        m_facts.height = static_cast<qint64>(number(at + 7, 3)) + 1;
    }

    void readLossless(qint64 at)
    {
        const quint64 bits = number(at + 1, 4);
        m_facts.width = static_cast<qint64>(bits & 0x3FFF) + 1;
        m_facts.height = static_cast<qint64>(bits >> 14 & 0x3FFF) + 1;
        m_facts.hasAlpha = (bits >> 28 & 1) != 0;
    }

    void readLossy(qint64 at)
    {
        m_facts.width = static_cast<qint64>(number(at + 6, 2) & 0x3FFF);
        m_facts.height = static_cast<qint64>(number(at + 8, 2) & 0x3FFF);
    }

    /// Some writers keep the prefix of a JPEG segment.
    static QByteArray withoutPrefix(const QByteArray &block)
    {
        return block.startsWith("Exif") ? block.mid(6) : block;
    }

    quint64 number(qint64 at, int bytes) { return m_source.little(at, bytes).value_or(0); }

    ByteSource &m_source;
    ImageFacts m_facts;
};

} // namespace

ImageFacts walkWebp(ByteSource &source)
{
    return Walk(source).run();
}
