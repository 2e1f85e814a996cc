// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/MemorySource.h"

#include <algorithm>
#include <cstring>

qint64 MemorySource::read(qint64 at, char *to, qint64 count)
{
    if (at < 0 || count <= 0 || at >= size())
        return 0;
    const qint64 there = std::min(count, size() - at);
    std::memcpy(to, m_block.constData() + at, static_cast<size_t>(there));
    return there;
}
