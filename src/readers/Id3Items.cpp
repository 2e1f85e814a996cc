// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/Id3Items.h"

#include "readers/ItemWriter.h"
#include "readers/TagLibText.h"

#include <taglib/textidentificationframe.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kId3v1 = "id3v1"_L1;
constexpr auto kId3v2 = "id3v2"_L1;

QStringList textsOf(const TagLib::ID3v2::Frame *frame)
{
    const auto *text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame *>(frame);
    return text ? fromTagLib(text->fieldList()) : QStringList();
}

/// As it is stored; TagLib makes a number of it.
QString yearOfId3v1(TagLib::File &file)
{
    constexpr int kBlock = 128;
    constexpr int kYear = 93;
    file.seek(-kBlock, TagLib::File::End);
    const TagLib::ByteVector block = file.readBlock(kBlock);
    if (!block.startsWith("TAG"))
        return {};
    const TagLib::ByteVector year = block.mid(kYear, 4);
    return QString::fromLatin1(year.data(),
                               static_cast<qsizetype>(qstrnlen(year.data(), year.size())))
        .trimmed();
}

} // namespace

void addId3v1Items(TagLib::File &file, const TagLib::ID3v1::Tag *tag, MediaReading &reading)
{
    if (!tag)
        return;
    ItemWriter items(reading, kId3v1);
    items.add({"title"_L1, "title"_L1}, fromTagLib(tag->title()));
    items.add({"artist"_L1, "artist"_L1}, fromTagLib(tag->artist()));
    items.add({"album"_L1, "albumName"_L1}, fromTagLib(tag->album()));
    items.add({"year"_L1, "creationDate"_L1}, yearOfId3v1(file));
    items.add({"genre"_L1, CommonKeys::kType}, fromTagLib(tag->genre()));
    items.addNumbers({"track"_L1, CommonKeys::kTrack}, static_cast<int>(tag->track()), 0);
}

void addId3v2Items(const TagLib::ID3v2::Tag *tag, MediaReading &reading)
{
    if (!tag)
        return;
    ItemWriter items(reading, kId3v2);
    const TagLib::ID3v2::FrameListMap &frames = tag->frameListMap();
    for (const TagMeaning &meaning : CommonKeys::id3v2()) {
        const auto found = frames.find(meaning.key.latin1());
        if (found == frames.end())
            continue;
        for (const TagLib::ID3v2::Frame *frame : found->second)
            items.add(meaning, textsOf(frame));
    }
}
