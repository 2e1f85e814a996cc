// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ImageTags.h"

#include "readers/AdobeMakerNote.h"
#include "readers/ExivImage.h"
#include "readers/IptcTimes.h"
#include "readers/TagValue.h"

#include <exception>
#include <exiv2/convert.hpp>
#include <exiv2/exiv2.hpp>
#include <string>
#include <utility>

namespace {

constexpr char kMakeKey[] = "Exif.Image.Make";
constexpr char kPrivateDataKey[] = "Exif.Image.DNGPrivateData";

/// Whether Exiv2 finds something in such a file that our own reader does not.
bool isForExiv2(ImageFormat format)
{
    switch (format) {
    case ImageFormat::Gif:
    case ImageFormat::Bmp:
    case ImageFormat::Bmff:
    case ImageFormat::BigTiff:
    case ImageFormat::Pnm:
    case ImageFormat::Ico:
    case ImageFormat::Tga:
        return false;
    default:
        return true;
    }
}

void readFile(ByteSource &source, ImageTags &tags)
{
    const auto image = openExivImage(source);
    if (!image)
        return;
    tags.isTiff = image->imageType() == Exiv2::ImageType::tiff;
    // Moved, because each of the many values would be copied by itself.
    tags.exif = std::move(image->exifData());
    tags.iptc = std::move(image->iptcData());
    tags.xmp = std::move(image->xmpData());
    tags.width = image->pixelWidth();
    tags.height = image->pixelHeight();
    if (const Exiv2::DataBuf *profile = image->iccProfile())
        tags.profile = QByteArray(reinterpret_cast<const char *>(profile->pData_), profile->size_);
}

/// Runs one step that may throw; a picture with one broken block keeps the others.
template <typename Step>
void attempt(Step step)
{
    try {
        step();
    } catch (const std::exception &) { // the value stays absent, which is all there is to say
    } catch (...) {                    // the XMP toolkit throws classes of its own
    }
}

void readExif(const ImageFacts &facts, ImageTags &tags)
{
    attempt([&] {
        Exiv2::ExifData exif;
        Exiv2::ExifParser::decode(exif, reinterpret_cast<const Exiv2::byte *>(facts.exif.data()),
                                  static_cast<uint32_t>(facts.exif.size()));
        if (!exif.empty())
            tags.exif = std::move(exif);
    });
}

bool speaksOfThePicture(const Exiv2::Xmpdatum &datum)
{
    const std::string group = datum.groupName();
    return group == "exif" || group == "tiff";
}

void readExifOfXmp(ImageTags &tags)
{
    // Few of many, because the conversion looks through all of them for each tag that it knows.
    Exiv2::XmpData xmp;
    for (const Exiv2::Xmpdatum &datum : tags.xmp) {
        if (speaksOfThePicture(datum))
            xmp.add(datum);
    }
    if (!xmp.empty())
        Exiv2::copyXmpToExif(xmp, tags.exifOfXmp);
}

QByteArray storedAt(const Exiv2::ExifData &exif, const char *key)
{
    const auto it = exif.findKey(Exiv2::ExifKey(key));
    return it == exif.end() ? QByteArray() : storedBytes(it->value());
}

/// A DNG that was made from another raw file keeps that one's maker note aside.
void readAdobeMakerNote(ImageTags &tags)
{
    QByteArray make = storedAt(tags.exif, kMakeKey);
    make.truncate(make.indexOf('\0'));
    const QByteArray tiff = tiffOfAdobeMakerNote(storedAt(tags.exif, kPrivateDataKey), make);
    if (tiff.isEmpty())
        return;
    Exiv2::ExifData exif;
    Exiv2::ExifParser::decode(exif, reinterpret_cast<const Exiv2::byte *>(tiff.data()),
                              static_cast<uint32_t>(tiff.size()));
    for (const Exiv2::Exifdatum &datum : exif) {
        const std::string group = datum.groupName();
        if (group.starts_with("Canon") || group.starts_with("Nikon"))
            tags.exif.add(datum);
    }
}

} // namespace

ImageTags tagsOfExif(const ImageFacts &facts)
{
    prepareExiv2();
    ImageTags tags;
    readExif(facts, tags);
    return tags;
}

void addXmp(const ImageFacts &facts, ImageTags &tags)
{
    if (!facts.xmp.isEmpty() && tags.xmp.empty())
        attempt([&] { Exiv2::XmpParser::decode(tags.xmp, facts.xmp.toStdString()); });
    if (!tags.xmp.empty())
        attempt([&] { readExifOfXmp(tags); });
}

ImageTags readImageTags(ByteSource &source, ImageFormat format, const ImageFacts &facts)
{
    prepareExiv2();
    ImageTags tags;
    tags.isTiff = format == ImageFormat::BigTiff;
    if (isForExiv2(format))
        attempt([&] { readFile(source, tags); });
    attempt([&] { keepTimesAsStored(source, tags); });
    // Of a JPEG, both find the same block.
    if (!facts.exif.isEmpty() && (format != ImageFormat::Jpeg || tags.exif.empty()))
        readExif(facts, tags);
    addXmp(facts, tags);
    if (tags.isTiff)
        attempt([&] { readAdobeMakerNote(tags); });
    return tags;
}
