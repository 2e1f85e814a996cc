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

/// The length of the frame that this header starts; nothing when it starts none.
std::optional<qint64> frameLength(quint32 header)
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
    const qint64 bitRate = qint64{kBitRates[row][rateIndex]} * 1000;
    const qint64 sampleRate = kSampleRates[sampleIndex] >> (isFirstVersion ? 0
                                                            : version == 2 ? 1
                                                                           : 2);
    const qint64 padding = header >> 9 & 1;
    if (layer == 1)
        return (12 * bitRate / sampleRate + padding) * 4;
    return (layer == 3 && !isFirstVersion ? 72 : 144) * bitRate / sampleRate + padding;
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
        const std::optional<qint64> length = frameLength(*header);
        if (!length || ((*header ^ *first) & kLastingBits) != 0)
            return false;
        at += *length;
        header = headerAt(source, at);
    }
    return true;
}

} // namespace

bool hasMpegAudio(ByteSource &source, qint64 start)
{
    const qint64 count = std::min(kFarthestFrame, source.size() - start);
    if (count < 4)
        return false;
    const QByteArray head = source.bytes(start, count);
    for (qsizetype i = head.indexOf('\xFF'); i >= 0 && i + 4 <= head.size();
         i = head.indexOf('\xFF', i + 1)) {
        if (frameLength(qFromBigEndian<quint32>(head.constData() + i)) &&
            framesStartAt(source, start + i, i == 0)) {
            return true;
        }
    }
    return false;
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
