// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/MediaFormat.h"

#include "readers/Id3v2Places.h"
#include "readers/MpegSync.h"

#include <QByteArrayView>

#include <algorithm>

namespace {

struct Signature
{
    int at;
    int secondAt;
    QByteArrayView bytes;
    QByteArrayView second;
    MediaFormat format;
};

/// A literal that may hold NUL bytes.
template <size_t Size>
constexpr QByteArrayView bytes(const char (&literal)[Size])
{
    return QByteArrayView(literal, static_cast<qsizetype>(Size - 1));
}

constexpr MediaFormat kMp4 = {MediaFamily::Mp4, "mov"};
constexpr MediaFormat kMpegTransport = {MediaFamily::Libav, "mpegts"};

constexpr Signature kSignatures[] = {
    {0, 0, bytes("fLaC"), {}, {MediaFamily::Flac, "flac"}},
    {0, 8, bytes("RIFF"), bytes("WAVE"), {MediaFamily::Wav, "wav"}},
    {0, 8, bytes("RIFF"), bytes("AVI"), {MediaFamily::Libav, "avi"}},
    {0, 8, bytes("RF64"), bytes("WAVE"), {MediaFamily::Libav, "wav"}},
    {0, 8, bytes("BW64"), bytes("WAVE"), {MediaFamily::Libav, "wav"}},
    {0, 0, bytes("riff\x2E\x91\xCF\x11"), {}, {MediaFamily::Libav, "w64"}},
    {0, 8, bytes("FORM"), bytes("AIFF"), {MediaFamily::Aiff, "aiff"}},
    {0, 8, bytes("FORM"), bytes("AIFC"), {MediaFamily::Aiff, "aiff"}},
    {4, 0, bytes("ftyp"), {}, kMp4},
    {4, 0, bytes("moov"), {}, kMp4},
    {4, 0, bytes("mdat"), {}, kMp4},
    {4, 0, bytes("wide"), {}, kMp4},
    {4, 0, bytes("free"), {}, kMp4},
    {4, 0, bytes("skip"), {}, kMp4},
    {4, 0, bytes("pnot"), {}, kMp4},
    {0, 0, bytes("\x30\x26\xB2\x75\x8E\x66\xCF\x11"), {}, {MediaFamily::Asf, "asf"}},
    {0, 0, bytes("MAC "), {}, {MediaFamily::Ape, "ape"}},
    {0, 0, bytes("wvpk"), {}, {MediaFamily::WavPack, "wv"}},
    {0, 0, bytes("MPCK"), {}, {MediaFamily::Musepack, "mpc8"}},
    {0, 0, bytes("MP+"), {}, {MediaFamily::Musepack, "mpc"}},
    {0, 0, bytes("TTA1"), {}, {MediaFamily::TrueAudio, "tta"}},
    {0, 0, bytes("\x1A\x45\xDF\xA3"), {}, {MediaFamily::Libav, "matroska"}},
    {0, 0, bytes("FLV\x01"), {}, {MediaFamily::Libav, "flv"}},
    {0, 0, bytes("caff\0\x01"), {}, {MediaFamily::Libav, "caf"}},
    {0, 0, bytes("#!AMR"), {}, {MediaFamily::Libav, "amr"}},
    {0, 0, bytes(".snd"), {}, {MediaFamily::Libav, "au"}},
    {0, 0, bytes("DSD "), {}, {MediaFamily::Libav, "dsf"}},
    {0, 12, bytes("FRM8"), bytes("DSD "), {MediaFamily::Libav, "iff"}},
    {0, 0, bytes(".RMF"), {}, {MediaFamily::Libav, "rm"}},
    {0, 0, bytes("\x06\x0E\x2B\x34\x02\x05\x01\x01"), {}, {MediaFamily::Libav, "mxf"}},
    {0, 0, bytes("\0\0\x01\xBA"), {}, {MediaFamily::Libav, "mpeg"}},
    {0, 0, bytes("\0\0\x01\xB3"), {}, {MediaFamily::Libav, "mpegvideo"}},
    {0, 0, bytes("\x1F\x07\0"), {}, {MediaFamily::Libav, "dv"}},
    {0, 0, bytes("\x0B\x77"), {}, {MediaFamily::Libav, "ac3"}},
    {0, 0, bytes("\x7F\xFE\x80\x01"), {}, {MediaFamily::Libav, "dts"}},
};

/// How the first packet of an Ogg stream begins; it follows the first page's header.
constexpr Signature kOggStreams[] = {
    {0, 0, bytes("\x01vorbis"), {}, {MediaFamily::Vorbis, "ogg"}},
    {0, 0, bytes("OpusHead"), {}, {MediaFamily::Opus, "ogg"}},
    {0, 0, bytes("\177FLAC"), {}, {MediaFamily::OggFlac, "ogg"}},
    {0, 0, bytes("Speex   "), {}, {MediaFamily::Speex, "ogg"}},
};
constexpr qint64 kOggPageHeader = 27;

/// Sizes of the packets of a transport stream, and where their sync byte stands.
struct TransportPacket
{
    qint64 size;
    qint64 syncAt;
};
constexpr TransportPacket kTransportPackets[] = {{188, 0}, {192, 4}, {204, 0}};
constexpr int kTransportPacketsToSee = 4;

bool matches(ByteSource &source, qint64 start, const Signature &signature)
{
    return source.bytes(start + signature.at, signature.bytes.size()) == signature.bytes &&
           source.bytes(start + signature.secondAt, signature.second.size()) == signature.second;
}

template <size_t Size>
MediaFormat firstMatch(ByteSource &source, qint64 start, const Signature (&signatures)[Size])
{
    const auto found = std::ranges::find_if(
        signatures, [&](const Signature &each) { return matches(source, start, each); });
    return found == std::end(signatures) ? MediaFormat() : found->format;
}

MediaFormat oggFormat(ByteSource &source, qint64 start)
{
    const qint64 segments =
        static_cast<qint64>(source.big(start + kOggPageHeader - 1, 1).value_or(0));
    const MediaFormat known = firstMatch(source, start + kOggPageHeader + segments, kOggStreams);
    return known.family == MediaFamily::None ? MediaFormat{MediaFamily::Libav, "ogg"} : known;
}

bool isTransportStream(ByteSource &source)
{
    return std::ranges::any_of(kTransportPackets, [&](const TransportPacket &packet) {
        for (qint64 i = 0; i < kTransportPacketsToSee; ++i) {
            if (source.bytes(packet.syncAt + i * packet.size, 1) != "G")
                return false;
        }
        return true;
    });
}

bool hasTagAtEnd(ByteSource &source)
{
    const qint64 size = source.size();
    return source.bytes(size - 128, 3) == "TAG" || source.bytes(size - 32, 8) == "APETAGEX" ||
           source.bytes(size - 160, 8) == "APETAGEX";
}

} // namespace

MediaFormat mediaFormatOf(ByteSource &source)
{
    const Id3v2Places tags = id3v2PlacesOf(source);
    const qint64 start = tags.audioStart;
    if (const MediaFormat known = firstMatch(source, start, kSignatures);
        known.family != MediaFamily::None) {
        return known;
    }
    if (source.bytes(start, 4) == "OggS")
        return oggFormat(source, start);
    if (isTransportStream(source))
        return kMpegTransport;
    if (startsWithAdts(source, start))
        return {MediaFamily::Mpeg, "aac"};
    if (start > 0 || !tags.appended.empty() || hasTagAtEnd(source) || hasMpegAudio(source, start))
        return {MediaFamily::Mpeg, nullptr};
    return {};
}
