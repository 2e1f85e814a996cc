// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeyedDecoder.h"

#include "platform/KeyedArchiveFormat.h"

#include <algorithm>

using namespace KeyedArchiveFormat;

KeyedDecoder::KeyedDecoder(KeyedReading &reading, const PlistItem &object, KeyedReading::Kind kind,
                           int depth)
    : m_reading(reading)
    , m_object(object)
    , m_kind(kind)
    , m_depth(depth)
{
    if (kind != KeyedReading::Kind::Dictionary)
        return;
    m_keys = reading.references(object, kDictionaryKeys);
    m_values = reading.references(object, kArrayObjects);
}

void KeyedDecoder::forEachObject(KeyedReading &reading, const PlistItem &array, int depth,
                                 const Decode &decode, quint64 first, quint64 end)
{
    if (depth >= kMaxDepth)
        return;
    const PlistItem elements = reading.references(array, kArrayObjects);
    for (quint64 i = first; i < std::min(end, elements.count) && !reading.isSpent(); ++i) {
        const PlistItem element = reading.object(elements, i);
        const KeyedReading::Kind kind = reading.kind(element);
        if (kind == KeyedReading::Kind::Object)
            decode(KeyedDecoder(reading, element, kind, depth + 1));
    }
}

PlistItem KeyedDecoder::value(QLatin1StringView key) const
{
    if (m_kind != KeyedReading::Kind::Dictionary)
        return m_reading.field(m_object, key, m_hint);
    for (quint64 i = 0; i < std::min({m_keys.count, m_values.count, kMaxFields}); ++i) {
        const PlistItem name = m_reading.object(m_keys, i);
        if (name.type == PlistItem::Type::Ascii &&
            QLatin1StringView(reinterpret_cast<const char *>(name.body),
                              static_cast<qsizetype>(name.count)) == key)
            return m_reading.object(m_values, i);
    }
    return {};
}

QString KeyedDecoder::className() const
{
    const bool dictionary = m_kind == KeyedReading::Kind::Dictionary;
    return dictionary ? QString() : m_reading.className(m_object);
}

bool KeyedDecoder::containsValueForKey(QLatin1StringView key) const
{
    const PlistItem::Type type = value(key).type;
    return type != PlistItem::Type::Invalid && type != PlistItem::Type::Null;
}

bool KeyedDecoder::decodeBool(QLatin1StringView key) const
{
    return decodeInteger(key) != 0;
}

qint64 KeyedDecoder::decodeInteger(QLatin1StringView key) const
{
    return KeyedReading::integer(value(key));
}

QString KeyedDecoder::decodeString(QLatin1StringView key) const
{
    return m_reading.text(value(key));
}

QByteArray KeyedDecoder::decodeData(QLatin1StringView key) const
{
    return m_reading.data(value(key));
}

TDate KeyedDecoder::decodeDate(QLatin1StringView key) const
{
    return m_reading.date(value(key));
}

QString KeyedDecoder::decodeUrl(QLatin1StringView key) const
{
    return m_reading.url(value(key));
}

TStringTablePtr KeyedDecoder::decodeTable(QLatin1StringView key) const
{
    return m_reading.table(value(key));
}

QVariant KeyedDecoder::decodeVariant(QLatin1StringView key) const
{
    return m_reading.variant(value(key), m_depth + 1);
}

bool KeyedDecoder::decodeKind(QLatin1StringView key, KeyedReading::Kind kind,
                              const Decode &decode) const
{
    const PlistItem item = value(key);
    if (m_depth >= kMaxDepth || m_reading.kind(item) != kind)
        return false;
    decode(KeyedDecoder(m_reading, item, kind, m_depth + 1));
    return true;
}

bool KeyedDecoder::decodeObject(QLatin1StringView key, const Decode &decode) const
{
    return decodeKind(key, KeyedReading::Kind::Object, decode);
}

bool KeyedDecoder::decodeDictionary(QLatin1StringView key, const Decode &decode) const
{
    return decodeKind(key, KeyedReading::Kind::Dictionary, decode);
}

bool KeyedDecoder::decodeArray(QLatin1StringView key, const Decode &decode) const
{
    const PlistItem array = value(key);
    if (m_depth >= kMaxDepth || m_reading.kind(array) != KeyedReading::Kind::Array)
        return false;
    forEachObject(m_reading, array, m_depth + 1, decode);
    return true;
}
