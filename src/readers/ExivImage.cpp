// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ExivImage.h"

#include "readers/SourceIo.h"

#include <exiv2/exiv2.hpp>
#include <string>

namespace {

// The library's own pointers are of a kind that the language has given up.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
std::unique_ptr<Exiv2::Image> opened(ByteSource &source)
{
    Exiv2::BasicIo::AutoPtr io(new SourceIo(source));
    return std::unique_ptr<Exiv2::Image>(Exiv2::ImageFactory::open(io).release());
}
#pragma GCC diagnostic pop

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

std::unique_ptr<Exiv2::Image> openExivImage(ByteSource &source)
{
    prepareExiv2();
    std::unique_ptr<Exiv2::Image> image = opened(source);
    if (!image || !isPicture(*image))
        return nullptr;
    try {
        image->readMetadata();
    } catch (const Exiv2::Error &) { // a broken end; what stood before it has been read
    }
    return image;
}
