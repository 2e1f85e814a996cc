// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TreeCoder.h"

#include "platform/TreeDecoder.h"
#include "platform/TreeNode.h"

TreeArchive::TreeArchive() = default;
TreeArchive::~TreeArchive() = default;
TreeArchive::TreeArchive(TreeArchive &&) noexcept = default;
TreeArchive &TreeArchive::operator=(TreeArchive &&) noexcept = default;

void TreeArchive::appendObject(TArchiveClass type, const TEncoder::Encode &encode)
{
    m_objects.push_back(Node::encoded(type, encode));
}

qsizetype TreeArchive::count() const
{
    return static_cast<qsizetype>(m_objects.size());
}

void TreeArchive::forEachObject(const TDecoder::Decode &decode) const
{
    for (const std::unique_ptr<Node> &object : m_objects)
        decode(TreeDecoder(*object));
}
