// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeyedArchiveFile.h"

#include "platform/KeyedArchiveFormat.h"

using namespace Qt::StringLiterals;
using namespace KeyedArchiveFormat;

TResult<KeyedArchiveFile> KeyedArchiveFile::fromData(const QByteArray &data)
{
    using Result = TResult<KeyedArchiveFile>;
    TResult<BinaryPlistReader> plist = BinaryPlistReader::fromData(data);
    if (!plist)
        return Result::failure(plist.message());
    KeyedArchiveFile file(std::move(plist).value());
    const BinaryPlistReader &reader = file.m_plist;
    const PlistItem top = reader.top();
    const auto field = [&reader](const PlistItem &from, QLatin1StringView key, auto type) {
        quint64 hint = 0;
        const bool dictionary = from.type == PlistItem::Type::Dictionary;
        const PlistItem found = dictionary ? reader.find(from, key, hint) : PlistItem();
        return found.type == type ? found : PlistItem();
    };
    const PlistItem archiver = field(top, kArchiverKey, PlistItem::Type::Ascii);
    file.m_objects = field(top, kObjects, PlistItem::Type::Array);
    if (file.m_objects.type != PlistItem::Type::Array || reader.text(archiver) != kArchiver)
        return Result::failure(u"The property list is not a keyed archive."_s);
    const PlistItem roots = field(top, kTop, PlistItem::Type::Dictionary);
    file.m_root = file.resolved(field(roots, kRoot, PlistItem::Type::Uid));
    if (file.m_root.type == PlistItem::Type::Invalid)
        return Result::failure(u"The keyed archive has no root object."_s);
    return file;
}

PlistItem KeyedArchiveFile::resolved(const PlistItem &item) const
{
    PlistItem object;
    if (item.type != PlistItem::Type::Uid)
        return item;
    if (item.count == 0)
        object.type = PlistItem::Type::Null;
    else if (item.count < m_objects.count)
        object = m_plist.item(m_plist.element(m_objects, item.count));
    // An object is never a reference again.
    return object.type == PlistItem::Type::Uid ? PlistItem() : object;
}
