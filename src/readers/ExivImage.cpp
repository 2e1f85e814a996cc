// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ExivImage.h"

#include "readers/SourceIo.h"

#include <exiv2/exiv2.hpp>
#include <string>

namespace {

bool isPicture(const Exiv2::Image &image)
{
    // Exiv2 also opens films and bare XMP, which are no pictures.
    return image.imageType() == Exiv2::ImageType::eps || image.mimeType().starts_with("image/");
}

} // namespace

void prepareExiv2()
{
    static const bool isDone = [] {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Exiv2::enableBMFF(true);
        return Exiv2::XmpParser::initialize();
    }();
    static_cast<void>(isDone);
}

Exiv2::Image::AutoPtr openExivImage(ByteSource &source)
{
    prepareExiv2();
    auto image = Exiv2::ImageFactory::open(Exiv2::BasicIo::AutoPtr(new SourceIo(source)));
    if (!image.get() || !isPicture(*image))
        return Exiv2::Image::AutoPtr();
    try {
        image->readMetadata();
    } catch (const Exiv2::Error &) { // a broken end; what stood before it has been read
    }
    return image;
}
