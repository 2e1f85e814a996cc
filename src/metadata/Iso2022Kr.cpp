// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/Iso2022Kr.h"

#include <utility>

namespace {

constexpr char kShiftOut = 0x0E;
constexpr char kShiftIn = 0x0F;
constexpr char kEighthBit = '\x80';
constexpr QByteArrayView kDesignator{"\x1B$)C", 4};

bool isHalf(char byte)
{
    return byte >= 0x21 && byte <= 0x7E;
}

/// A character or designator that begins the text but does not end in it.
bool isCut(QByteArrayView text, bool shifted)
{
    if (text.front() == kDesignator.front())
        return text.size() < kDesignator.size() && kDesignator.startsWith(text);
    return shifted && text.size() == 1 && isHalf(text.front());
}

} // namespace

QByteArray Iso2022Kr::toEightBit(QByteArrayView bytes, bool last)
{
    const QByteArray text = std::exchange(m_carried, {}).append(bytes);
    QByteArray result;
    result.reserve(text.size());
    for (QByteArrayView rest = text; !rest.isEmpty(); rest = rest.sliced(1)) {
        const char byte = rest.front();
        if (!last && isCut(rest, m_shifted)) {
            m_carried = rest.toByteArray();
            return result;
        }
        if (byte == kShiftOut || byte == kShiftIn) {
            m_shifted = byte == kShiftOut;
        } else if (rest.startsWith(kDesignator)) {
            rest = rest.sliced(kDesignator.size() - 1);
        } else if (m_shifted && isHalf(byte)) {
            m_invalid = rest.size() < 2 || !isHalf(rest[1]);
            if (m_invalid)
                return result;
            result += static_cast<char>(byte | kEighthBit);
            result += static_cast<char>(rest[1] | kEighthBit);
            rest = rest.sliced(1);
        } else {
            m_invalid = (byte & kEighthBit) != 0;
            if (m_invalid)
                return result;
            result += byte;
        }
    }
    return result;
}
