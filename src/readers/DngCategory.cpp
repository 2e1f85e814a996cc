// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagTables.h"

using namespace Qt::StringLiterals;

namespace {

constexpr TagRow kRows[] = {
    {"Exif.Image.DNGVersion", "DNGVersion"_L1, TagShape::Numbers},
    {"Exif.Image.DNGBackwardVersion", "DNGBackwardVersion"_L1, TagShape::Numbers},
    {"Exif.Image.UniqueCameraModel", "UniqueCameraModel"_L1, TagShape::Text},
    {"Exif.Image.LocalizedCameraModel", "LocalizedCameraModel"_L1, TagShape::Text},
    {"Exif.Image.CameraSerialNumber", "CameraSerialNumber"_L1, TagShape::Text},
    {"Exif.Image.LensInfo", "LensInfo"_L1, TagShape::Numbers},
};

} // namespace

std::span<const TagRow> dngRows()
{
    return kRows;
}
