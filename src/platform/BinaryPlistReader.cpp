// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/BinaryPlistReader.h"

#include "platform/BinaryPlistFormat.h"

#include <QtEndian>

#include <bit>
#include <cstring>
#include <limits>

using namespace Qt::StringLiterals;
using namespace BinaryPlistFormat;

namespace {

constexpr quint64 kMaxNumberSize = 8;
constexpr quint64 kMaxObjects = std::numeric_limits<quint32>::max();
constexpr quint8 kLow = 0x0F;

quint64 bigEndian(const uchar *bytes, quint64 size)
{
    if (size == sizeof(quint32))
        return qFromBigEndian<quint32>(bytes);
    quint64 value = 0;
    for (quint64 i = 0; i < size; ++i)
        value = (value << 8U) | bytes[i];
    return value;
}

PlistItem::Type collectionType(quint8 high)
{
    switch (high) {
    case kData:
        return PlistItem::Type::Data;
    case kAscii:
        return PlistItem::Type::Ascii;
    case kUtf16:
        return PlistItem::Type::Utf16;
    case kArray:
        return PlistItem::Type::Array;
    case kDictionary:
        return PlistItem::Type::Dictionary;
    default:
        return PlistItem::Type::Invalid;
    }
}

} // namespace

TResult<BinaryPlistReader> BinaryPlistReader::fromData(const QByteArray &data)
{
    using Result = TResult<BinaryPlistReader>;
    BinaryPlistReader reader;
    reader.m_data = data;
    if (!data.startsWith(QByteArrayView(kMagic, kMagicSize)))
        return Result::failure(u"This is not a binary property list."_s);
    if (reader.fileSize() < kMagicSize + kTrailerSize || !reader.readTrailer())
        return Result::failure(u"The property list is damaged or cut off."_s);
    for (quint64 ref = 0; ref < reader.m_count; ++ref) {
        if (reader.item(ref).type == PlistItem::Type::Invalid)
            return Result::failure(
                u"Object %1 of the property list is damaged or of an unknown kind."_s.arg(ref));
    }
    return reader;
}

bool BinaryPlistReader::readTrailer()
{
    const uchar *trailer = bytes() + fileSize() - kTrailerSize + kTrailerUnused;
    m_offsetSize = trailer[0];
    m_refSize = trailer[1];
    m_count = bigEndian(trailer + 2, 8);
    m_top = bigEndian(trailer + 10, 8);
    const quint64 tableOffset = bigEndian(trailer + 18, 8);
    if (m_offsetSize < 1 || m_offsetSize > kMaxNumberSize || m_refSize < 1 ||
        m_refSize > kMaxNumberSize || m_count > kMaxObjects || m_top >= m_count)
        return false;
    const quint64 tableEnd = fileSize() - kTrailerSize;
    if (tableOffset < kMagicSize || tableOffset > tableEnd ||
        m_count > (tableEnd - tableOffset) / m_offsetSize)
        return false;
    m_end = bytes() + tableOffset;
    return true;
}

quint64 BinaryPlistReader::unitSize(PlistItem::Type type) const
{
    switch (type) {
    case PlistItem::Type::Utf16:
        return 2;
    case PlistItem::Type::Array:
        return m_refSize;
    case PlistItem::Type::Dictionary:
        return 2 * m_refSize;
    default:
        return 1;
    }
}

quint64 BinaryPlistReader::bodySize(const PlistItem &item) const
{
    return item.body != nullptr ? item.count * unitSize(item.type) : 0;
}

PlistItem BinaryPlistReader::item(quint64 ref) const
{
    PlistItem item;
    item.ref = ref;
    if (ref >= m_count)
        return item;
    const quint64 offset = bigEndian(m_end + ref * m_offsetSize, m_offsetSize);
    if (offset < kMagicSize || offset >= static_cast<quint64>(m_end - bytes()))
        return item;
    const uchar *start = bytes() + offset;
    const quint8 marker = *start++;
    item.type = collectionType(marker & ~kLow);
    const bool valid = item.type == PlistItem::Type::Invalid
                           ? readNumber(item, start, marker)
                           : readExtent(item, start, marker & kLow);
    if (!valid)
        item.type = PlistItem::Type::Invalid;
    return item;
}

bool BinaryPlistReader::readExtent(PlistItem &item, const uchar *start, quint8 low) const
{
    item.count = low;
    if (low == kLongCount) {
        if (start == m_end || (*start & ~kLow) != kInteger || (*start & kLow) > 3)
            return false;
        const quint64 size = quint64{1} << (*start++ & kLow);
        if (static_cast<quint64>(m_end - start) < size)
            return false;
        item.count = bigEndian(start, size);
        start += size;
    }
    item.body = start;
    return item.count <= static_cast<quint64>(m_end - start) / unitSize(item.type);
}

bool BinaryPlistReader::readNumber(PlistItem &item, const uchar *start, quint8 marker) const
{
    const quint8 low = marker & kLow;
    const auto left = static_cast<quint64>(m_end - start);
    switch (marker & ~kLow) {
    case kSingleton:
        item.type = marker == kNullByte ? PlistItem::Type::Null : PlistItem::Type::Bool;
        item.integer = marker == kTrueByte ? 1 : 0;
        return marker == kNullByte || marker == kTrueByte || marker == kFalseByte;
    case kUid:
        item.type = PlistItem::Type::Uid;
        if (low >= kMaxNumberSize || left < low + 1U)
            return false;
        item.count = bigEndian(start, low + 1U);
        return true;
    case kInteger: {
        if (low > 4 || left < (quint64{1} << low))
            return false;
        const bool wide = low == 4;
        const quint64 bits = bigEndian(wide ? start + 8 : start, wide ? 8 : quint64{1} << low);
        const quint64 high = wide ? bigEndian(start, 8) : 0;
        const bool isUnsigned = wide && high == 0 && static_cast<qint64>(bits) < 0;
        item.type = isUnsigned ? PlistItem::Type::Unsigned : PlistItem::Type::Integer;
        item.integer = static_cast<qint64>(bits);
        return high == 0 || (~high == 0 && item.integer < 0);
    }
    case kReal:
    case kDate:
        item.type = marker == kDateByte ? PlistItem::Type::Date : PlistItem::Type::Real;
        if (low != 3 && (low != 2 || item.type == PlistItem::Type::Date))
            return false;
        if (left < (quint64{1} << low))
            return false;
        item.real = low == 3 ? std::bit_cast<double>(bigEndian(start, 8))
                             : static_cast<double>(
                                   std::bit_cast<float>(static_cast<quint32>(bigEndian(start, 4))));
        return true;
    default:
        return false;
    }
}

quint64 BinaryPlistReader::element(const PlistItem &array, quint64 index) const
{
    return bigEndian(array.body + index * m_refSize, m_refSize);
}

quint64 BinaryPlistReader::key(const PlistItem &dictionary, quint64 index) const
{
    return element(dictionary, index);
}

quint64 BinaryPlistReader::value(const PlistItem &dictionary, quint64 index) const
{
    return element(dictionary, dictionary.count + index);
}

PlistItem BinaryPlistReader::find(const PlistItem &dictionary, QLatin1StringView key,
                                  quint64 &hint) const
{
    const auto size = static_cast<quint64>(key.size());
    const quint64 count = dictionary.type == PlistItem::Type::Dictionary ? dictionary.count : 0;
    for (quint64 i = 0; i < count; ++i) {
        const quint64 index = (hint + i) % count;
        const PlistItem name = item(this->key(dictionary, index));
        if (name.type != PlistItem::Type::Ascii || name.count != size ||
            std::memcmp(name.body, key.data(), size) != 0)
            continue;
        hint = index + 1;
        return item(value(dictionary, index));
    }
    return {};
}

QString BinaryPlistReader::text(const PlistItem &item)
{
    const auto size = static_cast<qsizetype>(item.count);
    if (!item.isText() || size == 0)
        return u""_s;
    if (item.type == PlistItem::Type::Ascii)
        return QString::fromLatin1(reinterpret_cast<const char *>(item.body), size);
    QString text(size, Qt::Uninitialized);
    qFromBigEndian<char16_t>(item.body, size, text.data());
    return text;
}
