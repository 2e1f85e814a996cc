// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/EmbeddedPreview.h"

#include "readers/ExivImage.h"
#include "readers/FormatHeaders.h"
#include "readers/ImageFormat.h"
#include "readers/ImageTags.h"

#include <algorithm>
#include <exception>
#include <exiv2/easyaccess.hpp>
#include <exiv2/preview.hpp>

namespace {

int orientationOf(const Exiv2::ExifData &exif)
{
    const auto it = Exiv2::orientation(exif);
    const long orientation = it == exif.end() || it->count() == 0 ? 1 : it->toLong();
    return orientation >= 1 && orientation <= 8 ? static_cast<int>(orientation) : 1;
}

QByteArray bytesOf(const Exiv2::byte *bytes, long size)
{
    return QByteArray(reinterpret_cast<const char *>(bytes), size);
}

EmbeddedPreview previewOfPhoto(ByteSource &source, int edge)
{
    const auto image = openExivImage(source);
    if (!image)
        return {};
    Exiv2::PreviewManager manager(*image);
    const Exiv2::PreviewPropertiesList list = manager.getPreviewProperties(); // smallest first
    if (list.empty())
        return {};
    const auto fills = [edge](const Exiv2::PreviewProperties &properties) {
        return std::max(properties.width_, properties.height_) >= static_cast<size_t>(edge);
    };
    const auto it = std::find_if(list.begin(), list.end(), fills);
    const Exiv2::PreviewImage preview =
        manager.getPreviewImage(it == list.end() ? list.back() : *it);
    return {bytesOf(preview.pData(), static_cast<long>(preview.size())),
            orientationOf(image->exifData())};
}

/// Containers whose own pictures nobody here can decode may still have a small one in their Exif.
EmbeddedPreview previewOfContainer(ByteSource &source)
{
    const ImageTags tags = readImageTags(source, ImageFormat::Bmff, walkBmff(source));
    const Exiv2::DataBuf bytes = Exiv2::ExifThumbC(tags.exif).copy();
    return {bytesOf(bytes.pData_, bytes.size_), orientationOf(tags.exif)};
}

} // namespace

EmbeddedPreview embeddedPreview(ByteSource &source, int edge)
{
    try {
        const bool isContainer = imageFormatOf(source) == ImageFormat::Bmff;
        return isContainer ? previewOfContainer(source) : previewOfPhoto(source, edge);
    } catch (const std::exception &) {
        return {}; // without a preview there is simply no picture to show
    }
}
