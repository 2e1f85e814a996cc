// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TreeEncoder.h"

#include "platform/ArchiveValues.h"

void TreeEncoder::add(QLatin1StringView key, TreeArchive::Node::Value value)
{
    m_node.fields.push_back({QByteArray(key.data(), key.size()), std::move(value)});
}

void TreeEncoder::encodeBool(QLatin1StringView key, bool value)
{
    add(key, QVariant(value));
}

void TreeEncoder::encodeInteger(QLatin1StringView key, qint64 value)
{
    add(key, QVariant(value));
}

void TreeEncoder::encodeString(QLatin1StringView key, const QString &value)
{
    if (!value.isNull())
        add(key, QVariant(value));
}

void TreeEncoder::encodeData(QLatin1StringView key, const QByteArray &value)
{
    if (!value.isNull())
        add(key, QVariant(value));
}

void TreeEncoder::encodeDate(QLatin1StringView key, TDate value)
{
    if (value.isSet())
        add(key, QVariant::fromValue(value));
}

void TreeEncoder::encodeUrl(QLatin1StringView key, const QString &base, const QString &relative)
{
    if (!base.isEmpty() || !relative.isEmpty())
        add(key, TreeArchive::Node::Url{base, relative});
}

void TreeEncoder::encodeTable(QLatin1StringView key, const TStringTablePtr &table)
{
    if (table)
        add(key, table);
}

void TreeEncoder::encodeVariant(QLatin1StringView key, const QVariant &value)
{
    const QVariant canonical = ArchiveValues::canonical(value);
    if (canonical.isValid())
        add(key, canonical);
}

void TreeEncoder::encodeObject(QLatin1StringView key, TArchiveClass type, const Encode &encode)
{
    add(key, TreeArchive::Node::encoded(type, encode));
}

void TreeEncoder::encodeDictionary(QLatin1StringView key, const Encode &encode)
{
    add(key, TreeArchive::Node::encoded({}, encode));
}

void TreeEncoder::encodeArray(QLatin1StringView key, qsizetype count,
                              const std::function<TArchiveClass(qsizetype)> &typeAt,
                              const EncodeElement &encode)
{
    TreeArchive::Node::Array elements;
    elements.reserve(static_cast<size_t>(count));
    for (qsizetype i = 0; i < count; ++i)
        elements.push_back(TreeArchive::Node::encoded(
            typeAt(i), [&encode, i](TEncoder &coder) { encode(i, coder); }));
    add(key, std::move(elements));
}
