// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TreeNode.h"

/// Reads the fields of one node. Lives on the stack; the node is not owned.
class TreeDecoder : public TDecoder
{
public:
    explicit TreeDecoder(const TreeArchive::Node &node)
        : m_node(node)
    {
    }

    QString className() const override;
    bool containsValueForKey(QLatin1StringView key) const override;
    bool decodeBool(QLatin1StringView key) const override;
    qint64 decodeInteger(QLatin1StringView key) const override;
    QString decodeString(QLatin1StringView key) const override;
    QByteArray decodeData(QLatin1StringView key) const override;
    TDate decodeDate(QLatin1StringView key) const override;
    QString decodeUrl(QLatin1StringView key) const override;
    TStringTablePtr decodeTable(QLatin1StringView key) const override;
    QVariant decodeVariant(QLatin1StringView key) const override;
    bool decodeObject(QLatin1StringView key, const Decode &decode) const override;
    bool decodeDictionary(QLatin1StringView key, const Decode &decode) const override;
    bool decodeArray(QLatin1StringView key, const Decode &decode) const override;

private:
    /// The field when it is of that kind, else null.
    template <typename T>
    const T *find(QLatin1StringView key) const
    {
        return std::get_if<T>(m_node.find(key));
    }
    /// The field's variant when it is of that type, else an invalid one.
    QVariant variantOfType(QLatin1StringView key, int type) const;

    const TreeArchive::Node &m_node;
};
