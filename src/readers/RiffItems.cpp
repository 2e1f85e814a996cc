// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/RiffItems.h"

#include "readers/ByteText.h"
#include "readers/Id3Items.h"
#include "readers/ItemWriter.h"
#include "readers/TagLibText.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kRiff = "riff"_L1;
constexpr auto kAiff = "aiff"_L1;

// The base's destructor is not virtual; the one object is never deleted through it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class InfoText final : public TagLib::RIFF::Info::StringHandler
{
public:
    TagLib::String parse(const TagLib::ByteVector &data) const override
    {
        const QString text = textOfBytes({data.data(), static_cast<qsizetype>(data.size())});
        return {text.toStdString(), TagLib::String::UTF8};
    }
};
#pragma GCC diagnostic pop

bool isId3(const TagLib::ByteVector &chunkName)
{
    return chunkName == "ID3 " || chunkName == "id3 ";
}

bool isAiffText(const TagLib::ByteVector &chunkName)
{
    return std::ranges::any_of(CommonKeys::aiffText(), [&](const TagMeaning &meaning) {
        return chunkName == TagLib::ByteVector(meaning.key.latin1(), 4);
    });
}

void addInfoItems(const TagLib::RIFF::Info::Tag *tag, MediaReading &reading)
{
    if (!tag)
        return;
    ItemWriter items(reading, kRiff);
    const TagLib::RIFF::Info::FieldListMap fields = tag->fieldListMap();
    for (const TagMeaning &meaning : CommonKeys::riffInfo()) {
        const auto found = fields.find(meaning.key.latin1());
        if (found != fields.end())
            items.add(meaning, fromTagLib(found->second));
    }
}

} // namespace

void AiffFile::addItems(MediaReading &reading)
{
    bool hasText = false;
    bool hasId3 = false;
    for (unsigned int i = 0; i < chunkCount(); ++i) {
        const TagLib::ByteVector name = chunkName(i);
        if (isId3(name) && !std::exchange(hasId3, true))
            addId3v2Items(tag(), reading);
        else if (isAiffText(name) && !std::exchange(hasText, true))
            addTextItems(reading);
    }
}

void AiffFile::addTextItems(MediaReading &reading)
{
    ItemWriter items(reading, kAiff);
    for (unsigned int i = 0; i < chunkCount(); ++i) {
        const TagLib::ByteVector name = chunkName(i);
        for (const TagMeaning &meaning : CommonKeys::aiffText()) {
            if (name != TagLib::ByteVector(meaning.key.latin1(), 4))
                continue;
            const TagLib::ByteVector data = chunkData(i);
            items.add(meaning, textOfBytes({data.data(), static_cast<qsizetype>(data.size())}));
        }
    }
}

void WavFile::addItems(MediaReading &reading)
{
    bool hasInfo = false;
    bool hasId3 = false;
    for (unsigned int i = 0; i < chunkCount(); ++i) {
        if (isId3(chunkName(i)) && !std::exchange(hasId3, true))
            addId3v2Items(ID3v2Tag(), reading);
        else if (isInfoList(i) && !std::exchange(hasInfo, true))
            addInfoItems(InfoTag(), reading);
    }
}

bool WavFile::isInfoList(unsigned int chunk)
{
    if (chunkName(chunk) != "LIST")
        return false;
    seek(chunkOffset(chunk));
    return readBlock(4) == "INFO";
}

void useTextOfUnknownSet()
{
    static const InfoText text;
    TagLib::RIFF::Info::Tag::setStringHandler(&text);
}
