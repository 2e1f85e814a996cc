// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TreeDecoder.h"

#include "platform/ArchiveValues.h"

QVariant TreeDecoder::variantOfType(QLatin1StringView key, int type) const
{
    const auto *value = find<QVariant>(key);
    return value != nullptr && value->typeId() == type ? *value : QVariant();
}

QString TreeDecoder::className() const
{
    return m_node.isDictionary() ? QString() : QString::fromLatin1(m_node.type.front());
}

bool TreeDecoder::containsValueForKey(QLatin1StringView key) const
{
    return m_node.find(key) != nullptr;
}

bool TreeDecoder::decodeBool(QLatin1StringView key) const
{
    return decodeInteger(key) != 0;
}

qint64 TreeDecoder::decodeInteger(QLatin1StringView key) const
{
    const auto *value = find<QVariant>(key);
    return value != nullptr ? ArchiveValues::integerFromVariant(*value) : 0;
}

QString TreeDecoder::decodeString(QLatin1StringView key) const
{
    return variantOfType(key, QMetaType::QString).toString();
}

QByteArray TreeDecoder::decodeData(QLatin1StringView key) const
{
    return variantOfType(key, QMetaType::QByteArray).toByteArray();
}

TDate TreeDecoder::decodeDate(QLatin1StringView key) const
{
    return variantOfType(key, qMetaTypeId<TDate>()).value<TDate>();
}

QString TreeDecoder::decodeUrl(QLatin1StringView key) const
{
    const auto *url = find<TreeArchive::Node::Url>(key);
    return url != nullptr ? ArchiveValues::joinedUrl(url->base, url->relative) : QString();
}

TStringTablePtr TreeDecoder::decodeTable(QLatin1StringView key) const
{
    if (const auto *table = find<TStringTablePtr>(key))
        return *table;
    const QVariant list = decodeVariant(key);
    const bool isList = list.typeId() == QMetaType::QVariantList;
    return isList ? ArchiveValues::tableFromList(list.toList()) : nullptr;
}

QVariant TreeDecoder::decodeVariant(QLatin1StringView key) const
{
    const TreeArchive::Node::Value *value = m_node.find(key);
    return value != nullptr ? TreeArchive::Node::toVariant(*value) : QVariant();
}

bool TreeDecoder::decodeObject(QLatin1StringView key, const Decode &decode) const
{
    const auto *node = find<TreeArchive::Node::Pointer>(key);
    if (node == nullptr || (*node)->isDictionary())
        return false;
    decode(TreeDecoder(**node));
    return true;
}

bool TreeDecoder::decodeDictionary(QLatin1StringView key, const Decode &decode) const
{
    if (const auto *node = find<TreeArchive::Node::Pointer>(key)) {
        if (!(*node)->isDictionary())
            return false;
        decode(TreeDecoder(**node));
        return true;
    }
    const QVariant map = variantOfType(key, QMetaType::QVariantMap);
    if (!map.isValid())
        return false;
    const TreeArchive::Node node = TreeArchive::Node::fromVariantMap(map.toMap());
    decode(TreeDecoder(node));
    return true;
}

bool TreeDecoder::decodeArray(QLatin1StringView key, const Decode &decode) const
{
    const auto *elements = find<TreeArchive::Node::Array>(key);
    if (elements == nullptr)
        return find<TStringTablePtr>(key) != nullptr ||
               variantOfType(key, QMetaType::QVariantList).isValid();
    for (const TreeArchive::Node::Pointer &element : *elements)
        decode(TreeDecoder(*element));
    return true;
}
