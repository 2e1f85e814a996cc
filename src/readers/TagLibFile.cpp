// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagLibFile.h"

#include "readers/ApeItems.h"
#include "readers/AsfItems.h"
#include "readers/Id3Items.h"
#include "readers/Id3v2Places.h"
#include "readers/MemorySource.h"
#include "readers/MpegSync.h"
#include "readers/RiffItems.h"
#include "readers/SourceStream.h"
#include "readers/XiphItems.h"

#include <taglib/apefile.h>
#include <taglib/asffile.h>
#include <taglib/flacfile.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/mpcfile.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/trueaudiofile.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavpackfile.h>

namespace {

using Reading = std::optional<MediaReading>;

constexpr double kMillisecondsPerSecond = 1000;

/// What every kind of file has in common; the kinds' own tags are added by the given function, in
/// the order of the file where nothing else is said: of two values the last one counts. ID3v1 comes
/// first wherever it stands, because it repeats the texts of other blocks cut to 30 letters.
template <typename File, typename AddItems>
Reading readFile(File &file, AddItems addItems)
{
    if (!file.isValid())
        return std::nullopt;
    MediaReading reading;
    if (const auto *properties = file.audioProperties())
        reading.duration = properties->lengthInMilliseconds() / kMillisecondsPerSecond;
    addItems(file, reading);
    return reading;
}

TagLib::ID3v2::FrameFactory *frames()
{
    return TagLib::ID3v2::FrameFactory::instance();
}

/// The blocks that TagLib passes over: it reads the first leading one only.
void addFurtherId3v2Items(TagLib::File &file, const Id3v2Places &places, MediaReading &reading)
{
    std::vector<qint64> further = places.appended;
    if (places.leading.size() > 1)
        further.insert(further.end(), places.leading.rbegin(), places.leading.rend() - 1);
    for (const qint64 at : further) {
        const TagLib::ID3v2::Tag tag(&file, at, frames());
        addId3v2Items(&tag, reading);
    }
}

void addFirstId3v2Items(TagLib::MPEG::File &file, ByteSource &source, MediaReading &reading)
{
    const QByteArray block = id3v2WithoutExtension(source, 0);
    if (block.isEmpty())
        return addId3v2Items(file.ID3v2Tag(), reading);
    MemorySource plain(block);
    SourceStream stream(plain);
    TagLib::MPEG::File blockAlone(&stream, frames(), false);
    addId3v2Items(blockAlone.ID3v2Tag(), reading);
}

/// Without an index in front, TagLib goes by the first frame's bit rate alone.
void correctDuration(TagLib::MPEG::File &file, ByteSource &source, MediaReading &reading)
{
    const TagLib::MPEG::Properties *properties = file.audioProperties();
    if (!properties || properties->xingHeader())
        return;
    const qint64 start = file.firstFrameOffset();
    const qint64 last = file.lastFrameOffset();
    if (start >= 0 && last > start)
        reading.duration = durationOfManyRates(source, start, last).value_or(reading.duration);
}

/// The older metadata formats first, wherever they stand.
Reading readMpeg(SourceStream &stream, ByteSource &source)
{
    TagLib::MPEG::File file(&stream, frames());
    return readFile(file, [&source](TagLib::MPEG::File &mpeg, MediaReading &reading) {
        correctDuration(mpeg, source, reading);
        const Id3v2Places places = id3v2PlacesOf(source);
        addId3v1Items(mpeg, mpeg.ID3v1Tag(), reading);
        addApeItems(mpeg.APETag(), reading);
        addFurtherId3v2Items(mpeg, places, reading);
        addFirstId3v2Items(mpeg, source, reading);
    });
}

Reading readFlac(SourceStream &stream)
{
    TagLib::FLAC::File file(&stream, frames());
    return readFile(file, [](TagLib::FLAC::File &flac, MediaReading &reading) {
        addId3v1Items(flac, flac.ID3v1Tag(), reading);
        addId3v2Items(flac.ID3v2Tag(), reading);
        addXiphItems(flac.xiphComment(), reading);
    });
}

/// Where the footer of an APE block ends the file, perhaps in front of an ID3v1 block.
std::optional<qint64> apeFooterOf(ByteSource &source)
{
    constexpr qint64 kFooter = 32;
    constexpr qint64 kId3v1 = 128;
    for (const qint64 at : {source.size() - kFooter, source.size() - kFooter - kId3v1}) {
        if (source.startsWith(at, "APETAGEX"))
            return at;
    }
    return std::nullopt;
}

/// TagLib does not look for the APE block, which many players write.
Reading readTrueAudio(SourceStream &stream, std::optional<qint64> apeFooter)
{
    TagLib::TrueAudio::File file(&stream, frames());
    return readFile(file, [&](TagLib::TrueAudio::File &trueAudio, MediaReading &reading) {
        addId3v1Items(trueAudio, trueAudio.ID3v1Tag(), reading);
        addId3v2Items(trueAudio.ID3v2Tag(), reading);
        if (apeFooter) {
            const TagLib::APE::Tag tag(&trueAudio, *apeFooter);
            addApeItems(&tag, reading);
        }
    });
}

Reading readWav(SourceStream &stream)
{
    useTextOfUnknownSet();
    WavFile file(&stream);
    return readFile(file, [](WavFile &wav, MediaReading &reading) { wav.addItems(reading); });
}

Reading readAiff(SourceStream &stream)
{
    AiffFile file(&stream);
    return readFile(file, [](AiffFile &aiff, MediaReading &reading) { aiff.addItems(reading); });
}

Reading readAsf(SourceStream &stream)
{
    TagLib::ASF::File file(&stream);
    return readFile(file, [](TagLib::ASF::File &asf, MediaReading &reading) {
        addAsfItems(asf.tag(), reading);
    });
}

/// Ogg streams hold one comment.
template <typename File>
Reading readOgg(SourceStream &stream)
{
    File file(&stream);
    return readFile(file,
                    [](File &ogg, MediaReading &reading) { addXiphItems(ogg.tag(), reading); });
}

/// Formats that end in an APE block and an ID3v1 block.
template <typename File>
Reading readWithApe(SourceStream &stream)
{
    File file(&stream);
    return readFile(file, [](File &tagged, MediaReading &reading) {
        addId3v1Items(tagged, tagged.ID3v1Tag(), reading);
        addApeItems(tagged.APETag(), reading);
    });
}

} // namespace

Reading readWithTagLib(ByteSource &source, MediaFamily family)
{
    SourceStream stream(source);
    switch (family) {
    case MediaFamily::Mpeg:
        return readMpeg(stream, source);
    case MediaFamily::Flac:
        return readFlac(stream);
    case MediaFamily::Vorbis:
        return readOgg<TagLib::Ogg::Vorbis::File>(stream);
    case MediaFamily::Opus:
        return readOgg<TagLib::Ogg::Opus::File>(stream);
    case MediaFamily::OggFlac:
        return readOgg<TagLib::Ogg::FLAC::File>(stream);
    case MediaFamily::Speex:
        return readOgg<TagLib::Ogg::Speex::File>(stream);
    case MediaFamily::Wav:
        return readWav(stream);
    case MediaFamily::Aiff:
        return readAiff(stream);
    case MediaFamily::Asf:
        return readAsf(stream);
    case MediaFamily::Ape:
        return readWithApe<TagLib::APE::File>(stream);
    case MediaFamily::WavPack:
        return readWithApe<TagLib::WavPack::File>(stream);
    case MediaFamily::Musepack:
        return readWithApe<TagLib::MPC::File>(stream);
    case MediaFamily::TrueAudio:
        return readTrueAudio(stream, apeFooterOf(source));
    default:
        return std::nullopt;
    }
}
