// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/BinaryPlistReader.h"

/// A property list that is laid out as a keyed archive: its table of objects, and which of them is
/// the root. May be read from any thread.
class KeyedArchiveFile
{
public:
    static TResult<KeyedArchiveFile> fromData(const QByteArray &data);

    const BinaryPlistReader &plist() const { return m_plist; }
    const PlistItem &root() const { return m_root; }
    /// The object that a UID stands for (Null for number 0); any other item as it is.
    PlistItem resolved(const PlistItem &item) const;
    PlistItem resolved(quint64 ref) const { return resolved(m_plist.item(ref)); }

private:
    explicit KeyedArchiveFile(BinaryPlistReader plist)
        : m_plist(std::move(plist))
    {
    }

    BinaryPlistReader m_plist;
    PlistItem m_objects;
    PlistItem m_root;
};
