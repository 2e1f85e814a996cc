// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TreeNode.h"

#include "platform/ArchiveValues.h"
#include "platform/TreeEncoder.h"

#include <algorithm>

namespace {

struct ToVariant
{
    QVariant operator()(const QVariant &value) const { return value; }
    QVariant operator()(const TreeArchive::Node::Url &url) const
    {
        return ArchiveValues::joinedUrl(url.base, url.relative);
    }
    QVariant operator()(const TStringTablePtr &table) const
    {
        return ArchiveValues::listFromTable(*table);
    }
    QVariant operator()(const TreeArchive::Node::Pointer &node) const
    {
        return node->isDictionary() ? QVariant(node->toVariantMap()) : QVariant();
    }
    QVariant operator()(const TreeArchive::Node::Array &array) const
    {
        return QVariantList(static_cast<qsizetype>(array.size()));
    }
};

} // namespace

TreeArchive::Node::Pointer TreeArchive::Node::encoded(TArchiveClass type,
                                                      const TEncoder::Encode &encode)
{
    auto node = std::make_unique<Node>();
    node->type = type;
    TreeEncoder encoder(*node);
    encode(encoder);
    return node;
}

TreeArchive::Node TreeArchive::Node::fromVariantMap(const QVariantMap &map)
{
    Node node;
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry)
        node.fields.push_back({entry.key().toLatin1(), ArchiveValues::canonical(entry.value())});
    return node;
}

const TreeArchive::Node::Value *TreeArchive::Node::find(QLatin1StringView key) const
{
    const auto found = std::find_if(fields.begin(), fields.end(), [key](const Field &field) {
        return QLatin1StringView(field.key) == key;
    });
    return found == fields.end() ? nullptr : &found->value;
}

QVariantMap TreeArchive::Node::toVariantMap() const
{
    QVariantMap map;
    for (const Field &field : fields) {
        const QVariant value = toVariant(field.value);
        if (value.isValid())
            map.insert(QString::fromLatin1(field.key), value);
    }
    return map;
}

QVariant TreeArchive::Node::toVariant(const Value &value)
{
    return std::visit(ToVariant{}, value);
}
