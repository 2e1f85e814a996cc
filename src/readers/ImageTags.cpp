// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ImageTags.h"

#include "readers/ExivImage.h"

#include <exception>
#include <exiv2/exiv2.hpp>

namespace {

/// Whether Exiv2 finds something in such a file that our own reader does not.
bool isForExiv2(ImageFormat format)
{
    return format != ImageFormat::Gif && format != ImageFormat::Bmp && format != ImageFormat::Bmff;
}

void readFile(ByteSource &source, ImageTags &tags)
{
    const auto image = openExivImage(source);
    if (!image.get())
        return;
    tags.isTiff = image->imageType() == Exiv2::ImageType::tiff;
    tags.exif = image->exifData();
    tags.iptc = image->iptcData();
    tags.xmp = image->xmpData();
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

void readBlocks(const ImageFacts &facts, ImageTags &tags)
{
    if (!facts.exif.isEmpty()) {
        attempt([&] {
            Exiv2::ExifData exif;
            Exiv2::ExifParser::decode(exif,
                                      reinterpret_cast<const Exiv2::byte *>(facts.exif.data()),
                                      static_cast<uint32_t>(facts.exif.size()));
            if (!exif.empty())
                tags.exif = exif;
        });
    }
    if (!facts.xmp.isEmpty() && tags.xmp.empty())
        attempt([&] { Exiv2::XmpParser::decode(tags.xmp, facts.xmp.toStdString()); });
}

} // namespace

ImageTags readImageTags(ByteSource &source, ImageFormat format, const ImageFacts &facts)
{
    prepareExiv2();
    ImageTags tags;
    if (isForExiv2(format))
        attempt([&] { readFile(source, tags); });
    readBlocks(facts, tags);
    return tags;
}
