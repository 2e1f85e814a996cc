// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/FormatHeaders.h"
#include "readers/MemorySource.h"

#include <cstdint>
#include <cstdlib>

/// Counts what a reader asks for, so that one that goes in circles is found at once.
class CountingSource final : public ByteSource
{
public:
    explicit CountingSource(const QByteArray &block)
        : m_block(block)
    {
    }

    qint64 size() const override { return m_block.size(); }
    qint64 read(qint64 at, char *to, qint64 count) override
    {
        constexpr qint64 kReadsPerByte = 64;
        if (++m_reads > 100000 + kReadsPerByte * size())
            std::abort();
        return m_block.read(at, to, count);
    }
    const char *map() override { return m_block.map(); }

private:
    MemorySource m_block;
    qint64 m_reads = 0;
};

/// Any bytes are a picture or none, and describe one of sane numbers in a bounded time.
inline int fuzzWalk(ImageFacts (*walk)(ByteSource &), const uint8_t *data, size_t size)
{
    constexpr qsizetype kLargestBlock = 16 * 1024 * 1024 + 64 * 1024;
    CountingSource source(
        QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    const ImageFacts facts = walk(source);
    const bool isSane = facts.depth >= 0 && facts.exif.size() <= kLargestBlock &&
                        facts.xmp.size() <= kLargestBlock && facts.profile.size() <= kLargestBlock;
    if (!isSane)
        std::abort();
    return 0;
}
