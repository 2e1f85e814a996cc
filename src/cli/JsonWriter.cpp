// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/JsonWriter.h"

#include "cli/JsonText.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>

#include <cmath>

namespace {

/// Whole numbers stay whole; others are written with as few digits as read back the same.
QByteArray numberText(const QJsonValue &json)
{
    const double number = json.toDouble();
    if (json.toVariant().typeId() == QMetaType::LongLong)
        return QByteArray::number(json.toInteger());
    return std::isfinite(number) ? QByteArray::number(number, 'g', QLocale::FloatingPointShortest)
                                 : QByteArray("null");
}

} // namespace

JsonWriter &JsonWriter::key(const QString &name)
{
    value(name);
    m_bytes.append(':');
    m_afterKey = true;
    return *this;
}

JsonWriter &JsonWriter::value(QStringView text)
{
    separate();
    appendJsonString(m_bytes, text);
    return *this;
}

JsonWriter &JsonWriter::value(qint64 number)
{
    return raw(QByteArray::number(number));
}

JsonWriter &JsonWriter::value(bool flag)
{
    return raw(flag ? "true" : "false");
}

JsonWriter &JsonWriter::null()
{
    return raw("null");
}

JsonWriter &JsonWriter::valueOrNull(const QString &text)
{
    return text.isNull() ? null() : value(text);
}

JsonWriter &JsonWriter::json(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return this->value(value.toBool());
    case QJsonValue::Double:
        return raw(numberText(value));
    case QJsonValue::String:
        return this->value(value.toString());
    case QJsonValue::Array:
        return array(value.toArray());
    case QJsonValue::Object:
        return object(value.toObject());
    default:
        return null();
    }
}

JsonWriter &JsonWriter::array(const QJsonArray &array)
{
    beginArray();
    for (const QJsonValue element : array)
        json(element);
    return endArray();
}

JsonWriter &JsonWriter::object(const QJsonObject &object)
{
    beginObject();
    for (auto it = object.begin(); it != object.end(); ++it)
        key(it.key()).json(it.value());
    return endObject();
}

JsonWriter &JsonWriter::raw(QByteArrayView json)
{
    separate();
    m_bytes.append(json);
    return *this;
}

JsonWriter &JsonWriter::newLine()
{
    m_newLine = true;
    return *this;
}

JsonWriter &JsonWriter::open(char bracket)
{
    separate();
    m_bytes.append(bracket);
    m_hasElements.append(false);
    return *this;
}

JsonWriter &JsonWriter::close(char bracket)
{
    if (std::exchange(m_newLine, false))
        m_bytes.append('\n');
    m_bytes.append(bracket);
    m_hasElements.removeLast();
    return *this;
}

void JsonWriter::separate()
{
    const bool newLine = std::exchange(m_newLine, false);
    if (std::exchange(m_afterKey, false))
        return;
    if (!m_hasElements.isEmpty() && std::exchange(m_hasElements.last(), true))
        m_bytes.append(',');
    if (newLine)
        m_bytes.append('\n');
}
