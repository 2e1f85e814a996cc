// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ImageFormat.h"

#include <QByteArrayView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Signature
{
    qint64 at;
    QByteArrayView bytes;
    ImageFormat format;
};

template <size_t N>
constexpr QByteArrayView raw(const char (&text)[N])
{
    return QByteArrayView(text, static_cast<qsizetype>(N - 1));
}

constexpr Signature kSignatures[] = {
    {0, raw("\xFF\xD8\xFF"), ImageFormat::Jpeg},
    {0, raw("\x89PNG\r\n\x1A\n"), ImageFormat::Png},
    {0, raw("GIF87a"), ImageFormat::Gif},
    {0, raw("GIF89a"), ImageFormat::Gif},
    {8, raw("WEBP"), ImageFormat::Webp},
    {0, raw("8BPS"), ImageFormat::Psd},
    {4, raw("jP  \r\n\x87\n"), ImageFormat::Jpeg2000},
    {0, raw("\xFF\x4F\xFF\x51"), ImageFormat::Jpeg2000},
    {6, raw("HEAPCCDR"), ImageFormat::Crw},
    {0, raw("II\x2B\0\x08\0\0\0"), ImageFormat::BigTiff},
    {0, raw("MM\0\x2B\0\x08\0\0"), ImageFormat::BigTiff},
};

constexpr QByteArrayView kPictureBrands[] = {
    raw("heic"), raw("heix"), raw("heim"), raw("heis"), raw("hevc"), raw("hevx"), raw("mif1"),
    raw("mif2"), raw("msf1"), raw("avif"), raw("avis"), raw("miaf"), raw("jpeg"), raw("avci")};
constexpr qint64 kMostBrands = 64;

bool hasPictureBrand(ByteSource &source)
{
    const qint64 end = static_cast<qint64>(source.big(0, 4).value_or(0));
    for (qint64 at = 8; at < std::min(end, 8 + 4 * kMostBrands); at += at == 8 ? 8 : 4) {
        const QByteArray brand = source.bytes(at, 4);
        if (std::find(std::begin(kPictureBrands), std::end(kPictureBrands), brand) !=
            std::end(kPictureBrands))
            return true;
    }
    return false;
}

bool isBmp(ByteSource &source)
{
    constexpr quint64 kHeaderSizes[] = {12, 40, 52, 56, 64, 108, 124};
    const quint64 size = source.little(14, 4).value_or(0);
    return source.startsWith(0, "BM") && std::find(std::begin(kHeaderSizes), std::end(kHeaderSizes),
                                                   size) != std::end(kHeaderSizes);
}

bool isPnm(ByteSource &source)
{
    const QByteArray head = source.bytes(0, 3);
    return head.startsWith('P') && head[1] >= '1' && head[1] <= '6' &&
           QByteArrayView(" \t\r\n").contains(head[2]);
}

/// An icon or a mouse cursor, of at least one picture.
bool isIco(ByteSource &source)
{
    const quint64 head = source.big(0, 4).value_or(0);
    return (head == 0x100 || head == 0x200) && source.little(4, 2).value_or(0) > 0;
}

/// There are no fixed bytes; what the header says must make sense.
bool isTga(ByteSource &source)
{
    const QByteArray head = source.bytes(0, 18);
    if (head.isEmpty())
        return false;
    const auto byteAt = [&](qsizetype at) { return static_cast<uchar>(head[at]); };
    const int kind = byteAt(2) & ~8;
    const bool hasMap = byteAt(1) == 1 && byteAt(7) >= 15 && byteAt(7) <= 32;
    const int bits = byteAt(16);
    const bool isKnown = (kind == 1 && hasMap && bits == 8) ||
                         (kind == 2 && byteAt(1) <= 1 && bits >= 15 && bits <= 32) ||
                         (kind == 3 && byteAt(1) == 0 && (bits == 8 || bits == 16));
    const bool isOfPixels = head.sliced(12, 2) != "\0\0"_ba && head.sliced(14, 2) != "\0\0"_ba;
    return isKnown && isOfPixels && (byteAt(17) & 0xC0) == 0;
}

} // namespace

ImageFormat imageFormatOf(ByteSource &source)
{
    for (const Signature &signature : kSignatures) {
        if (source.bytes(signature.at, signature.bytes.size()) == signature.bytes)
            return signature.format;
    }
    if (source.startsWith(4, "ftyp") && hasPictureBrand(source))
        return ImageFormat::Bmff;
    if (isBmp(source))
        return ImageFormat::Bmp;
    if (isPnm(source))
        return ImageFormat::Pnm;
    if (isIco(source))
        return ImageFormat::Ico;
    return isTga(source) ? ImageFormat::Tga : ImageFormat::Other;
}
