// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"

#include <memory>
#include <vector>

/// An archive that stays in memory: what a keyed archive would hold, as a tree of shared values.
/// Deep copies of rule lists go through it, so that exactly what a file would carry is copied, but
/// texts and tables are shared instead of written out.
class TreeArchive
{
public:
    struct Node;

    TreeArchive();
    ~TreeArchive();
    TreeArchive(TreeArchive &&) noexcept;
    TreeArchive &operator=(TreeArchive &&) noexcept;

    /// Appends one object to the root array.
    void appendObject(TArchiveClass type, const TEncoder::Encode &encode);
    qsizetype count() const;
    /// Calls decode for each object of the root array, in order.
    void forEachObject(const TDecoder::Decode &decode) const;

private:
    std::vector<std::unique_ptr<Node>> m_objects;
};
