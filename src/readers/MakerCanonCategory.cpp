// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagTables.h"

using namespace Qt::StringLiterals;

namespace {

constexpr TagRow kRows[] = {
    {"Exif.Canon.OwnerName", "OwnerName"_L1, TagShape::Text},
    {"Exif.Canon.SerialNumber", "CameraSerialNumber"_L1, TagShape::Number},
    {"Exif.Canon.FileNumber", "ImageSerialNumber"_L1, TagShape::Number},
    {"Exif.CanonSi.FlashBias", "FlashExposureComp"_L1, TagShape::CanonEv},
    {"Exif.CanonCs.DriveMode", "ContinuousDrive"_L1, TagShape::Number},
    {"Exif.Canon.LensModel", "LensModel"_L1, TagShape::Text},
    {"Exif.Canon.FirmwareVersion", "Firmware"_L1, TagShape::Text},
    {"Exif.Canon.AspectInfo", "AspectRatioInfo"_L1, TagShape::Numbers},
};

} // namespace

std::span<const TagRow> makerCanonRows()
{
    return kRows;
}
