// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/Id3v2Places.h"

#include <QtEndian>

namespace {

constexpr size_t kMostLeading = 8;
constexpr qint64 kHeader = 10; // a footer has the same size
constexpr quint64 kHasFooter = 0x10;
constexpr uchar kIsExtended = 0x40;
constexpr uchar kIsUnsynchronised = 0x80;
constexpr qint64 kLargestBlock = qint64{16} * 1024 * 1024;
constexpr qint64 kId3v1Size = 128;

/// Four times seven bits.
qint64 sevens(quint64 size)
{
    return static_cast<qint64>((size & 0x7F) | (size >> 8 & 0x7F) << 7 | (size >> 16 & 0x7F) << 14 |
                               (size >> 24 & 0x7F) << 21);
}

/// The size of the block between header and footer.
qint64 bodySize(ByteSource &source, qint64 header)
{
    return sevens(source.big(header + 6, 4).value_or(0));
}

qint64 sizeOf(ByteSource &source, qint64 header)
{
    const bool hasFooter = (source.big(header + 5, 1).value_or(0) & kHasFooter) != 0;
    return kHeader + bodySize(source, header) + (hasFooter ? kHeader : 0);
}

} // namespace

Id3v2Places id3v2PlacesOf(ByteSource &source)
{
    Id3v2Places places;
    while (places.leading.size() < kMostLeading && source.startsWith(places.audioStart, "ID3")) {
        places.leading.push_back(places.audioStart);
        places.audioStart += sizeOf(source, places.audioStart);
    }
    for (const qint64 end : {source.size(), source.size() - kId3v1Size}) {
        const qint64 footer = end - kHeader;
        if (!source.startsWith(footer, "3DI"))
            continue;
        const qint64 start = footer - bodySize(source, footer) - kHeader;
        if (start >= places.audioStart && source.startsWith(start, "ID3"))
            places.appended.push_back(start);
    }
    return places;
}

QByteArray id3v2WithoutExtension(ByteSource &source, qint64 at)
{
    QByteArray header = source.bytes(at, kHeader);
    const uchar flags = header.isEmpty() ? 0 : static_cast<uchar>(header[5]);
    if ((flags & kIsExtended) == 0 || bodySize(source, at) > kLargestBlock)
        return {};
    const bool isThird = header[3] == 3;
    QByteArray body = source.bytes(at + kHeader, bodySize(source, at));
    // In the third version the whole body is written so that it holds no sign of sound, in the
    // fourth each frame by itself.
    if (isThird && (flags & kIsUnsynchronised) != 0)
        body.replace(QByteArrayView("\xFF\0", 2), QByteArrayView("\xFF"));
    const quint64 stated = body.size() < 4 ? 0 : qFromBigEndian<quint32>(body.constData());
    const qint64 extension = isThird ? static_cast<qint64>(stated) + 4 : sevens(stated);
    if (extension < 4 || extension > body.size())
        return {};
    body.remove(0, extension);
    header[5] = static_cast<char>(flags & ~(kIsExtended | (isThird ? kIsUnsynchronised : 0)));
    for (int i = 0; i < 4; ++i)
        header[6 + i] = static_cast<char>(body.size() >> (21 - 7 * i) & 0x7F);
    return header + body;
}
