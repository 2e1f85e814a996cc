// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/Id3v2Places.h"

#include <algorithm>

namespace {

constexpr size_t kMostLeading = 8;
constexpr qint64 kHeader = 10; // a footer has the same size
constexpr quint64 kHasFooter = 0x10;
constexpr qint64 kId3v1Size = 128;

/// The size of the block between header and footer; four times seven bits.
qint64 bodySize(ByteSource &source, qint64 header)
{
    const quint64 size = source.big(header + 6, 4).value_or(0);
    return static_cast<qint64>((size & 0x7F) | (size >> 8 & 0x7F) << 7 | (size >> 16 & 0x7F) << 14 |
                               (size >> 24 & 0x7F) << 21);
}

qint64 sizeOf(ByteSource &source, qint64 header)
{
    const bool hasFooter = (source.big(header + 5, 1).value_or(0) & kHasFooter) != 0;
    return kHeader + bodySize(source, header) + (hasFooter ? kHeader : 0);
}

} // namespace

Id3v2Places id3v2PlacesOf(ByteSource &source)
{
    Id3v2Places places;
    while (places.leading.size() < kMostLeading && source.startsWith(places.audioStart, "ID3")) {
        places.leading.push_back(places.audioStart);
        places.audioStart += sizeOf(source, places.audioStart);
    }
    for (const qint64 end : {source.size(), source.size() - kId3v1Size}) {
        const qint64 footer = end - kHeader;
        if (!source.startsWith(footer, "3DI"))
            continue;
        const qint64 start = footer - bodySize(source, footer) - kHeader;
        if (start >= places.audioStart && source.startsWith(start, "ID3"))
            places.appended.push_back(start);
    }
    return places;
}
