// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/Mp4Items.h"

#include "readers/BmffItems.h"
#include "readers/ByteText.h"
#include "readers/GenreText.h"
#include "readers/ItemWriter.h"

#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kItunes = "itunes"_L1;
constexpr auto kUserData = "quicktime-userdata"_L1;
constexpr auto kMetadata = "quicktime-metadata"_L1;
constexpr auto kGenreNumber = "gnre"_L1;
constexpr QByteArrayView kNamePrefix = "com.apple.quicktime.";

constexpr qint64 kLongestValue = qint64{256} * 1024;
constexpr int kMostBoxes = 4096;
constexpr qint64 kVersionSize = 4; // one byte of version, three of flags
constexpr qint64 kDataHeader = 8;  // type and locale

enum DataType : quint64 {
    Unstated = 0,
    Utf8 = 1,
    Utf16 = 2,
    SignedInteger = 21,
    UnsignedInteger = 22
};

/// One value of a metadata list.
struct Mp4Data
{
    quint64 type = Unstated;
    QByteArray bytes;
};

using Path = std::initializer_list<QByteArrayView>;

std::vector<BmffBox> boxesIn(ByteSource &source, qint64 start, qint64 end)
{
    std::vector<BmffBox> boxes;
    forEachBmffBox(source, start, end, kMostBoxes, [&boxes](const BmffBox &box) {
        boxes.push_back(box);
        return true;
    });
    return boxes;
}

std::optional<BmffBox> findBox(ByteSource &source, qint64 start, qint64 end, QByteArrayView type)
{
    std::optional<BmffBox> found;
    forEachBmffBox(source, start, end, kMostBoxes, [&](const BmffBox &box) {
        if (box.type == type)
            found = box;
        return !found;
    });
    return found;
}

std::optional<BmffBox> findPath(ByteSource &source, const BmffBox &from, const Path &path)
{
    std::optional<BmffBox> box = from;
    for (const QByteArrayView type : path) {
        if (box)
            box = findBox(source, box->start, box->end, type);
    }
    return box;
}

std::optional<BmffBox> movieBox(ByteSource &source)
{
    return findBox(source, 0, source.size(), "moov");
}

bool isLongVersion(ByteSource &source, const BmffBox &box)
{
    return source.big(box.start, 1).value_or(0) == 1;
}

/// A length in units; all bits set stand for an unknown one.
double seconds(ByteSource &source, qint64 at, int bytes, quint64 unitsPerSecond)
{
    const quint64 unknown = bytes == 8 ? ~quint64(0) : 0xFFFFFFFF;
    const quint64 length = source.big(at, bytes).value_or(0);
    if (unitsPerSecond == 0 || length == unknown)
        return 0;
    return static_cast<double>(length) / static_cast<double>(unitsPerSecond);
}

/// What the movie's header states; for a movie in fragments, what their common header states.
double movieDuration(ByteSource &source, const BmffBox &movie)
{
    const std::optional<BmffBox> header = findPath(source, movie, {"mvhd"});
    if (!header)
        return 0;
    const bool isLong = isLongVersion(source, *header);
    const qint64 unitsAt = header->start + kVersionSize + (isLong ? 16 : 8);
    const quint64 units = source.big(unitsAt, 4).value_or(0);
    const double whole = seconds(source, unitsAt + 4, isLong ? 8 : 4, units);
    const std::optional<BmffBox> fragments = findPath(source, movie, {"mvex", "mehd"});
    if (whole > 0 || !fragments)
        return whole;
    return seconds(source, fragments->start + kVersionSize,
                   isLongVersion(source, *fragments) ? 8 : 4, units);
}

QString utf16Text(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf16BE);
    return decoder.decode(bytes);
}

std::vector<Mp4Data> valuesOf(ByteSource &source, const BmffBox &entry)
{
    std::vector<Mp4Data> values;
    for (const BmffBox &box : boxesIn(source, entry.start, entry.end)) {
        const qint64 size = std::min(box.end - box.start - kDataHeader, kLongestValue);
        if (box.type == "data" && size > 0) {
            values.push_back({source.big(box.start, 4).value_or(0) & 0xFFFFFF,
                              source.bytes(box.start + kDataHeader, size)});
        }
    }
    return values;
}

QString integerText(const QByteArray &bytes, bool isSigned)
{
    quint64 number = isSigned && !bytes.isEmpty() && (bytes.front() & 0x80) != 0 ? ~quint64(0) : 0;
    for (const char byte : bytes.first(std::min<qsizetype>(8, bytes.size())))
        number = number << 8 | static_cast<unsigned char>(byte);
    return isSigned ? QString::number(static_cast<qint64>(number)) : QString::number(number);
}

QString textOf(const Mp4Data &value)
{
    switch (value.type) {
    case Unstated:
    case Utf8:
        return textOfBytes(value.bytes);
    case Utf16:
        return utf16Text(value.bytes);
    case SignedInteger:
    case UnsignedInteger:
        return integerText(value.bytes, value.type == SignedInteger);
    default:
        return {};
    }
}

int shortAt(const QByteArray &bytes, qsizetype at)
{
    return bytes.size() < at + 2 ? 0 : qFromBigEndian<quint16>(bytes.constData() + at);
}

void addItunesValue(ItemWriter &items, const TagMeaning &meaning, const Mp4Data &value)
{
    if (meaning.meaning == CommonKeys::kTrack || meaning.meaning == CommonKeys::kDisc)
        items.addNumbers(meaning, shortAt(value.bytes, 2), shortAt(value.bytes, 4));
    else if (meaning.key == kGenreNumber) // counts from 1
        items.add(meaning, genreName(shortAt(value.bytes, 0) - 1));
    else
        items.add(meaning, textOf(value));
}

void addItunesItems(ByteSource &source, const BmffBox &list, MediaReading &reading)
{
    ItemWriter items(reading, kItunes);
    const std::vector<BmffBox> entries = boxesIn(source, list.start, list.end);
    for (const TagMeaning &meaning : CommonKeys::itunes()) {
        for (const BmffBox &entry : entries) {
            if (meaning.key != QLatin1String(entry.type))
                continue;
            for (const Mp4Data &value : valuesOf(source, entry))
                addItunesValue(items, meaning, value);
        }
    }
}

/// The names that the entries of a metadata list stand for; the entries count them from 1.
QList<QByteArray> namesIn(ByteSource &source, const BmffBox &keys)
{
    QList<QByteArray> names;
    for (const BmffBox &box : boxesIn(source, keys.start + kVersionSize + 4, keys.end)) {
        QByteArray name = source.bytes(box.start, std::min(box.end - box.start, kLongestValue));
        names.append(name.startsWith(kNamePrefix) ? name.sliced(kNamePrefix.size()) : name);
    }
    return names;
}

void addNamedItems(ByteSource &source, const BmffBox &keys, const BmffBox &list,
                   MediaReading &reading)
{
    ItemWriter items(reading, kMetadata);
    const QList<QByteArray> names = namesIn(source, keys);
    const std::vector<BmffBox> entries = boxesIn(source, list.start, list.end);
    for (const TagMeaning &meaning : CommonKeys::quickTimeMetadata()) {
        for (const BmffBox &entry : entries) {
            const quint32 number = qFromBigEndian<quint32>(entry.type.constData());
            if (meaning.key != QLatin1String(names.value(static_cast<qsizetype>(number) - 1)))
                continue;
            for (const Mp4Data &value : valuesOf(source, entry))
                items.add(meaning, textOf(value));
        }
    }
}

/// The metadata box's contents. They begin with a version in MP4, and without one in QuickTime,
/// where the handler comes first.
std::optional<BmffBox> metadataOf(ByteSource &source, const BmffBox &parent)
{
    std::optional<BmffBox> metadata = findPath(source, parent, {"meta"});
    if (metadata && !source.startsWith(metadata->start + 4, "hdlr"))
        metadata->start += kVersionSize;
    return metadata;
}

void addMetadataItems(ByteSource &source, const BmffBox &parent, MediaReading &reading)
{
    const std::optional<BmffBox> metadata = metadataOf(source, parent);
    if (!metadata)
        return;
    const std::optional<BmffBox> list = findPath(source, *metadata, {"ilst"});
    const std::optional<BmffBox> keys = findPath(source, *metadata, {"keys"});
    if (list && keys)
        addNamedItems(source, *keys, *list, reading);
    else if (list)
        addItunesItems(source, *list, reading);
}

/// User data texts have a length and a language each; of several languages the first counts.
QString userDataText(ByteSource &source, const BmffBox &entry)
{
    const qint64 length = static_cast<qint64>(source.big(entry.start, 2).value_or(0));
    const qint64 textAt = entry.start + 4;
    const QByteArray bytes = source.bytes(textAt, std::min(length, entry.end - textAt));
    return bytes.startsWith("\xFE\xFF") ? utf16Text(bytes) : textOfBytes(bytes);
}

void addUserDataItems(ByteSource &source, const BmffBox &userData, MediaReading &reading)
{
    ItemWriter items(reading, kUserData);
    const std::vector<BmffBox> entries = boxesIn(source, userData.start, userData.end);
    for (const TagMeaning &meaning : CommonKeys::quickTimeUserData()) {
        for (const BmffBox &entry : entries) {
            if (meaning.key == QLatin1String(entry.type))
                items.add(meaning, userDataText(source, entry));
        }
    }
}

/// Texts and a list of metadata, in their order.
void addItemsOfUserData(ByteSource &source, const BmffBox &userData, MediaReading &reading)
{
    bool hasTexts = false;
    bool hasMetadata = false;
    for (const BmffBox &box : boxesIn(source, userData.start, userData.end)) {
        if (box.type == "meta" && !std::exchange(hasMetadata, true))
            addMetadataItems(source, userData, reading);
        else if (box.type.startsWith('\xA9') && !std::exchange(hasTexts, true))
            addUserDataItems(source, userData, reading);
    }
}

/// User data and a list of metadata, in their order.
void addItemsOfMovie(ByteSource &source, const BmffBox &movie, MediaReading &reading)
{
    bool hasUserData = false;
    bool hasMetadata = false;
    for (const BmffBox &box : boxesIn(source, movie.start, movie.end)) {
        if (box.type == "meta" && !std::exchange(hasMetadata, true))
            addMetadataItems(source, movie, reading);
        else if (box.type == "udta" && !std::exchange(hasUserData, true))
            addItemsOfUserData(source, box, reading);
    }
}

/// The first picture of a list of iTunes.
QByteArray coverIn(ByteSource &source, const std::optional<BmffBox> &parent, qint64 mostBytes)
{
    const std::optional<BmffBox> metadata = parent ? metadataOf(source, *parent) : std::nullopt;
    const std::optional<BmffBox> data =
        metadata ? findPath(source, *metadata, {"ilst", "covr", "data"}) : std::nullopt;
    const qint64 size = data ? data->end - data->start - kDataHeader : 0;
    return size > 0 && size <= mostBytes ? source.bytes(data->start + kDataHeader, size)
                                         : QByteArray();
}

} // namespace

std::optional<MediaReading> readMp4(ByteSource &source)
{
    const std::optional<BmffBox> movie = movieBox(source);
    if (!movie)
        return std::nullopt;
    MediaReading reading;
    reading.duration = movieDuration(source, *movie);
    addItemsOfMovie(source, *movie, reading);
    return reading;
}

QByteArray mp4Cover(ByteSource &source, qint64 mostBytes)
{
    const std::optional<BmffBox> movie = movieBox(source);
    if (!movie)
        return {};
    const QByteArray cover = coverIn(source, findPath(source, *movie, {"udta"}), mostBytes);
    return cover.isEmpty() ? coverIn(source, movie, mostBytes) : cover;
}
