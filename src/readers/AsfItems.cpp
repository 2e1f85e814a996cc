// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/AsfItems.h"

#include "readers/ItemWriter.h"
#include "readers/TagLibText.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kAsf = "asf"_L1;

/// The fields of the content description, which stand outside the list of attributes.
QString described(const TagLib::ASF::Tag &tag, QLatin1String key)
{
    if (key == "Title"_L1)
        return fromTagLib(tag.title());
    if (key == "Author"_L1)
        return fromTagLib(tag.artist());
    if (key == "Copyright"_L1)
        return fromTagLib(tag.copyright());
    return key == "Description"_L1 ? fromTagLib(tag.comment()) : QString();
}

QString textOf(const TagLib::ASF::Attribute &attribute)
{
    using Attribute = TagLib::ASF::Attribute;
    switch (attribute.type()) {
    case Attribute::UnicodeType:
        return fromTagLib(attribute.toString());
    case Attribute::WordType:
        return QString::number(attribute.toUShort());
    case Attribute::DWordType:
        return QString::number(attribute.toUInt());
    case Attribute::QWordType:
        return QString::number(attribute.toULongLong());
    default:
        return {};
    }
}

} // namespace

void addAsfItems(const TagLib::ASF::Tag *tag, MediaReading &reading)
{
    if (!tag)
        return;
    ItemWriter items(reading, kAsf);
    const TagLib::ASF::AttributeListMap &attributes = tag->attributeListMap();
    for (const TagMeaning &meaning : CommonKeys::asf()) {
        items.add(meaning, described(*tag, meaning.key));
        const auto found = attributes.find(meaning.key.latin1());
        if (found == attributes.end())
            continue;
        for (const TagLib::ASF::Attribute &attribute : found->second)
            items.add(meaning, textOf(attribute));
    }
}
