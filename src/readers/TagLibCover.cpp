// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagLibCover.h"

#include "readers/SourceStream.h"

#include <taglib/aifffile.h>
#include <taglib/apefile.h>
#include <taglib/apetag.h>
#include <taglib/asffile.h>
#include <taglib/attachedpictureframe.h>
#include <taglib/flacfile.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpcfile.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/trueaudiofile.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/wavpackfile.h>
#include <taglib/xiphcomment.h>

namespace {

constexpr bool kWithoutProperties = false;
constexpr const char *kApeFront = "COVER ART (FRONT)";
constexpr const char *kAsfPicture = "WM/Picture";

/// Every format counts the kinds of pictures as ID3 does.
constexpr int kFrontCover = TagLib::ID3v2::AttachedPictureFrame::FrontCover;

/// Takes the front cover, or the first of all pictures offered.
class Choice
{
public:
    void offer(const TagLib::ByteVector &picture, int kind)
    {
        if (picture.isEmpty() || (m_kind && (*m_kind == kFrontCover || kind != kFrontCover)))
            return;
        m_picture = picture;
        m_kind = kind;
    }

    QByteArray bytes() const
    {
        return {m_picture.data(), static_cast<qsizetype>(m_picture.size())};
    }

private:
    TagLib::ByteVector m_picture;
    std::optional<int> m_kind;
};

void offer(Choice &choice, const TagLib::ID3v2::Tag *tag)
{
    if (!tag)
        return;
    const TagLib::ID3v2::FrameListMap &frames = tag->frameListMap();
    const auto found = frames.find("APIC");
    if (found == frames.end())
        return;
    for (const TagLib::ID3v2::Frame *frame : found->second) {
        if (const auto *picture = dynamic_cast<const TagLib::ID3v2::AttachedPictureFrame *>(frame))
            choice.offer(picture->picture(), picture->type());
    }
}

void offer(Choice &choice, const TagLib::List<TagLib::FLAC::Picture *> &pictures)
{
    for (const TagLib::FLAC::Picture *picture : pictures)
        choice.offer(picture->data(), picture->type());
}

/// The item's value is the picture's file name, a NUL, and the picture.
void offer(Choice &choice, const TagLib::APE::Tag *tag)
{
    if (!tag)
        return;
    const TagLib::APE::ItemListMap &items = tag->itemListMap();
    const auto found = items.find(kApeFront);
    if (found == items.end() || found->second.type() != TagLib::APE::Item::Binary)
        return;
    const TagLib::ByteVector value = found->second.binaryData();
    if (const int end = value.find('\0'); end >= 0)
        choice.offer(value.mid(static_cast<unsigned int>(end) + 1), kFrontCover);
}

void offer(Choice &choice, const TagLib::ASF::Tag *tag)
{
    if (!tag)
        return;
    const TagLib::ASF::AttributeListMap &attributes = tag->attributeListMap();
    const auto found = attributes.find(kAsfPicture);
    if (found == attributes.end())
        return;
    for (const TagLib::ASF::Attribute &attribute : found->second) {
        const TagLib::ASF::Picture picture = attribute.toPicture();
        if (picture.isValid())
            choice.offer(picture.picture(), picture.type());
    }
}

template <typename File>
void offerOgg(Choice &choice, SourceStream &stream)
{
    File file(&stream, kWithoutProperties);
    if (file.isValid() && file.tag())
        offer(choice, file.tag()->pictureList());
}

template <typename File>
void offerApe(Choice &choice, SourceStream &stream)
{
    File file(&stream, kWithoutProperties);
    if (file.isValid())
        offer(choice, file.APETag());
}

void offerMpeg(Choice &choice, SourceStream &stream)
{
    TagLib::MPEG::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), kWithoutProperties);
    if (!file.isValid())
        return;
    offer(choice, file.ID3v2Tag());
    offer(choice, file.APETag());
}

void offerFlac(Choice &choice, SourceStream &stream)
{
    TagLib::FLAC::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), kWithoutProperties);
    if (!file.isValid())
        return;
    offer(choice, file.pictureList());
    if (file.xiphComment())
        offer(choice, file.xiphComment()->pictureList());
    offer(choice, file.ID3v2Tag());
}

template <typename File>
void offerId3v2(Choice &choice, File &file)
{
    if (file.isValid())
        offer(choice, file.ID3v2Tag());
}

} // namespace

QByteArray coverWithTagLib(ByteSource &source, MediaFamily family)
{
    SourceStream stream(source);
    Choice choice;
    switch (family) {
    case MediaFamily::Mpeg:
        offerMpeg(choice, stream);
        break;
    case MediaFamily::Flac:
        offerFlac(choice, stream);
        break;
    case MediaFamily::Vorbis:
        offerOgg<TagLib::Ogg::Vorbis::File>(choice, stream);
        break;
    case MediaFamily::Opus:
        offerOgg<TagLib::Ogg::Opus::File>(choice, stream);
        break;
    case MediaFamily::OggFlac:
        offerOgg<TagLib::Ogg::FLAC::File>(choice, stream);
        break;
    case MediaFamily::Speex:
        offerOgg<TagLib::Ogg::Speex::File>(choice, stream);
        break;
    case MediaFamily::Wav: {
        TagLib::RIFF::WAV::File file(&stream, kWithoutProperties);
        offerId3v2(choice, file);
        break;
    }
    case MediaFamily::Aiff: {
        TagLib::RIFF::AIFF::File file(&stream, kWithoutProperties);
        if (file.isValid())
            offer(choice, file.tag());
        break;
    }
    case MediaFamily::TrueAudio: {
        TagLib::TrueAudio::File file(&stream, kWithoutProperties);
        offerId3v2(choice, file);
        break;
    }
    case MediaFamily::Asf: {
        TagLib::ASF::File file(&stream, kWithoutProperties);
        if (file.isValid())
            offer(choice, file.tag());
        break;
    }
    case MediaFamily::Ape:
        offerApe<TagLib::APE::File>(choice, stream);
        break;
    case MediaFamily::WavPack:
        offerApe<TagLib::WavPack::File>(choice, stream);
        break;
    case MediaFamily::Musepack:
        offerApe<TagLib::MPC::File>(choice, stream);
        break;
    default:
        break;
    }
    return choice.bytes();
}
