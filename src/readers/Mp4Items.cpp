// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/Mp4Items.h"

#include "readers/ByteText.h"
#include "readers/GenreText.h"
#include "readers/ItemWriter.h"

#include <QHash>
#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kItunes = "itunes"_L1;
constexpr auto kUserData = "quicktime-userdata"_L1;
constexpr auto kMetadata = "quicktime-metadata"_L1;
constexpr QByteArrayView kNamePrefix = "com.apple.quicktime.";

constexpr qint64 kLongestValue = 256 * 1024;
constexpr quint64 kMostNames = 4096;

enum DataType : quint64 {
    Binary = 0,
    Utf8 = 1,
    Utf16 = 2,
    SignedInteger = 21,
    UnsignedInteger = 22
};

/// One value of a metadata list.
struct Mp4Data
{
    quint64 type = Binary;
    QByteArray bytes;
};

std::optional<Mp4Box> findPath(ByteSource &source, Mp4Box box, std::initializer_list<quint32> path)
{
    for (const quint32 type : path) {
        const std::optional<Mp4Box> inner = findBox(source, box.start, box.end, type);
        if (!inner)
            return std::nullopt;
        box = *inner;
    }
    return box;
}

std::optional<Mp4Box> movieBox(ByteSource &source)
{
    return findBox(source, 0, source.size(), boxType("moov"));
}

/// Time units and length of a movie or media header, or of the header of its fragments.
double seconds(ByteSource &source, qint64 at, qint64 bytes, quint64 scale)
{
    const quint64 unknown = bytes == 8 ? ~quint64(0) : 0xFFFFFFFF;
    const quint64 length = source.big(at, static_cast<int>(bytes)).value_or(0);
    if (scale == 0 || length == unknown)
        return 0;
    return static_cast<double>(length) / static_cast<double>(scale);
}

double movieDuration(ByteSource &source, const Mp4Box &movie)
{
    const std::optional<Mp4Box> header = findPath(source, movie, {boxType("mvhd")});
    if (!header)
        return 0;
    const bool isLong = source.big(header->start, 1).value_or(0) == 1;
    const qint64 scaleAt = header->start + (isLong ? 20 : 12);
    const quint64 scale = source.big(scaleAt, 4).value_or(0);
    const double whole = seconds(source, scaleAt + 4, isLong ? 8 : 4, scale);
    if (whole > 0)
        return whole;
    const std::optional<Mp4Box> fragments =
        findPath(source, movie, {boxType("mvex"), boxType("mehd")});
    if (!fragments)
        return 0;
    const bool isLongToo = source.big(fragments->start, 1).value_or(0) == 1;
    return seconds(source, fragments->start + 4, isLongToo ? 8 : 4, scale);
}

QString keyText(quint32 type)
{
    char name[4];
    qToBigEndian(type, name);
    return QString::fromLatin1(name, 4);
}

QString utf16Text(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf16BE);
    return decoder.decode(bytes);
}

std::vector<Mp4Data> valuesOf(ByteSource &source, const Mp4Box &entry)
{
    std::vector<Mp4Data> values;
    Mp4Boxes boxes(source, entry.start, entry.end);
    while (const std::optional<Mp4Box> box = boxes.next()) {
        if (box->type != boxType("data") || box->size() < 8)
            continue;
        values.push_back({source.big(box->start, 4).value_or(0) & 0xFFFFFF,
                          source.bytes(box->start + 8, std::min(box->size() - 8, kLongestValue))});
    }
    return values;
}

QString textOf(const Mp4Data &value)
{
    switch (value.type) {
    case Utf16:
        return utf16Text(value.bytes);
    case SignedInteger:
    case UnsignedInteger: {
        qint64 number =
            value.bytes.isEmpty() || value.type == UnsignedInteger || value.bytes[0] >= 0 ? 0 : -1;
        for (const char byte : value.bytes.first(std::min<qsizetype>(8, value.bytes.size())))
            number = static_cast<qint64>(static_cast<quint64>(number) << 8 |
                                         static_cast<unsigned char>(byte));
        return QString::number(number);
    }
    default:
        return value.type == Binary || value.type == Utf8 ? textOfBytes(value.bytes) : QString();
    }
}

int shortAt(const QByteArray &bytes, qsizetype at)
{
    return bytes.size() < at + 2 ? 0 : qFromBigEndian<quint16>(bytes.constData() + at);
}

void addItunesValue(ItemWriter &items, const TagMeaning &meaning, const Mp4Data &value)
{
    if (meaning.meaning == CommonKeys::kTrack || meaning.meaning == CommonKeys::kDisc) {
        items.addNumbers(meaning, shortAt(value.bytes, 2), shortAt(value.bytes, 4));
    } else if (meaning.key == "gnre"_L1) { // counts from 1
        items.add(meaning, genreName(shortAt(value.bytes, 0) - 1));
    } else {
        items.add(meaning, textOf(value));
    }
}

void addItunesItems(ByteSource &source, const Mp4Box &list, MediaReading &reading)
{
    ItemWriter items(reading, kItunes);
    for (const TagMeaning &meaning : CommonKeys::itunes()) {
        Mp4Boxes entries(source, list.start, list.end);
        while (const std::optional<Mp4Box> entry = entries.next()) {
            if (keyText(entry->type) != meaning.key)
                continue;
            for (const Mp4Data &value : valuesOf(source, *entry))
                addItunesValue(items, meaning, value);
        }
    }
}

/// The names by which a metadata list's entries go; entries count them from 1.
QList<QByteArray> namesIn(ByteSource &source, const Mp4Box &keys)
{
    QList<QByteArray> names;
    const quint64 count = std::min(source.big(keys.start + 4, 4).value_or(0), kMostNames);
    Mp4Boxes boxes(source, keys.start + 8, keys.end);
    while (static_cast<quint64>(names.size()) < count) {
        const std::optional<Mp4Box> box = boxes.next();
        if (!box)
            break;
        names.append(source.bytes(box->start, std::min(box->size(), kLongestValue)));
    }
    return names;
}

void addNamedItems(ByteSource &source, const Mp4Box &keys, const Mp4Box &list,
                   MediaReading &reading)
{
    const QList<QByteArray> names = namesIn(source, keys);
    ItemWriter items(reading, kMetadata);
    for (const TagMeaning &meaning : CommonKeys::quickTimeMetadata()) {
        Mp4Boxes entries(source, list.start, list.end);
        while (const std::optional<Mp4Box> entry = entries.next()) {
            const QByteArray name = names.value(static_cast<qsizetype>(entry->type) - 1);
            const QByteArrayView shortName = name.startsWith(kNamePrefix)
                                                 ? QByteArrayView(name).sliced(kNamePrefix.size())
                                                 : name;
            if (meaning.key != QLatin1String(shortName))
                continue;
            for (const Mp4Data &value : valuesOf(source, *entry))
                items.add(meaning, textOf(value));
        }
    }
}

/// The metadata box has a version in MP4, and none in QuickTime, where its handler comes first.
qint64 startOfMetadata(ByteSource &source, const Mp4Box &metadata)
{
    const bool isPlain = source.big(metadata.start + 4, 4).value_or(0) == boxType("hdlr");
    return metadata.start + (isPlain ? 0 : 4);
}

void addMetadataItems(ByteSource &source, const Mp4Box &parent, MediaReading &reading)
{
    const std::optional<Mp4Box> metadata = findPath(source, parent, {boxType("meta")});
    if (!metadata)
        return;
    const qint64 start = startOfMetadata(source, *metadata);
    const std::optional<Mp4Box> list = findBox(source, start, metadata->end, boxType("ilst"));
    const std::optional<Mp4Box> keys = findBox(source, start, metadata->end, boxType("keys"));
    if (list && keys)
        addNamedItems(source, *keys, *list, reading);
    else if (list)
        addItunesItems(source, *list, reading);
}

/// User data texts: a length and a language each, in one language or several; the first counts. A
/// language below 0x400 is one of the old Macintosh codes, whose texts are not UTF-8.
QString userDataText(ByteSource &source, const Mp4Box &entry)
{
    const qint64 length = static_cast<qint64>(source.big(entry.start, 2).value_or(0));
    const QByteArray bytes = source.bytes(entry.start + 4, std::min(length, entry.size() - 4));
    if (bytes.startsWith("\xFE\xFF"))
        return utf16Text(bytes);
    return textOfBytes(bytes);
}

void addUserDataItems(ByteSource &source, const Mp4Box &userData, MediaReading &reading)
{
    ItemWriter items(reading, kUserData);
    for (const TagMeaning &meaning : CommonKeys::quickTimeUserData()) {
        Mp4Boxes entries(source, userData.start, userData.end);
        while (const std::optional<Mp4Box> entry = entries.next()) {
            if (entry->size() > 4 && keyText(entry->type) == meaning.key)
                items.add(meaning, userDataText(source, *entry));
        }
    }
}

} // namespace

std::optional<MediaReading> readMp4(ByteSource &source)
{
    const std::optional<Mp4Box> movie = movieBox(source);
    if (!movie)
        return std::nullopt;
    MediaReading reading;
    reading.duration = movieDuration(source, *movie);
    const std::optional<Mp4Box> userData = findPath(source, *movie, {boxType("udta")});
    if (userData)
        addUserDataItems(source, *userData, reading);
    addMetadataItems(source, *movie, reading);
    if (userData)
        addMetadataItems(source, *userData, reading);
    return reading;
}

QByteArray mp4Cover(ByteSource &source, qint64 mostBytes)
{
    const std::optional<Mp4Box> movie = movieBox(source);
    if (!movie)
        return {};
    for (const std::initializer_list<quint32> &path :
         {std::initializer_list<quint32>{boxType("udta"), boxType("meta")}, {boxType("meta")}}) {
        const std::optional<Mp4Box> metadata = findPath(source, *movie, path);
        if (!metadata)
            continue;
        const Mp4Box contents = {0, startOfMetadata(source, *metadata), metadata->end};
        const std::optional<Mp4Box> data =
            findPath(source, contents, {boxType("ilst"), boxType("covr"), boxType("data")});
        if (data && data->size() > 8 && data->size() - 8 <= mostBytes)
            return source.bytes(data->start + 8, data->size() - 8);
    }
    return {};
}
