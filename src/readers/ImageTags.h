// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"
#include "readers/ImageFacts.h"
#include "readers/ImageFormat.h"

#include <exiv2/exif.hpp>
#include <exiv2/iptc.hpp>
#include <exiv2/xmp_exiv2.hpp>

/// The metadata that Exiv2 finds in one image. What cannot be read is missing, without a word.
struct ImageTags
{
    Exiv2::ExifData exif;
    Exiv2::IptcData iptc;
    Exiv2::XmpData xmp;
    Exiv2::ExifData exifOfXmp; ///< what XMP tells of exposure, place and picture
    QByteArray profile;        ///< the embedded ICC profile
    qint64 width = 0;          ///< 0 when not known
    qint64 height = 0;
    bool isTiff = false; ///< its tags describe its pixels
};

/// From the Exif block that the format's own reader found. Never throws.
ImageTags tagsOfExif(const ImageFacts &facts);
/// Adds what the packet of XMP tells that the format's own reader found. Never throws.
void addXmp(const ImageFacts &facts, ImageTags &tags);
/// From the whole file, and from the blocks that the format's own reader found. Never throws.
ImageTags readImageTags(ByteSource &source, ImageFormat format, const ImageFacts &facts);
