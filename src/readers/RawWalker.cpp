// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/BmffItems.h"
#include "readers/FormatHeaders.h"

#include <algorithm>
#include <functional>

namespace {

constexpr qint64 kMostEntries = 1000;
constexpr int kMostBoxes = 1000;
constexpr int kMostSegments = 100;
constexpr int kTracksInside = 5; ///< how deep the description of a track's samples stands

enum TiffTag : quint64 {
    PanasonicBits = 0x000A,
    BitsPerSample = 0x0102,
    StripOffsets = 0x0111,
    FujiFolder = 0xF000,
    FujiBits = 0xF003
};

/// The folders of a TIFF structure, as far as single numbers go.
class Folders
{
public:
    Folders(ByteSource &source, qint64 start)
        : m_source(source)
        , m_start(start)
        , m_isBig(source.startsWith(start, "MM"))
    {
    }

    qint64 first() { return place(m_start + 4); }
    /// The folder that follows; 0 when there is none.
    qint64 next(qint64 folder) { return folder > 0 ? place(folder + 2 + 12 * count(folder)) : 0; }

    /// The tag's first number; 0 when the folder has no such tag.
    quint64 numberAt(qint64 folder, quint64 wanted)
    {
        constexpr quint64 kShort = 3;
        for (qint64 i = 0; folder > 0 && i < count(folder); ++i) {
            const qint64 entry = folder + 2 + 12 * i;
            if (number(entry, 2) != wanted)
                continue;
            if (number(entry + 2, 2) != kShort)
                return number(entry + 8, 4);
            const bool isInside = number(entry + 4, 4) <= 2;
            return number(isInside ? entry + 8 : place(entry + 8), 2);
        }
        return 0;
    }
    qint64 folderAt(qint64 folder, quint64 tag)
    {
        const quint64 offset = numberAt(folder, tag);
        return offset > 0 ? m_start + static_cast<qint64>(offset) : 0;
    }

private:
    qint64 count(qint64 folder)
    {
        return std::min(static_cast<qint64>(number(folder, 2)), kMostEntries);
    }
    qint64 place(qint64 at)
    {
        const quint64 offset = number(at, 4);
        return offset > 0 ? m_start + static_cast<qint64>(offset) : 0;
    }
    quint64 number(qint64 at, int bytes)
    {
        return (m_isBig ? m_source.big(at, bytes) : m_source.little(at, bytes)).value_or(0);
    }

    ByteSource &m_source;
    qint64 m_start;
    bool m_isBig;
};

/// Bits per sample as the frame of a JPEG states them.
quint64 depthOfJpeg(ByteSource &source, qint64 at)
{
    for (int i = 0; i < kMostSegments; ++i) {
        const quint64 marker = source.big(at, 2).value_or(0);
        const bool isFrame = marker >= 0xFFC0 && marker <= 0xFFCF && marker != 0xFFC4 &&
                             marker != 0xFFC8 && marker != 0xFFCC;
        if (isFrame)
            return source.big(at + 4, 1).value_or(0);
        if (marker < 0xFF01)
            return 0;
        at += 2 + (marker == 0xFFD8 ? 0 : static_cast<qint64>(source.big(at + 2, 2).value_or(0)));
    }
    return 0;
}

quint64 depthOfTiff(ByteSource &source, quint64 tag)
{
    Folders folders(source, 0);
    return folders.numberAt(folders.first(), tag);
}

quint64 depthOfOlympus(ByteSource &source)
{
    return depthOfTiff(source, BitsPerSample);
}

quint64 depthOfPanasonic(ByteSource &source)
{
    return depthOfTiff(source, PanasonicBits);
}

/// The sensor's picture is a JPEG of its own kind in the fourth folder; previews stand before it.
quint64 depthOfCanon2(ByteSource &source)
{
    Folders folders(source, 0);
    qint64 folder = folders.first();
    for (int i = 0; i < 3; ++i)
        folder = folders.next(folder);
    const qint64 strip = folders.folderAt(folder, StripOffsets);
    return strip > 0 ? depthOfJpeg(source, strip) : 0;
}

/// Of several pictures, the widest is the sensor's.
quint64 depthOfCanon3(ByteSource &source)
{
    constexpr const char *kWay[kTracksInside] = {"moov", "trak", "mdia", "minf", "stbl"};
    constexpr qint64 kLargestDescription = qint64{64} * 1024;
    quint64 widest = 0;
    quint64 depth = 0;
    const auto readSamples = [&](const BmffBox &box) {
        const QByteArray description =
            source.bytes(box.start, std::min(box.end - box.start, kLargestDescription));
        const qint64 at = box.start + 4 + description.indexOf("CMP1");
        const quint64 width = source.big(at + 8, 4).value_or(0);
        if (!description.contains("CMP1") || width <= widest)
            return;
        widest = width;
        depth = source.big(at + 24, 1).value_or(0);
    };
    const std::function<void(qint64, qint64, int)> visit = [&](qint64 at, qint64 end, int level) {
        forEachBmffBox(source, at, end, kMostBoxes, [&](const BmffBox &box) {
            if (level < kTracksInside && box.type == kWay[level])
                visit(box.start, box.end, level + 1);
            else if (level == kTracksInside && box.type == "stsd")
                readSamples(box);
            return true;
        });
    };
    visit(0, source.size(), 0);
    return depth;
}

/// Cameras of the last years put the sensor's data into a TIFF structure.
quint64 depthOfFuji(ByteSource &source)
{
    constexpr qint64 kSensorPlace = 100;
    const auto start = static_cast<qint64>(source.big(kSensorPlace, 4).value_or(0));
    if (!source.startsWith(start, "II*") && !source.startsWith(start, "MM"))
        return 0;
    Folders folders(source, start);
    return folders.numberAt(folders.folderAt(folders.first(), FujiFolder), FujiBits);
}

/// The first block describes the sensor.
quint64 depthOfMinolta(ByteSource &source)
{
    constexpr qint64 kFirstBlock = 8;
    const bool isSensor = source.bytes(kFirstBlock, 4) == QByteArrayView("\0PRD", 4);
    return isSensor ? source.big(kFirstBlock + 8 + 17, 1).value_or(0) : 0;
}

struct Kind
{
    qint64 at;
    QByteArrayView signature;
    quint64 (*depth)(ByteSource &);
};

constexpr Kind kKinds[] = {
    {8, {"CR\x02", 3}, depthOfCanon2}, {4, {"ftypcrx ", 8}, depthOfCanon3},
    {0, {"IIRO", 4}, depthOfOlympus},  {0, {"IIRS", 4}, depthOfOlympus},
    {0, {"MMOR", 4}, depthOfOlympus},  {0, {"IIU\0", 4}, depthOfPanasonic},
    {0, {"FUJIFILM", 8}, depthOfFuji}, {0, {"\0MRM", 4}, depthOfMinolta},
};

} // namespace

ImageFacts walkRaw(ByteSource &source)
{
    constexpr quint64 kDeepest = 32;
    ImageFacts facts;
    for (const Kind &kind : kKinds) {
        if (source.bytes(kind.at, kind.signature.size()) != kind.signature)
            continue;
        facts.colorModel = kModelRgb; // the sensors see through coloured filters
        const quint64 depth = kind.depth(source);
        facts.depth = depth <= kDeepest ? static_cast<int>(depth) : 0;
    }
    return facts;
}
