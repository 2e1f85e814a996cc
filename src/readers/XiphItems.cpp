// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/XiphItems.h"

#include "readers/ItemWriter.h"
#include "readers/TagLibText.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kVorbis = "vorbis"_L1;

} // namespace

void addXiphItems(const TagLib::Ogg::XiphComment *comment, MediaReading &reading)
{
    if (!comment)
        return;
    ItemWriter items(reading, kVorbis);
    const TagLib::Ogg::FieldListMap &fields = comment->fieldListMap();
    for (const TagMeaning &meaning : CommonKeys::vorbis()) {
        const auto found = fields.find(meaning.key.latin1());
        if (found == fields.end())
            continue;
        for (const TagLib::String &value : found->second)
            items.add(meaning, fromTagLib(value));
    }
}
