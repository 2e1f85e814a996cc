// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/PictureSamples.h"

#include "readers/TiffBuilder.h"

#include <QBuffer>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

QByteArray big(quint64 number, int bytes)
{
    QByteArray result = TiffBuilder::number(number, bytes);
    std::reverse(result.begin(), result.end());
    return result;
}

QByteArray little(quint64 number, int bytes)
{
    return TiffBuilder::number(number, bytes);
}

QByteArray box(const char *type, const QByteArray &contents)
{
    return big(static_cast<quint64>(contents.size()) + 8, 4) + type + contents;
}

QByteArray fullBox(const char *type, const QByteArray &contents, int version = 0, int flags = 0)
{
    return box(type, big(static_cast<quint64>(version), 1) + big(static_cast<quint64>(flags), 3) +
                         contents);
}

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QImage blank(int width, int height, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(width, height, format);
    image.fill(Qt::red);
    return image;
}

/// Behind a packet that is not cut into blocks, these lengths bring every reader to their end.
QByteArray leadingOut()
{
    QByteArray lengths;
    for (int length = 255; length >= 0; --length)
        lengths.append(static_cast<char>(length));
    return lengths + '\0';
}

/// A screen with two colours, up to where the blocks begin.
QByteArray gifScreen()
{
    return "GIF89a" + little(5, 2) + little(4, 2) + QByteArray("\x80\0\0", 3) +
           QByteArray(6, '\x40');
}

QByteArray gifLoop()
{
    return QByteArray("\x21\xFF\x0BNETSCAPE2.0\x03\x01\x07\0\0", 19);
}

/// A frame with two colours of its own and a few bytes for pixels, shown so many hundredths.
QByteArray gifFrame(quint64 delay)
{
    return "\x21\xF9\x04\x01" + little(delay, 2) + QByteArray("\0\0", 2) +
           QByteArray("\x2C\0\0\0\0\x05\0\x04\0\x80", 10) + QByteArray(6, '\x21') +
           QByteArray("\x02\x02\x3B\x3B\0", 5);
}

QByteArray gif()
{
    return gifScreen() + gifLoop() + "\x21\xFF\x0BXMP DataXMP" +
           xmpPacket("exif:ExposureTime='1/8' xmp:CreateDate='2011-02-03T04:05:06+09:00'") +
           "\x01" + leadingOut() + gifFrame(1) + '\x3B';
}

QByteArray resource(int id, const QByteArray &contents)
{
    return "8BIM" + big(static_cast<quint64>(id), 2) + QByteArray(2, '\0') +
           big(static_cast<quint64>(contents.size()), 4) + contents +
           QByteArray(contents.size() % 2, '\0');
}

QByteArray layer(const QByteArray &name, const QByteArray &blocks)
{
    QByteArray pascal = static_cast<char>(name.size()) + name;
    pascal = pascal.leftJustified((pascal.size() + 3) & ~3, '\0');
    const QByteArray extra = big(0, 4) + big(0, 4) + pascal + blocks;
    return QByteArray(16, '\0') + big(1, 2) + big(0, 6) + "8BIMnorm" + QByteArray(4, '\0') +
           big(static_cast<quint64>(extra.size()), 4) + extra;
}

QByteArray psd()
{
    const QByteArray unicode =
        "8BIMluni" + big(8, 4) + big(2, 4) + QByteArray("\x04\x16\x04\x17", 4);
    const QByteArray divider = "8BIMlsct" + big(4, 4) + big(3, 4);
    const QByteArray layers = big(0xFFFD, 2) + layer("Ground", {}) +
                              layer("</Layer group>", divider) + layer("?", unicode);
    const QByteArray info = big(static_cast<quint64>(layers.size()), 4) + layers;
    const QByteArray resources =
        resource(1005, big(300 << 16, 4) + big(0, 4) + big(150 << 16, 4) + big(0, 4));
    return "8BPS" + big(1, 2) + QByteArray(6, '\0') + big(4, 2) + big(20, 4) + big(30, 4) +
           big(16, 2) + big(9, 2) + big(0, 4) + big(static_cast<quint64>(resources.size()), 4) +
           resources + big(static_cast<quint64>(info.size()), 4) + info;
}

QByteArray tiffBlock()
{
    TiffBuilder tiff;
    tiff.add(TiffBuilder::Main, 0x010F, TiffBuilder::Ascii, QByteArray("Maker\0", 6));
    return tiff.build();
}

/// Item 1 is the picture, 2 its alpha plane, 3 the Exif block in the file behind the boxes.
/// Property 5 turns to the left, 6 exchanges top and bottom, 7 left and right.
QByteArray heif(const QByteArray &propertiesOfPicture)
{
    const QByteArray exif = big(0, 4) + tiffBlock();
    const auto build = [&](quint64 exifAt) {
        const QByteArray infos = fullBox("infe", big(1, 2) + big(0, 2) + "hvc1", 2) +
                                 fullBox("infe", big(2, 2) + big(0, 2) + "hvc1", 2) +
                                 fullBox("infe", big(3, 2) + big(0, 2) + "Exif", 2);
        const QByteArray location = big(0x4400, 2) + big(1, 2) + big(3, 2) + big(0, 2) + big(1, 2) +
                                    big(exifAt, 4) + big(static_cast<quint64>(exif.size()), 4);
        const QByteArray properties =
            fullBox("ispe", big(64, 4) + big(48, 4)) +
            fullBox("pixi", big(3, 1) + QByteArray(3, '\x0A')) +
            fullBox("auxC", QByteArray("urn:mpeg:hevc:2015:auxid:1\0", 27)) +
            fullBox("ispe", big(9, 4) + big(9, 4)) + box("irot", big(1, 1)) +
            box("imir", big(0, 1)) + box("imir", big(1, 1));
        const QByteArray associations =
            big(2, 4) + big(1, 2) + static_cast<char>(propertiesOfPicture.size()) +
            propertiesOfPicture + big(2, 2) + QByteArray("\x02\x04\x03", 3);
        const QByteArray meta =
            fullBox("pitm", big(1, 2)) + fullBox("iinf", big(3, 2) + infos) +
            fullBox("iloc", location) +
            fullBox("iref", box("auxl", big(2, 2) + big(1, 2) + big(1, 2))) +
            box("iprp", box("ipco", properties) + fullBox("ipma", associations));
        return box("ftyp", "heic" + big(0, 4) + "mif1") + fullBox("meta", meta);
    };
    return build(static_cast<quint64>(build(0).size())) + exif;
}

QByteArray webp()
{
    const QByteArray extended =
        "VP8X" + little(10, 4) + QByteArray("\x10\0\0\0", 4) + little(299, 3) + little(199, 3);
    const QByteArray exif = tiffBlock();
    const QByteArray block = "EXIF" + little(static_cast<quint64>(exif.size()), 4) + exif;
    return "RIFF" + little(static_cast<quint64>(4 + extended.size() + block.size()), 4) + "WEBP" +
           extended + block;
}

QByteArray jpeg2000()
{
    const QByteArray header =
        box("ihdr", big(7, 4) + big(11, 4) + big(2, 2) + big(7, 1) + big(7, 1) + big(0, 2)) +
        box("colr", big(1, 1) + big(0, 2) + big(17, 4)) +
        box("cdef", big(2, 2) + big(0, 6) + big(1, 2) + big(1, 2) + big(0, 2)) +
        box("res ", box("resc", big(1536, 2) + big(10, 2) + big(30000, 2) + big(254, 2) +
                                    QByteArray("\x01\x02", 2)));
    return box("jP  ", "\r\n\x87\n") + box("ftyp", "jp2 " + big(0, 4) + "jp2 ") +
           box("jp2h", header);
}

QByteArray bmp()
{
    return "BM" + little(0, 12) + little(40, 4) + little(6, 4) +
           little(static_cast<quint64>(-3), 4) + little(1, 2) + little(4, 2) + little(0, 8) +
           little(1536, 4) + little(1536, 4) + little(0, 8);
}

/// A bitmap, whose rows count twice, or what is given instead.
QByteArray ico(const QByteArray &picture = {})
{
    const QByteArray bitmap =
        little(40, 4) + little(16, 4) + little(64, 4) + little(1, 2) + little(4, 2);
    const QByteArray contents = picture.isEmpty() ? bitmap.leftJustified(40, '\0') : picture;
    return QByteArray("\0\0\1\0\1\0\x10\x20\0\0\1\0\4\0", 14) +
           little(static_cast<quint64>(contents.size()), 4) + little(22, 4) + contents;
}

/// One heap with two values and, inside it, another heap with one.
QByteArray crw()
{
    const QByteArray owner = "Ada Byron\0"_ba;
    const QByteArray file = "IMG_1.CRW\0"_ba;
    const QByteArray inner =
        file + little(1, 2) + little(0x0816, 2) + little(10, 4) + little(0, 4) + little(10, 4);
    const auto innerSize = static_cast<quint64>(inner.size());
    const QByteArray heap = owner + inner + little(3, 2) + little(0x0810, 2) + little(10, 4) +
                            little(0, 4) + little(0x300A, 2) + little(innerSize, 4) +
                            little(10, 4) + little(0x5817, 2) + little(1234, 8) +
                            little(10 + innerSize, 4);
    return "II" + little(26, 4) + "HEAPCCDR" + little(0, 12) + heap;
}

QByteArray tiff()
{
    TiffBuilder tiff;
    for (const auto &[tag, number] :
         {std::pair(0x0100, 40), std::pair(0x0101, 30), std::pair(0x0106, 5), std::pair(0x0112, 8),
          std::pair(0x0128, 3)})
        tiff.add(TiffBuilder::Main, static_cast<quint16>(tag), TiffBuilder::Short,
                 TiffBuilder::shorts({number}));
    tiff.add(TiffBuilder::Main, 0x0102, TiffBuilder::Short,
             TiffBuilder::shorts({32, 32, 32, 32, 32}));
    tiff.add(TiffBuilder::Main, 0x011A, TiffBuilder::Rational, TiffBuilder::longs({148, 10}));
    tiff.add(TiffBuilder::Main, 0x011B, TiffBuilder::Rational, TiffBuilder::longs({200, 1}));
    tiff.add(TiffBuilder::Main, 0x0152, TiffBuilder::Short, TiffBuilder::shorts({2}));
    tiff.add(TiffBuilder::Main, 0x0153, TiffBuilder::Short, TiffBuilder::shorts({3, 3, 3, 3, 3}));
    return tiff.build();
}

/// A width of eight bytes, and a folder inside the folder.
QByteArray bigTiff()
{
    const auto entry = [](int tag, int type, const QByteArray &value) {
        return little(static_cast<quint64>(tag), 2) + little(static_cast<quint64>(type), 2) +
               little(1, 8) + value;
    };
    const QByteArray resolution = little(300, 4) + little(2, 4);
    return "II+" + little(0, 1) + little(8, 4) + little(16, 8) + little(6, 8) +
           entry(0x0100, 16, little(40, 8)) + entry(0x0101, 3, little(30, 8)) +
           entry(0x0102, 3, little(16, 8)) + entry(0x011A, 5, resolution) +
           entry(0x011B, 5, resolution) + entry(0x8769, 18, little(152, 8)) + little(0, 8) +
           little(1, 8) + entry(0x829A, 5, little(1, 4) + little(8, 4)) + little(0, 8);
}

QByteArray withMagic(const QByteArray &tiff, const char *magic)
{
    return magic + tiff.sliced(4);
}

QByteArray rw2()
{
    TiffBuilder tiff;
    tiff.add(TiffBuilder::Main, 0x000A, TiffBuilder::Short, TiffBuilder::shorts({12}));
    return withMagic(tiff.build(), "IIU").insert(3, '\0');
}

/// A folder of one number, which ends the file for the time being.
QByteArray folder(int tag, quint64 number, quint64 next)
{
    return little(1, 2) + little(static_cast<quint64>(tag), 2) + little(4, 2) + little(1, 4) +
           little(number, 4) + little(next, 4);
}

/// The sensor's structure holds a folder inside a folder.
QByteArray raf()
{
    return QByteArray("FUJIFILMCCD-RAW ").leftJustified(100, '\0') + big(104, 4) + "II*" +
           QByteArray(1, '\0') + little(8, 4) + folder(0xF000, 26, 0) + folder(0xF003, 14, 0);
}

QByteArray mrw()
{
    return QByteArray("\0MRM", 4) + big(32, 4) + QByteArray("\0PRD", 4) + big(24, 4) +
           QByteArray(16, '\0') + "\x10\x0C" + QByteArray(6, '\0');
}

/// Three previews, then the sensor's picture.
QByteArray cr2()
{
    return "II*" + QByteArray(1, '\0') + little(16, 4) + "CR\x02" + QByteArray(5, '\0') +
           folder(0x0100, 1, 34) + folder(0x0100, 1, 52) + folder(0x0100, 1, 70) +
           folder(0x0111, 88, 0) + QByteArray("\xFF\xD8\xFF\xC4\0\x02\xFF\xC3\0\x0B\x0E", 11);
}

QByteArray cr3Track(int width, int depth)
{
    const QByteArray samples =
        QByteArray(90, '\0') +
        box("CMP1", QByteArray(8, '\0') + big(static_cast<quint64>(width), 4) +
                        QByteArray(12, '\0') + static_cast<char>(depth));
    return box("trak", box("mdia", box("minf", box("stbl", box("stsd", samples)))));
}

/// The smaller picture comes last.
QByteArray cr3()
{
    return box("ftyp", "crx " + big(1, 4) + "isom") +
           box("moov", cr3Track(6000, 14) + cr3Track(1600, 10));
}

QByteArray png()
{
    QImage image = blank(8, 6, QImage::Format_ARGB32);
    image.setText(u"Title"_s, u"Before the pixels"_s);
    image.setDotsPerMeterX(1536);
    image.setDotsPerMeterY(4000);
    return pngFile(image,
                   pngChunk("tEXt", "Author\0Björn"_ba) +
                       pngChunk("tIME", big(2020, 2) + QByteArray("\x02\x03\x04\x05\x06", 5)));
}

} // namespace

QByteArray pngChunk(const QByteArray &type, const QByteArray &contents)
{
    const QByteArray checked = type + contents;
    quint32 crc = 0xFFFFFFFF;
    for (const char each : checked) {
        crc ^= static_cast<uchar>(each);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 1 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
    }
    return big(static_cast<quint64>(contents.size()), 4) + checked + big(~crc & 0xFFFFFFFF, 4);
}

QByteArray pngFile(const QImage &image, const QByteArray &chunksBehindPixels)
{
    constexpr qsizetype kEndChunk = 12;
    const QByteArray file = encoded(image, "PNG");
    return file.chopped(kEndChunk) + chunksBehindPixels + file.last(kEndChunk);
}

QByteArray jpegFile(const QImage &image, const QByteArray &exif, const QByteArray &xmp,
                    const QByteArray &iptc)
{
    const QByteArray file = encoded(image, "JPEG");
    const auto segment = [](char kind, const QByteArray &prefix, const QByteArray &block) {
        const auto size = static_cast<quint64>(2 + prefix.size() + block.size());
        return block.isEmpty() ? block : '\xFF' + (kind + big(size, 2)) + prefix + block;
    };
    return file.first(2) + segment('\xE1', "Exif\0\0"_ba, exif) +
           segment('\xE1', "http://ns.adobe.com/xap/1.0/\0"_ba, xmp) +
           segment('\xED', "Photoshop 3.0\0"_ba, iptc.isEmpty() ? iptc : resource(1028, iptc)) +
           file.sliced(2);
}

QByteArray xmpPacket(const char *attributes, const char *elements)
{
    return "<x:xmpmeta xmlns:x='adobe:ns:meta/'>"
           "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
           "<rdf:Description xmlns:exif='http://ns.adobe.com/exif/1.0/' "
           "xmlns:tiff='http://ns.adobe.com/tiff/1.0/' xmlns:xmp='http://ns.adobe.com/xap/1.0/' "
           "xmlns:photoshop='http://ns.adobe.com/photoshop/1.0/' " +
           QByteArray(attributes) + '>' + elements + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

std::vector<PictureSample> pictureSamples()
{
    return {
        {"gif",
         gif(),
         {{u"PixelWidth"_s, 5},
          {u"PixelHeight"_s, 4},
          {u"IsIndexed"_s, 1},
          {u"HasAlpha"_s, 1},
          {u"{Exif}/ExposureTime"_s, 0.125},
          {u"{Exif}/DateTimeDigitized"_s, u"2011:02:03 04:05:06"_s},
          {u"{GIF}/LoopCount"_s, 7},
          {u"{GIF}/HasGlobalColorMap"_s, 1},
          {u"{GIF}/UnclampedDelayTime"_s, 0.01},
          {u"{GIF}/DelayTime"_s, 0.1}}},
        {"gif without a delay",
         gifScreen() + gifFrame(0) + '\x3B',
         {{u"{GIF}/LoopCount"_s, {}},
          {u"{GIF}/UnclampedDelayTime"_s, 0},
          {u"{GIF}/DelayTime"_s, 0.1}}},
        {"gif of the shortest delay",
         gifScreen() + gifFrame(2) + '\x3B',
         {{u"{GIF}/UnclampedDelayTime"_s, 0.02}, {u"{GIF}/DelayTime"_s, 0.02}}},
        {"gif that tells its loop behind a frame",
         gifScreen() + gifFrame(57) + gifFrame(4) + gifLoop() + '\x3B',
         {{u"{GIF}/LoopCount"_s, 7}, {u"{GIF}/DelayTime"_s, 0.57}}},
        {"psd",
         psd(),
         {{u"PixelWidth"_s, 30},
          {u"PixelHeight"_s, 20},
          {u"Depth"_s, 16},
          {u"ColorModel"_s, u"Lab"_s},
          {u"HasAlpha"_s, 1},
          {u"DPIWidth"_s, 300},
          {u"DPIHeight"_s, 150},
          {u"{8BIM}/LayerNames"_s, QVariantList{u"Ground"_s, u"ЖЗ"_s}}}},
        {"heif",
         heif("\x81\x02\x05"),
         {{u"PixelWidth"_s, 64},
          {u"PixelHeight"_s, 48},
          {u"Depth"_s, 10},
          {u"Orientation"_s, 8},
          {u"HasAlpha"_s, 1},
          {u"{TIFF}/Make"_s, u"Maker"_s}}},
        {"heif, top and bottom exchanged", heif("\x81\x02\x06"), {{u"Orientation"_s, 4}}},
        {"heif, left and right exchanged", heif("\x81\x02\x07"), {{u"Orientation"_s, 2}}},
        {"heif, turned and mirrored", heif("\x81\x02\x05\x07"), {{u"Orientation"_s, 7}}},
        {"heif, mirrored and turned", heif("\x81\x02\x07\x05"), {{u"Orientation"_s, 5}}},
        {"tiff of the large kind",
         bigTiff(),
         {{u"PixelWidth"_s, 40},
          {u"Depth"_s, 16},
          {u"DPIWidth"_s, 150},
          {u"{Exif}/ExposureTime"_s, 0.125}}},
        {"orf", withMagic(tiff(), "IIRO"), {{u"Depth"_s, 32}, {u"ColorModel"_s, u"RGB"_s}}},
        {"rw2", rw2(), {{u"Depth"_s, 12}, {u"ColorModel"_s, u"RGB"_s}}},
        {"raf", raf(), {{u"Depth"_s, 14}}},
        {"mrw", mrw(), {{u"Depth"_s, 12}}},
        {"cr2", cr2(), {{u"Depth"_s, 14}, {u"ColorModel"_s, u"RGB"_s}}},
        {"cr3", cr3(), {{u"Depth"_s, 14}}},
        {"webp",
         webp(),
         {{u"PixelWidth"_s, 300},
          {u"PixelHeight"_s, 200},
          {u"HasAlpha"_s, 1},
          {u"{TIFF}/Make"_s, u"Maker"_s}}},
        {"jp2",
         jpeg2000(),
         {{u"PixelWidth"_s, 11},
          {u"PixelHeight"_s, 7},
          {u"Depth"_s, 8},
          {u"ColorModel"_s, u"Gray"_s},
          {u"HasAlpha"_s, 1},
          {u"DPIWidth"_s, 300},
          {u"DPIHeight"_s, 39.0144}}},
        {"bmp",
         bmp(),
         {{u"PixelWidth"_s, 6},
          {u"PixelHeight"_s, 3},
          {u"Depth"_s, 4},
          {u"IsIndexed"_s, 1},
          {u"HasAlpha"_s, 0},
          {u"DPIWidth"_s, 39.0144}}},
        {"ico",
         ico(),
         {{u"PixelWidth"_s, 16},
          {u"PixelHeight"_s, 32},
          {u"Depth"_s, 4},
          {u"ColorModel"_s, u"RGB"_s},
          {u"IsIndexed"_s, 1},
          {u"HasAlpha"_s, 1}}},
        {"ico of a png",
         ico(encoded(blank(256, 200, QImage::Format_Grayscale8), "PNG")),
         {{u"PixelWidth"_s, 256},
          {u"PixelHeight"_s, 200},
          {u"Depth"_s, 8},
          {u"ColorModel"_s, u"Gray"_s}}},
        {"pbm",
         "P4 # 9 8 7\n20\t30\n",
         {{u"PixelWidth"_s, 20},
          {u"PixelHeight"_s, 30},
          {u"Depth"_s, 1},
          {u"ColorModel"_s, u"Gray"_s}}},
        {"pgm", "P2\n20 30 255\n0", {{u"Depth"_s, 8}, {u"ColorModel"_s, u"Gray"_s}}},
        {"ppm", "P6\n20 30\n256\n", {{u"Depth"_s, 16}, {u"ColorModel"_s, u"RGB"_s}}},
        {"tga",
         QByteArray("\0\0\x0A", 3) + little(0, 9) + little(300, 2) + little(200, 2) + "\x20\x28",
         {{u"PixelWidth"_s, 300},
          {u"PixelHeight"_s, 200},
          {u"Depth"_s, 8},
          {u"ColorModel"_s, u"RGB"_s},
          {u"HasAlpha"_s, 1}}},
        {"tga of numbered colours",
         QByteArray("\0\1\1\0\0\0\1\x10", 8) + little(0, 4) + little(300, 2) + little(200, 2) +
             QByteArray("\x08\0", 2),
         {{u"Depth"_s, 5}, {u"IsIndexed"_s, 1}, {u"HasAlpha"_s, 0}}},
        {"crw",
         crw(),
         {{u"{CIFF}/OwnerName"_s, u"Ada Byron"_s},
          {u"{CIFF}/ImageFileName"_s, u"IMG_1.CRW"_s},
          {u"{CIFF}/ImageSerialNumber"_s, 1234}}},
        {"tiff",
         tiff(),
         {{u"PixelWidth"_s, 40},
          {u"PixelHeight"_s, 30},
          {u"Depth"_s, 32},
          {u"ColorModel"_s, u"CMYK"_s},
          {u"IsFloat"_s, 1},
          {u"HasAlpha"_s, 1},
          {u"Orientation"_s, 8},
          {u"DPIWidth"_s, 37.592},
          {u"DPIHeight"_s, 508}}},
        {"png",
         png(),
         {{u"PixelWidth"_s, 8},
          {u"HasAlpha"_s, 1},
          {u"DPIWidth"_s, 39.0144},
          {u"{PNG}/XPixelsPerMeter"_s, 1536},
          {u"{PNG}/Title"_s, u"Before the pixels"_s},
          {u"{PNG}/Author"_s, u"Björn"_s},
          {u"{PNG}/ModificationTime"_s, u"2020:02:03 04:05:06"_s},
          {u"{PNG}/InterlaceType"_s, 0}}},
        {"jpeg that counts by the centimetre",
         jpegFile(blank(4, 4)).replace(13, 5, QByteArray("\x02\0\x21\0\x76", 5)),
         {{u"DPIWidth"_s, 83.82}, {u"DPIHeight"_s, 299.72}, {u"{JFIF}/DensityUnit"_s, 2}}},
        {"jpeg",
         jpegFile(blank(16, 9, QImage::Format_Grayscale8)),
         {{u"PixelWidth"_s, 16},
          {u"PixelHeight"_s, 9},
          {u"ColorModel"_s, u"Gray"_s},
          {u"{JFIF}/JFIFVersion"_s, QVariantList{1, 0, 1}}}},
    };
}
