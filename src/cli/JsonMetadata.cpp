// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/JsonMetadata.h"

#include "commonprocs/TimeUtils.h"

#include <QVariantMap>

#include <cmath>

namespace {

void appendMap(JsonWriter &json, const QVariantMap &map)
{
    json.beginObject();
    for (auto it = map.begin(); it != map.end(); ++it)
        appendMetadata(json.key(it.key()), it.value());
    json.endObject();
}

void appendList(JsonWriter &json, const QVariantList &list)
{
    json.beginArray();
    for (const QVariant &element : list)
        appendMetadata(json, element);
    json.endArray();
}

void appendNumber(JsonWriter &json, double number)
{
    if (std::isfinite(number))
        json.json(number);
    else
        json.null();
}

} // namespace

void appendMetadata(JsonWriter &json, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        json.value(value.toString());
        break;
    case QMetaType::Bool:
        json.value(value.toBool());
        break;
    case QMetaType::LongLong:
        json.value(value.toLongLong());
        break;
    case QMetaType::ULongLong:
        json.raw(QByteArray::number(value.toULongLong()));
        break;
    case QMetaType::Double:
        appendNumber(json, value.toDouble());
        break;
    case QMetaType::QByteArray:
        json.value(QString::fromLatin1(value.toByteArray().toBase64()));
        break;
    case QMetaType::QVariantList:
        appendList(json, value.toList());
        break;
    case QMetaType::QVariantMap:
        appendMap(json, value.toMap());
        break;
    default:
        if (value.typeId() == qMetaTypeId<TDate>())
            json.value(TimeUtils::iso8601(value.value<TDate>()));
        else
            json.null();
    }
}
