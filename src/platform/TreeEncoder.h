// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TreeNode.h"

/// Fills one node while its object is encoded. Lives on the stack; the node is not owned.
class TreeEncoder : public TEncoder
{
public:
    explicit TreeEncoder(TreeArchive::Node &node)
        : m_node(node)
    {
    }

    void encodeBool(QLatin1StringView key, bool value) override;
    void encodeInteger(QLatin1StringView key, qint64 value) override;
    void encodeString(QLatin1StringView key, const QString &value) override;
    void encodeData(QLatin1StringView key, const QByteArray &value) override;
    void encodeDate(QLatin1StringView key, TDate value) override;
    void encodeUrl(QLatin1StringView key, const QString &base, const QString &relative) override;
    void encodeTable(QLatin1StringView key, const TStringTablePtr &table) override;
    void encodeVariant(QLatin1StringView key, const QVariant &value) override;
    void encodeObject(QLatin1StringView key, TArchiveClass type, const Encode &encode) override;
    void encodeDictionary(QLatin1StringView key, const Encode &encode) override;
    void encodeArray(QLatin1StringView key, qsizetype count,
                     const std::function<TArchiveClass(qsizetype)> &typeAt,
                     const EncodeElement &encode) override;

private:
    void add(QLatin1StringView key, TreeArchive::Node::Value value);

    TreeArchive::Node &m_node;
};
