// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"

ImageFacts readTgaHeader(ByteSource &source)
{
    constexpr quint64 kRunLengths = 8; ///< set when the pixels are packed
    constexpr quint64 kAlphaBits = 15;
    enum Kind : quint64 { Indexed = 1, Gray = 3 };
    ImageFacts facts;
    const auto number = [&](qint64 at, int bytes) { return source.little(at, bytes).value_or(0); };
    const quint64 kind = number(2, 1) & ~kRunLengths;
    facts.width = static_cast<qint64>(number(12, 2));
    facts.height = static_cast<qint64>(number(14, 2));
    const quint64 bitsPerPixel = kind == Indexed ? number(7, 1) : number(16, 1);
    facts.depth = kind != Gray && bitsPerPixel <= 16 ? 5 : 8;
    facts.isIndexed = kind == Indexed;
    facts.colorModel = kind == Gray ? kModelGray : kModelRgb;
    facts.hasAlpha = (number(17, 1) & kAlphaBits) != 0;
    return facts;
}
