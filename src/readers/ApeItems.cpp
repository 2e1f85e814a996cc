// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ApeItems.h"

#include "readers/ItemWriter.h"
#include "readers/TagLibText.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kApe = "ape"_L1;

} // namespace

void addApeItems(const TagLib::APE::Tag *tag, MediaReading &reading)
{
    if (!tag)
        return;
    ItemWriter items(reading, kApe);
    const TagLib::APE::ItemListMap &stored = tag->itemListMap();
    for (const TagMeaning &meaning : CommonKeys::ape()) {
        const auto found = stored.find(meaning.key.latin1());
        if (found != stored.end() && found->second.type() == TagLib::APE::Item::Text)
            items.add(meaning, fromTagLib(found->second.values()));
    }
}
