// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CborValues.h"

#include "platform/TDate.h"

#include <QCborStreamWriter>

#include <limits>

namespace {

/// Nanoseconds since 1970 follow; of the numbers that anyone may use.
constexpr auto kDateTag = static_cast<QCborTag>(0x544461);

void writeMap(QCborStreamWriter &writer, const QVariantMap &map)
{
    writer.startMap(static_cast<quint64>(map.size()));
    for (auto it = map.begin(); it != map.end(); ++it) {
        writer.append(it.key());
        CborValues::write(writer, it.value());
    }
    writer.endMap();
}

void writeList(QCborStreamWriter &writer, const QVariantList &list)
{
    writer.startArray(static_cast<quint64>(list.size()));
    for (const QVariant &element : list)
        CborValues::write(writer, element);
    writer.endArray();
}

} // namespace

void CborValues::write(QCborStreamWriter &writer, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return writer.append(value.toString());
    case QMetaType::Bool:
        return writer.append(value.toBool());
    case QMetaType::Int:
    case QMetaType::LongLong:
        return writer.append(value.toLongLong());
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return writer.append(value.toULongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return writer.append(value.toDouble());
    case QMetaType::QByteArray:
        return writer.append(value.toByteArray());
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return writeList(writer, value.toList());
    case QMetaType::QVariantMap:
        return writeMap(writer, value.toMap());
    default:
        break;
    }
    if (value.typeId() != qMetaTypeId<TDate>())
        return writer.append(nullptr);
    writer.append(kDateTag);
    writer.append(value.value<TDate>().nanos);
}

CborReader::CborReader(const QByteArray &bytes)
    : m_size(bytes.size())
    , m_reader(bytes)
{
}

bool CborReader::isAtEnd() const
{
    return m_good && m_depth == 0 && m_reader.currentOffset() == m_size;
}

bool CborReader::want(bool condition)
{
    m_good = m_good && condition;
    return m_good;
}

bool CborReader::countValue()
{
    return want(++m_values <= kMaxValues && m_depth < kMaxDepth);
}

void CborReader::next()
{
    want(m_reader.next());
}

quint64 CborReader::enterArray()
{
    if (!want(m_depth < kMaxDepth && m_reader.isArray() && m_reader.isLengthKnown()))
        return 0;
    const quint64 length = m_reader.length();
    // An element takes a byte at least.
    if (!want(length <= static_cast<quint64>(m_size) && m_reader.enterContainer()))
        return 0;
    ++m_depth;
    return length;
}

void CborReader::enterArray(quint64 size)
{
    want(enterArray() == size);
}

void CborReader::leave()
{
    if (!want(m_depth > 0 && !m_reader.hasNext()))
        return;
    want(m_reader.leaveContainer());
    --m_depth;
}

bool CborReader::skipNull()
{
    if (!m_good || !m_reader.isNull())
        return false;
    next();
    return true;
}

quint64 CborReader::number(quint64 max)
{
    if (!want(m_reader.isUnsignedInteger()))
        return 0;
    const quint64 number = m_reader.toUnsignedInteger();
    next();
    return want(number <= max) ? number : 0;
}

double CborReader::real()
{
    if (!want(m_reader.isDouble()))
        return 0;
    const double number = m_reader.toDouble();
    next();
    return number;
}

template <class Text>
Text CborReader::string(QCborStreamReader::StringResult<Text> (QCborStreamReader::*read)())
{
    // The length is looked at before anything is reserved for it.
    if (!want(m_reader.isLengthKnown() && m_reader.currentStringChunkSize() <= m_size))
        return {};
    Text text;
    auto chunk = (m_reader.*read)();
    while (chunk.status == QCborStreamReader::Ok) {
        text += chunk.data;
        chunk = (m_reader.*read)();
    }
    return want(chunk.status == QCborStreamReader::EndOfString) ? text : Text();
}

QString CborReader::text()
{
    return want(m_reader.isString()) ? string(&QCborStreamReader::readString) : QString();
}

QByteArray CborReader::bytes()
{
    return want(m_reader.isByteArray()) ? string(&QCborStreamReader::readByteArray) : QByteArray();
}

QVariant CborReader::negative()
{
    // What stands there is -1 - n; Qt gives n + 1, which wraps to 0 at the very end.
    const auto size = static_cast<quint64>(m_reader.toNegativeInteger());
    next();
    constexpr quint64 kLargest = quint64{1} << 63;
    if (!want(size > 0 && size <= kLargest))
        return {};
    return static_cast<qint64>(~size + 1);
}

QVariant CborReader::list()
{
    QVariantList list;
    for (quint64 left = enterArray(); left > 0 && m_good; --left)
        list.append(value());
    leave();
    return list;
}

QVariant CborReader::date()
{
    const bool known = m_reader.toTag() == kDateTag;
    next();
    if (!want(known && m_reader.isInteger()))
        return {};
    const QVariant nanos =
        m_reader.isNegativeInteger() ? negative() : number(std::numeric_limits<qint64>::max());
    return QVariant::fromValue(TDate{nanos.toLongLong()});
}

QVariantMap CborReader::map()
{
    if (!want(m_depth < kMaxDepth && m_reader.isMap() && m_reader.isLengthKnown()))
        return {};
    if (!want(m_reader.enterContainer()))
        return {};
    ++m_depth;
    QVariantMap map;
    while (m_good && m_reader.hasNext()) {
        const QString key = text();
        map.insert(key, value());
    }
    leave();
    return map;
}

QVariant CborReader::value()
{
    if (!countValue())
        return {};
    switch (m_reader.type()) {
    case QCborStreamReader::UnsignedInteger: {
        const quint64 size = number();
        if (size <= static_cast<quint64>(std::numeric_limits<qint64>::max()))
            return static_cast<qint64>(size);
        return size;
    }
    case QCborStreamReader::NegativeInteger:
        return negative();
    case QCborStreamReader::String:
        return text();
    case QCborStreamReader::ByteArray:
        return bytes();
    case QCborStreamReader::Array:
        return list();
    case QCborStreamReader::Map:
        return map();
    case QCborStreamReader::Tag:
        return date();
    case QCborStreamReader::Double:
        return real();
    default:
        break;
    }
    if (skipNull())
        return {};
    if (!want(m_reader.isBool()))
        return {};
    const bool flag = m_reader.toBool();
    next();
    return flag;
}
