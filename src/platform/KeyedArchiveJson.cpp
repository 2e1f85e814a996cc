// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeyedArchiveJson.h"

#include "platform/KeyedArchiveFormat.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace KeyedArchiveFormat;

namespace {

constexpr QLatin1StringView kLeftOut{"..."};
/// Values on top of one for each byte of the file, which is more than any archive has in which
/// nothing is referred to twice.
constexpr qsizetype kSpareValues = 65'536;

QJsonValue dateText(TDate date)
{
    if (!date.isSet())
        return {};
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(date.milliseconds(), Qt::UTC);
    return time.toString(Qt::ISODateWithMs);
}

} // namespace

KeyedArchiveJson::KeyedArchiveJson(const KeyedArchiveFile &file, qsizetype maxValues)
    : m_reading(file)
    , m_valuesLeft(
          std::min(maxValues, static_cast<qsizetype>(file.plist().fileSize()) + kSpareValues))
{
}

QJsonValue KeyedArchiveJson::root()
{
    return json(m_reading.file().root(), 1);
}

QJsonValue KeyedArchiveJson::text(const QString &text) const
{
    return text.isNull() ? QJsonValue(kLeftOut) : QJsonValue(text);
}

QJsonValue KeyedArchiveJson::json(const PlistItem &item, int depth)
{
    if (!isGoing() || depth > kMaxDepth + 1)
        return kLeftOut;
    --m_valuesLeft;
    switch (item.type) {
    case PlistItem::Type::Bool:
        return item.integer != 0;
    case PlistItem::Type::Integer:
        return item.integer;
    case PlistItem::Type::Unsigned:
        return static_cast<double>(static_cast<quint64>(item.integer));
    case PlistItem::Type::Real:
        return item.real;
    case PlistItem::Type::Ascii:
    case PlistItem::Type::Utf16:
        return text(m_reading.text(item));
    case PlistItem::Type::Data:
        return QString::fromLatin1(m_reading.data(item).toBase64());
    case PlistItem::Type::Date:
        return dateText(m_reading.date(item));
    case PlistItem::Type::Array:
        return array(item, depth);
    case PlistItem::Type::Dictionary:
        return object(item, depth);
    case PlistItem::Type::Invalid:
    case PlistItem::Type::Null:
    case PlistItem::Type::Uid:
        break;
    }
    return {};
}

QJsonValue KeyedArchiveJson::object(const PlistItem &item, int depth)
{
    switch (m_reading.kind(item)) {
    case KeyedReading::Kind::Array:
        return array(m_reading.references(item, kArrayObjects), depth);
    case KeyedReading::Kind::Dictionary:
        return dictionary(item, depth);
    case KeyedReading::Kind::Date:
        return dateText(m_reading.date(item));
    case KeyedReading::Kind::Url:
        return text(m_reading.url(item));
    case KeyedReading::Kind::Text:
        return text(m_reading.text(item));
    case KeyedReading::Kind::Data:
        return QString::fromLatin1(m_reading.data(item).toBase64());
    case KeyedReading::Kind::None:
    case KeyedReading::Kind::Object:
        break;
    }
    return instance(item, depth);
}

QJsonValue KeyedArchiveJson::array(const PlistItem &references, int depth)
{
    QJsonArray array;
    for (quint64 i = 0; i < references.count && isGoing(); ++i)
        array.append(json(m_reading.object(references, i), depth + 1));
    if (static_cast<quint64>(array.size()) < references.count)
        array.append(kLeftOut);
    return array;
}

QJsonValue KeyedArchiveJson::finished(QMap<QString, QJsonValue> &fields) const
{
    if (!isGoing())
        fields.insert(kLeftOut, kLeftOut);
    // A JSON object keeps its keys sorted, so filling it in order is the only way that stays fast.
    QJsonObject object;
    for (auto field = fields.cbegin(); field != fields.cend(); ++field)
        object.insert(field.key(), field.value());
    return object;
}

QJsonValue KeyedArchiveJson::dictionary(const PlistItem &item, int depth)
{
    QMap<QString, QJsonValue> fields;
    const PlistItem keys = m_reading.references(item, kDictionaryKeys);
    const PlistItem values = m_reading.references(item, kArrayObjects);
    for (quint64 i = 0; i < std::min(keys.count, values.count) && isGoing(); ++i) {
        const QString key = m_reading.text(m_reading.object(keys, i));
        fields.insert(key, json(m_reading.object(values, i), depth + 1));
    }
    return finished(fields);
}

QJsonValue KeyedArchiveJson::instance(const PlistItem &item, int depth)
{
    QMap<QString, QJsonValue> fields;
    const BinaryPlistReader &plist = m_reading.file().plist();
    for (quint64 i = 0; i < item.count && isGoing(); ++i) {
        const QString key = m_reading.text(plist.item(plist.key(item, i)));
        if (key == kClass)
            fields.insert(key, text(m_reading.className(item)));
        else
            fields.insert(key, json(m_reading.file().resolved(plist.value(item, i)), depth + 1));
    }
    return finished(fields);
}
