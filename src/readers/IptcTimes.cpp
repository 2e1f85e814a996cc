// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/IptcTimes.h"

#include "readers/TagValue.h"

#include <QByteArrayMatcher>

#include <algorithm>

namespace {

constexpr char kRecordsInTiff[] = "Exif.Image.IPTCNAA";
/// Metadata stands in front of the pixels, except in TIFF files, whose Exif data has the records.
constexpr qint64 kFarthestRecord = qint64{1024} * 1024;
constexpr qsizetype kClockSize = 6;
/// The zone that Exiv2 adds.
constexpr QByteArrayView kNoZone = "+0000";

/// The bytes where the records of the file are likely.
QByteArray bytesToSearch(ByteSource &source, const ImageTags &tags)
{
    const auto inTiff = tags.exif.findKey(Exiv2::ExifKey(kRecordsInTiff));
    return inTiff != tags.exif.end() ? storedBytes(inTiff->value())
                                     : source.bytes(0, std::min(source.size(), kFarthestRecord));
}

/// The text of the data set with these digits; empty when it is not there.
QByteArray storedTime(const QByteArray &bytes, const Exiv2::Iptcdatum &datum,
                      const QByteArray &digits)
{
    constexpr qsizetype kSizeAt = 3;
    constexpr qsizetype kTextAt = 5;
    const char dataSet[] = {'\x1C', static_cast<char>(datum.record()),
                            static_cast<char>(datum.tag()), '\0'};
    const QByteArrayMatcher matcher(dataSet, std::size(dataSet));
    for (qsizetype at = matcher.indexIn(bytes); at >= 0; at = matcher.indexIn(bytes, at + 1)) {
        const qsizetype size =
            at + kTextAt > bytes.size() ? 0 : static_cast<uchar>(bytes[at + kSizeAt + 1]);
        const QByteArray text = bytes.mid(at + kTextAt, size);
        if (text.size() == size && text.startsWith(digits))
            return text;
    }
    return {};
}

} // namespace

void keepTimesAsStored(ByteSource &source, ImageTags &tags)
{
    QByteArray bytes;
    for (Exiv2::Iptcdatum &datum : tags.iptc) {
        const QByteArray time =
            datum.typeId() == Exiv2::time ? storedBytes(datum.value()) : QByteArray();
        if (!time.endsWith(kNoZone))
            continue;
        if (bytes.isEmpty())
            bytes = bytesToSearch(source, tags);
        const QByteArray stored = storedTime(bytes, datum, time.first(kClockSize));
        const Exiv2::StringValue text(stored.toStdString());
        if (!stored.isEmpty())
            datum.setValue(&text);
    }
}
