// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/MatroskaInfo.h"

#include "readers/ByteText.h"
#include "readers/ItemWriter.h"

#include <algorithm>
#include <bit>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kFormat = "matroska"_L1;
constexpr TagMeaning kTitle = {"TITLE"_L1, "title"_L1};
constexpr int kMostElements = 1000;
constexpr int kMostBlocks = 100000;
constexpr int kMostTries = 8;
constexpr qint64 kLongestTitle = 4096;
constexpr qint64 kLongestTail = qint64{8} * 1024 * 1024;
constexpr QByteArrayView kCluster("\x1F\x43\xB6\x75", 4);
constexpr double kNanosecond = 1e-9;
constexpr quint64 kMillisecondScale = 1000000;

enum Id : quint64 {
    Segment = 0x18538067,
    Info = 0x1549A966,
    TimestampScale = 0x2AD7B1,
    Duration = 0x4489,
    Title = 0x7BA9,
    Timestamp = 0xE7,
    BlockGroup = 0xA0,
    Block = 0xA1,
    SimpleBlock = 0xA3
};

struct Element
{
    quint64 id = 0;
    qint64 start = 0;
    qint64 end = 0;
};

/// A number whose first byte tells in its leading zeros how long it is; no bytes when broken.
struct Number
{
    quint64 value = 0;
    int bytes = 0;
};

Number numberAt(ByteSource &source, qint64 at, int longest)
{
    const auto first = static_cast<quint8>(source.big(at, 1).value_or(0));
    const int bytes = std::countl_zero(first) + 1;
    const std::optional<quint64> value =
        bytes <= longest ? source.big(at, bytes) : std::optional<quint64>();
    return value ? Number{*value, bytes} : Number();
}

/// A size that is not known, and one beyond the end, reach to the end.
Element elementAt(ByteSource &source, qint64 at, qint64 end)
{
    const Number id = numberAt(source, at, 4);
    const Number size = numberAt(source, at + id.bytes, 8);
    if (id.bytes == 0 || size.bytes == 0)
        return {};
    const qint64 start = at + id.bytes + size.bytes;
    const quint64 marker = quint64{1} << (7 * size.bytes);
    const auto length = static_cast<qint64>(size.value - marker);
    return {id.value, start, length < end - start ? start + length : end};
}

Element childOf(ByteSource &source, const Element &parent, Id id)
{
    qint64 at = parent.start;
    for (int i = 0; i < kMostElements && at < parent.end; ++i) {
        const Element element = elementAt(source, at, parent.end);
        if (element.id == id)
            return element;
        if (element.id == 0)
            break;
        at = element.end;
    }
    return {};
}

double realOf(ByteSource &source, const Element &element)
{
    const qint64 size = element.end - element.start;
    if (size == 4)
        return std::bit_cast<float>(static_cast<quint32>(source.big(element.start, 4).value_or(0)));
    return size == 8 ? std::bit_cast<double>(source.big(element.start, 8).value_or(0)) : 0;
}

quint64 wholeOf(ByteSource &source, const Element &element, quint64 otherwise)
{
    const auto size = static_cast<int>(std::min<qint64>(element.end - element.start, 8));
    return size > 0 ? source.big(element.start, size).value_or(otherwise) : otherwise;
}

/// How many seconds a tick takes.
double tickOf(ByteSource &source, const Element &info)
{
    const Element scale = childOf(source, info, TimestampScale);
    return static_cast<double>(wholeOf(source, scale, kMillisecondScale)) * kNanosecond;
}

Element infoOf(ByteSource &source)
{
    return childOf(source, childOf(source, {0, 0, source.size()}, Segment), Info);
}

/// The latest time of the blocks, counted from the cluster's; a block tells it behind its track.
int latestTime(ByteSource &source, const Element &cluster)
{
    int latest = 0;
    qint64 at = cluster.start;
    for (int i = 0; i < kMostBlocks && at < cluster.end; ++i) {
        const Element element = elementAt(source, at, cluster.end);
        if (element.id == 0)
            break;
        const Element block = element.id == BlockGroup ? childOf(source, element, Block) : element;
        if (block.id == SimpleBlock || block.id == Block) {
            const int track = numberAt(source, block.start, 8).bytes;
            const quint64 time = source.big(block.start + track, 2).value_or(0);
            latest = std::max<int>(latest, static_cast<qint16>(time));
        }
        at = element.end;
    }
    return latest;
}

} // namespace

std::optional<MediaReading> readMatroskaInfo(ByteSource &source)
{
    const Element info = infoOf(source);
    MediaReading reading;
    reading.duration = realOf(source, childOf(source, info, Duration)) * tickOf(source, info);
    if (!std::isfinite(reading.duration) || reading.duration <= 0)
        return std::nullopt;
    const Element title = childOf(source, info, Title);
    const QByteArray text =
        source.bytes(title.start, std::min(title.end - title.start, kLongestTitle));
    ItemWriter(reading, kFormat).add(kTitle, textOfBytes(text));
    return reading;
}

double matroskaEnd(ByteSource &source)
{
    const qint64 from = std::max<qint64>(0, source.size() - kLongestTail);
    const QByteArray tail = source.bytes(from, source.size() - from);
    qsizetype at = tail.lastIndexOf(kCluster);
    for (int i = 0; i < kMostTries && at >= 0; ++i) {
        const Element cluster = elementAt(source, from + at, source.size());
        const Element start = childOf(source, cluster, Timestamp);
        if (start.id == Timestamp) {
            const auto ticks = static_cast<double>(wholeOf(source, start, 0));
            return (ticks + latestTime(source, cluster)) * tickOf(source, infoOf(source));
        }
        at = at > 0 ? tail.lastIndexOf(kCluster, at - 1) : -1;
    }
    return 0;
}
