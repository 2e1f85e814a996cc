// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"
#include "readers/ImageFormat.h"
#include "readers/MemorySource.h"

#include <algorithm>

namespace {

constexpr qint64 kFirstEntry = 6;
constexpr qint64 kLargestHeader = qint64{64} * 1024;
constexpr quint64 kInfoSize = 40;
/// In front of the bitmaps of files of their own, which those of icons leave out.
constexpr qsizetype kFileHeader = 14;

} // namespace

ImageFacts readIcoHeader(ByteSource &source)
{
    const auto number = [&](qint64 at, int bytes) {
        return static_cast<qint64>(source.little(kFirstEntry + at, bytes).value_or(0));
    };
    const auto edge = [&](qint64 at) { return number(at, 1) == 0 ? 256 : number(at, 1); };
    const qint64 start = number(12, 4);
    const QByteArray picture =
        source.bytes(start, std::clamp<qint64>(source.size() - start, 0,
                                               std::min(number(8, 4), kLargestHeader)));
    MemorySource png(picture);
    if (imageFormatOf(png) == ImageFormat::Png)
        return readPngHeader(png);
    MemorySource bitmap(QByteArray(kFileHeader, '\0') + picture);
    if (bitmap.little(kFileHeader, 4) != kInfoSize)
        return {};
    ImageFacts facts = readBmpHeader(bitmap);
    // The bitmap counts the rows of the mask too, which every icon has.
    facts.width = edge(0);
    facts.height = edge(1);
    facts.hasAlpha = true;
    return facts;
}
