// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"
#include "readers/Resolution.h"

#include <cstdlib>

namespace {

constexpr qint64 kInfoAt = 14;
constexpr quint64 kOldHeader = 12;
constexpr quint64 kBitFields = 3;
constexpr quint64 kProfileHeader = 124;
constexpr quint64 kEmbeddedProfile = 0x4D424544;
constexpr quint64 kSrgb = 0x73524742;
constexpr quint64 kLargestProfile = quint64{16} * 1024 * 1024;

int depthOf(quint64 bitsPerPixel)
{
    if (bitsPerPixel == 16)
        return 5;
    return bitsPerPixel > 8 ? 8 : static_cast<int>(bitsPerPixel);
}

} // namespace

ImageFacts readBmpHeader(ByteSource &source)
{
    ImageFacts facts;
    const auto number = [&](qint64 at, int bytes) {
        return source.little(kInfoAt + at, bytes).value_or(0);
    };
    const quint64 size = number(0, 4);
    const bool isOld = size == kOldHeader;
    facts.width = isOld ? static_cast<qint64>(number(4, 2)) : static_cast<qint32>(number(4, 4));
    const qint64 height =
        isOld ? static_cast<qint64>(number(6, 2)) : static_cast<qint32>(number(8, 4));
    facts.height = std::abs(height); // negative for rows from top to bottom
    const quint64 bitsPerPixel = number(isOld ? 10 : 14, 2);
    facts.depth = depthOf(bitsPerPixel);
    facts.isIndexed = bitsPerPixel > 0 && bitsPerPixel <= 8;
    facts.colorModel = kModelRgb;
    const bool hasMasks = size >= 56 && size != 64 && number(16, 4) == kBitFields;
    facts.hasAlpha = hasMasks && number(52, 4) != 0;
    if (!isOld) {
        facts.dpiWidth = dpiOfMetres(static_cast<double>(number(24, 4)));
        facts.dpiHeight = dpiOfMetres(static_cast<double>(number(28, 4)));
    }
    if (size >= kProfileHeader && number(56, 4) == kEmbeddedProfile &&
        number(116, 4) < kLargestProfile)
        facts.profile = source.bytes(kInfoAt + static_cast<qint64>(number(112, 4)),
                                     static_cast<qint64>(number(116, 4)));
    facts.isSrgb = size >= 108 && number(56, 4) == kSrgb;
    return facts;
}
