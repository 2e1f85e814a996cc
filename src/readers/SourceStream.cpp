// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/SourceStream.h"

#include <algorithm>

TagLib::ByteVector SourceStream::readBlock(unsigned long length)
{
    const qint64 left = std::max<qint64>(0, m_source.size() - m_at);
    const qint64 count = std::min(left, static_cast<qint64>(std::min(length, 0x7FFFFFFFUL)));
    TagLib::ByteVector block(static_cast<unsigned int>(count), '\0');
    const qint64 got = count > 0 ? m_source.read(m_at, block.data(), count) : 0;
    block.resize(static_cast<unsigned int>(got));
    m_at += got;
    return block;
}

void SourceStream::seek(long offset, Position from)
{
    const qint64 start = from == Beginning ? 0 : from == Current ? m_at : m_source.size();
    qint64 target = 0;
    if (!__builtin_add_overflow(start, offset, &target))
        m_at = std::max<qint64>(0, target);
}
