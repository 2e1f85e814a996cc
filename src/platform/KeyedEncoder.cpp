// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeyedEncoder.h"

void KeyedEncoder::add(QLatin1StringView key, BinaryPlistWriter::Ref value)
{
    const bool instance = m_form == Form::Instance;
    m_fields.append({instance ? m_writer.key(key) : m_writer.text(QString(key)), value});
}

void KeyedEncoder::encodeBool(QLatin1StringView key, bool value)
{
    add(key, m_form == Form::Instance ? m_writer.plainBool(value) : m_writer.boolean(value));
}

void KeyedEncoder::encodeInteger(QLatin1StringView key, qint64 value)
{
    add(key, m_form == Form::Instance ? m_writer.plainInteger(value) : m_writer.integer(value));
}

void KeyedEncoder::encodeString(QLatin1StringView key, const QString &value)
{
    if (!value.isNull())
        add(key, m_writer.text(value));
}

void KeyedEncoder::encodeData(QLatin1StringView key, const QByteArray &value)
{
    if (!value.isNull())
        add(key, m_writer.data(value));
}

void KeyedEncoder::encodeDate(QLatin1StringView key, TDate value)
{
    if (value.isSet())
        add(key, m_writer.date(value));
}

void KeyedEncoder::encodeUrl(QLatin1StringView key, const QString &base, const QString &relative)
{
    if (!base.isEmpty() || !relative.isEmpty())
        add(key, m_writer.url(base, relative));
}

void KeyedEncoder::encodeTable(QLatin1StringView key, const TStringTablePtr &table)
{
    if (table)
        add(key, m_writer.table(*table));
}

void KeyedEncoder::encodeVariant(QLatin1StringView key, const QVariant &value)
{
    if (value.isValid())
        add(key, m_writer.variant(value));
}

void KeyedEncoder::encodeObject(QLatin1StringView key, TArchiveClass type, const Encode &encode)
{
    add(key, m_writer.object(type, encode));
}

void KeyedEncoder::encodeDictionary(QLatin1StringView key, const Encode &encode)
{
    add(key, m_writer.dictionary(encode));
}

void KeyedEncoder::encodeArray(QLatin1StringView key, qsizetype count,
                               const std::function<TArchiveClass(qsizetype)> &typeAt,
                               const EncodeElement &encode)
{
    add(key, m_writer.array(count, typeAt, encode));
}
