// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/AdobeMakerNote.h"

#include "readers/MemorySource.h"
#include "readers/TiffWriter.h"

namespace {

constexpr qint64 kFirstBlock = 6; // behind "Adobe" and its NUL
constexpr qint64 kPrefixSize = 6; // byte order and the place in the camera's file
constexpr quint64 kFarthestPlace = quint64{4} * 1024 * 1024;
constexpr int kMostBlocks = 100;
constexpr quint16 kMake = 0x010F;
constexpr quint16 kExifFolder = 0x8769;
constexpr quint16 kMakerNote = 0x927C;
enum Type : quint16 { Ascii = 2, Long = 4, Undefined = 7 };

void putEntry(TiffWriter &tiff, quint16 tag, Type type, qsizetype count, qsizetype value)
{
    tiff.put(tag, 2);
    tiff.put(type, 2);
    tiff.put(static_cast<quint64>(count), 4);
    tiff.put(static_cast<quint64>(value), 4);
}

QByteArray tiffAround(const QByteArray &note, const QByteArray &order, qsizetype place,
                      const QByteArray &make)
{
    constexpr qsizetype kHeaderSize = 8;
    constexpr qsizetype kMainSize = 2 + 2 * 12 + 4;
    constexpr qsizetype kExifSize = 2 + 12 + 4;
    if (place < kHeaderSize)
        return {};
    const qsizetype main = (place + note.size() + 1) & ~qsizetype(1);
    const qsizetype exif = main + kMainSize;
    TiffWriter tiff(order == "MM");
    tiff.putHeader(static_cast<quint32>(main));
    tiff.fillTo(place);
    tiff.append(note);
    tiff.fillTo(main);
    tiff.put(2, 2);
    putEntry(tiff, kMake, Ascii, make.size() + 1, exif + kExifSize);
    putEntry(tiff, kExifFolder, Long, 1, exif);
    tiff.put(0, 4);
    tiff.put(1, 2);
    putEntry(tiff, kMakerNote, Undefined, note.size(), place);
    tiff.put(0, 4);
    tiff.append(make + '\0');
    return tiff.bytes();
}

} // namespace

QByteArray tiffOfAdobeMakerNote(const QByteArray &privateData, const QByteArray &make)
{
    MemorySource source(privateData);
    if (!source.startsWith(0, "Adobe") || make.size() < 4)
        return {};
    qint64 at = kFirstBlock;
    for (int i = 0; i < kMostBlocks && source.contains(at, 8 + kPrefixSize); ++i) {
        const auto size = static_cast<qint64>(source.big(at + 4, 4).value_or(0));
        const QByteArray order = source.bytes(at + 8, 2);
        const quint64 place = source.big(at + 10, 4).value_or(0);
        if (source.startsWith(at, "MakN") && (order == "II" || order == "MM") &&
            place <= kFarthestPlace) {
            const QByteArray note = source.bytes(at + 8 + kPrefixSize, size - kPrefixSize);
            return note.isEmpty() ? QByteArray()
                                  : tiffAround(note, order, static_cast<qsizetype>(place), make);
        }
        at += 8 + size + (size & 1);
    }
    return {};
}
