// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagTables.h"

using namespace Qt::StringLiterals;

namespace {

constexpr TagRow kRows[] = {
    {"Exif.Photo.LensSpecification", "LensInfo"_L1, TagShape::Numbers},
    {"Exif.Photo.LensModel", "LensModel"_L1, TagShape::Text},
    {"Exif.Photo.BodySerialNumber", "SerialNumber"_L1, TagShape::Text},
    {"Exif.Photo.LensSerialNumber", "LensSerialNumber"_L1, TagShape::Text},
    {"Exif.Photo.CameraOwnerName", "OwnerName"_L1, TagShape::Text},
    {"Xmp.aux.LensInfo", "LensInfo"_L1, TagShape::Numbers},
    {"Xmp.aux.Lens", "LensModel"_L1, TagShape::Text},
    {"Xmp.aux.SerialNumber", "SerialNumber"_L1, TagShape::Text},
    {"Xmp.aux.LensID", "LensID"_L1, TagShape::Any},
    {"Xmp.aux.LensSerialNumber", "LensSerialNumber"_L1, TagShape::Text},
    {"Xmp.aux.ImageNumber", "ImageNumber"_L1, TagShape::Any},
    {"Xmp.aux.FlashCompensation", "FlashCompensation"_L1, TagShape::Number},
    {"Xmp.aux.OwnerName", "OwnerName"_L1, TagShape::Text},
    {"Xmp.aux.Firmware", "Firmware"_L1, TagShape::Text},
    {"Xmp.exifEX.LensSpecification", "LensInfo"_L1, TagShape::Numbers},
    {"Xmp.exifEX.LensModel", "LensModel"_L1, TagShape::Text},
    {"Xmp.exifEX.BodySerialNumber", "SerialNumber"_L1, TagShape::Text},
    {"Xmp.exifEX.LensSerialNumber", "LensSerialNumber"_L1, TagShape::Text},
    {"Xmp.exifEX.CameraOwnerName", "OwnerName"_L1, TagShape::Text},
    {"Exif.Image.LensInfo", "LensInfo"_L1, TagShape::Numbers},
    {"Exif.Image.CameraSerialNumber", "SerialNumber"_L1, TagShape::Text},
    {"Exif.Image.ImageNumber", "ImageNumber"_L1, TagShape::Number},
    // What only the maker note tells.
    {"Exif.Canon.LensModel", "LensModel"_L1, TagShape::Text},
    {"Exif.Canon.SerialNumber", "SerialNumber"_L1, TagShape::Text},
    {"Exif.Canon.OwnerName", "OwnerName"_L1, TagShape::Text},
    {"Exif.Canon.FirmwareVersion", "Firmware"_L1, TagShape::Text},
    {"Exif.Canon.FileNumber", "ImageNumber"_L1, TagShape::Number},
    {"Exif.CanonSi.FlashBias", "FlashCompensation"_L1, TagShape::CanonEv},
    {"Exif.CanonCs.LensType", "LensID"_L1, TagShape::Code},
    {"Exif.Nikon3.Lens", "LensInfo"_L1, TagShape::Numbers},
    {"Exif.Nikon3.SerialNumber", "SerialNumber"_L1, TagShape::Text},
    {"Exif.Nikon3.ShutterCount", "ImageNumber"_L1, TagShape::Number},
    {"Exif.Nikon3.FlashComp", "FlashCompensation"_L1, TagShape::NikonEv},
    {"Exif.NikonLd1.LensIDNumber", "LensID"_L1, TagShape::Number},
    {"Exif.NikonLd2.LensIDNumber", "LensID"_L1, TagShape::Number},
    {"Exif.NikonLd3.LensIDNumber", "LensID"_L1, TagShape::Number},
};

} // namespace

std::span<const TagRow> exifAuxRows()
{
    return kRows;
}
