// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagTables.h"

using namespace Qt::StringLiterals;

namespace {

constexpr TagRow kRows[] = {
    {"Exif.Image.Compression", "Compression"_L1, TagShape::Number},
    {"Exif.Image.PhotometricInterpretation", "PhotometricInterpretation"_L1, TagShape::Number},
    {"Exif.Image.DocumentName", "DocumentName"_L1, TagShape::Text},
    {"Exif.Image.ImageDescription", "ImageDescription"_L1, TagShape::Text},
    {"Exif.Image.Make", "Make"_L1, TagShape::Text},
    {"Exif.Image.Model", "Model"_L1, TagShape::Text},
    {"Exif.Image.Orientation", "Orientation"_L1, TagShape::Number},
    {"Exif.Image.XResolution", "XResolution"_L1, TagShape::Number},
    {"Exif.Image.YResolution", "YResolution"_L1, TagShape::Number},
    {"Exif.Image.ResolutionUnit", "ResolutionUnit"_L1, TagShape::Number},
    {"Exif.Image.Software", "Software"_L1, TagShape::Text},
    {"Exif.Image.TransferFunction", "TransferFunction"_L1, TagShape::Numbers},
    {"Exif.Image.DateTime", "DateTime"_L1, TagShape::Text},
    {"Exif.Image.Artist", "Artist"_L1, TagShape::Text},
    {"Exif.Image.HostComputer", "HostComputer"_L1, TagShape::Text},
    {"Exif.Image.Copyright", "Copyright"_L1, TagShape::Copyright},
    {"Exif.Image.WhitePoint", "WhitePoint"_L1, TagShape::Numbers},
    {"Exif.Image.PrimaryChromaticities", "PrimaryChromaticities"_L1, TagShape::Numbers},
    {"Xmp.tiff.Software", "Software"_L1, TagShape::Text},
    {"Xmp.xmp.CreatorTool", "Software"_L1, TagShape::Text},
    {"Xmp.tiff.DateTime", "DateTime"_L1, TagShape::XmpDate},
    {"Xmp.xmp.ModifyDate", "DateTime"_L1, TagShape::XmpDate},
};

} // namespace

std::span<const TagRow> tiffRows()
{
    return kRows;
}
