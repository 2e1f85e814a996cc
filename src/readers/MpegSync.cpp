// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/MpegSync.h"

#include <QtEndian>

#include <algorithm>
#include <optional>

namespace {

constexpr int kFramesToSee = 3;
constexpr qint64 kFarthestFrame = qint64{64} * 1024;

/// Kilobits a second by index: version 1 layers 1 to 3, version 2 layer 1, version 2 layers 2
/// and 3.
constexpr int kBitRates[5][15] = {
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
};
constexpr int kSampleRates[] = {44100, 48000, 32000};
/// Sync, version, layer and sample rate: the same in every frame of a stream.
constexpr quint32 kLastingBits = 0xFFFE0C00;

struct Frame
{
    qint64 length = 0; ///< in bytes, the header included
    int bitRate = 0;   ///< in kilobits a second
    double seconds = 0;
};

/// The frame that this header starts; nothing when it starts none.
std::optional<Frame> frameOf(quint32 header)
{
    const quint32 version = header >> 19 & 3;
    const quint32 layerBits = header >> 17 & 3;
    const quint32 rateIndex = header >> 12 & 15;
    const quint32 sampleIndex = header >> 10 & 3;
    if (header >> 21 != 0x7FF || version == 1 || layerBits == 0 || rateIndex == 0 ||
        rateIndex == 15 || sampleIndex == 3) {
        return std::nullopt;
    }
    const bool isFirstVersion = version == 3;
    const quint32 layer = 4 - layerBits;
    const int row = static_cast<int>(isFirstVersion ? layer - 1 : layer == 1 ? 3 : 4);
    const int bitRate = kBitRates[row][rateIndex];
    const int sampleRate = kSampleRates[sampleIndex] >> (isFirstVersion ? 0 : version == 2 ? 1 : 2);
    const qint64 padding = header >> 9 & 1;
    const int samples = layer == 1 ? 384 : layer == 3 && !isFirstVersion ? 576 : 1152;
    const qint64 slot = layer == 1 ? 4 : 1; // what lengths are counted in
    const qint64 slots = qint64{bitRate} * 1000 * samples / 8 / slot / sampleRate + padding;
    return Frame{slots * slot, bitRate, samples / static_cast<double>(sampleRate)};
}

std::optional<quint32> headerAt(ByteSource &source, qint64 at)
{
    const std::optional<quint64> header = source.big(at, 4);
    return header ? std::optional(static_cast<quint32>(*header)) : std::nullopt;
}

/// A stream that ends before enough frames were seen must at least begin where it should.
bool framesStartAt(ByteSource &source, qint64 at, bool isExpectedPlace)
{
    const std::optional<quint32> first = headerAt(source, at);
    std::optional<quint32> header = first;
    for (int i = 0; i < kFramesToSee; ++i) {
        if (!header)
            return isExpectedPlace && i > 0;
        const std::optional<Frame> frame = frameOf(*header);
        if (!frame || ((*header ^ *first) & kLastingBits) != 0)
            return false;
        at += frame->length;
        header = headerAt(source, at);
    }
    return true;
}

/// The first place from the start on where frames begin.
std::optional<qint64> placeOfFrames(ByteSource &source, qint64 start, qint64 farthest)
{
    const qint64 count = std::min(farthest, source.size() - start);
    if (count < 4)
        return std::nullopt;
    const QByteArray head = source.bytes(start, count);
    for (qsizetype i = head.indexOf('\xFF'); i >= 0 && i + 4 <= head.size();
         i = head.indexOf('\xFF', i + 1)) {
        if (frameOf(qFromBigEndian<quint32>(head.constData() + i)) &&
            framesStartAt(source, start + i, i == 0)) {
            return start + i;
        }
    }
    return std::nullopt;
}

std::optional<Frame> frameAt(ByteSource &source, qint64 at)
{
    const std::optional<quint32> header = headerAt(source, at);
    return header ? frameOf(*header) : std::nullopt;
}

/// Whether the frames have different bit rates, as far as a few places tell.
bool isOfManyRates(ByteSource &source, qint64 start, qint64 end, int rate)
{
    constexpr int kPlaces = 8;
    constexpr int kFramesAPlace = 16;
    constexpr qint64 kFarthest = qint64{8} * 1024;
    for (int place = 0; place < kPlaces; ++place) {
        const qint64 from = start + (end - start) / kPlaces * place;
        qint64 at = placeOfFrames(source, from, kFarthest).value_or(end);
        for (int i = 0; i < kFramesAPlace && at < end; ++i) {
            const std::optional<Frame> frame = frameAt(source, at);
            if (!frame)
                break;
            if (frame->bitRate != rate)
                return true;
            at += frame->length;
        }
    }
    return false;
}

} // namespace

bool hasMpegAudio(ByteSource &source, qint64 start)
{
    return placeOfFrames(source, start, kFarthestFrame).has_value();
}

std::optional<double> durationOfManyRates(ByteSource &source, qint64 first, qint64 last)
{
    constexpr int kMostFrames = 50000;
    const std::optional<Frame> frame = frameAt(source, first);
    if (!frame || !isOfManyRates(source, first, last, frame->bitRate))
        return std::nullopt;
    double seconds = 0;
    qint64 at = first;
    for (int i = 0; i < kMostFrames && at <= last; ++i) {
        const std::optional<Frame> next = frameAt(source, at);
        if (!next)
            break;
        seconds += next->seconds;
        at += next->length;
    }
    // What was not seen is like what was.
    const bool isAll = at > last;
    return isAll ? seconds
                 : seconds * static_cast<double>(last - first) / static_cast<double>(at - first);
}

bool startsWithAdts(ByteSource &source, qint64 start)
{
    qint64 at = start;
    for (int i = 0; i < kFramesToSee; ++i) {
        const std::optional<quint64> header = source.big(at, 7);
        if (!header)
            return i > 0 && at == source.size();
        const qint64 length = static_cast<qint64>(*header >> 13 & 0x1FFF);
        if (*header >> 44 != 0xFFF || (*header >> 41 & 3) != 0 || length < 7)
            return false;
        at += length;
    }
    return true;
}
