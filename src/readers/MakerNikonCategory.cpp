// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagTables.h"

using namespace Qt::StringLiterals;

namespace {

constexpr TagRow kRows[] = {
    {"Exif.Nikon3.ISOSpeed", "ISOSetting"_L1, TagShape::Numbers},
    {"Exif.Nikon3.ColorMode", "ColorMode"_L1, TagShape::Text},
    {"Exif.Nikon3.Quality", "Quality"_L1, TagShape::Text},
    {"Exif.Nikon3.WhiteBalance", "WhiteBalanceMode"_L1, TagShape::Text},
    {"Exif.Nikon3.Sharpening", "SharpenMode"_L1, TagShape::Text},
    {"Exif.Nikon3.Focus", "FocusMode"_L1, TagShape::Text},
    {"Exif.Nikon3.FlashSetting", "FlashSetting"_L1, TagShape::Text},
    {"Exif.Nikon3.ISOSelection", "ISOSelection"_L1, TagShape::Text},
    {"Exif.Nikon3.FlashComp", "FlashExposureComp"_L1, TagShape::NikonEv},
    {"Exif.Nikon3.ImageAdjustment", "ImageAdjustment"_L1, TagShape::Text},
    {"Exif.Nikon3.AuxiliaryLens", "LensAdapter"_L1, TagShape::Text},
    {"Exif.Nikon3.LensType", "LensType"_L1, TagShape::Number},
    {"Exif.Nikon3.Lens", "LensInfo"_L1, TagShape::Numbers},
    {"Exif.Nikon3.FocusDistance", "FocusDistance"_L1, TagShape::Number},
    {"Exif.Nikon3.DigitalZoom", "DigitalZoom"_L1, TagShape::Number},
    {"Exif.Nikon3.ShootingMode", "ShootingMode"_L1, TagShape::Number},
    {"Exif.Nikon3.ShutterCount", "ShutterCount"_L1, TagShape::Number},
    {"Exif.Nikon3.SerialNumber", "CameraSerialNumber"_L1, TagShape::Text},
    {"Exif.Nikon3.SerialNO", "CameraSerialNumber"_L1, TagShape::Text},
    // The first cameras numbered their tags differently.
    {"Exif.Nikon1.ISOSpeed", "ISOSetting"_L1, TagShape::Numbers},
    {"Exif.Nikon1.ColorMode", "ColorMode"_L1, TagShape::Text},
    {"Exif.Nikon1.Quality", "Quality"_L1, TagShape::Text},
    {"Exif.Nikon1.WhiteBalance", "WhiteBalanceMode"_L1, TagShape::Text},
    {"Exif.Nikon1.Sharpening", "SharpenMode"_L1, TagShape::Text},
    {"Exif.Nikon1.Focus", "FocusMode"_L1, TagShape::Text},
    {"Exif.Nikon1.FlashSetting", "FlashSetting"_L1, TagShape::Text},
    {"Exif.Nikon1.ISOSelection", "ISOSelection"_L1, TagShape::Text},
    {"Exif.Nikon1.ImageAdjustment", "ImageAdjustment"_L1, TagShape::Text},
    {"Exif.Nikon1.AuxiliaryLens", "LensAdapter"_L1, TagShape::Text},
    {"Exif.Nikon1.FocusDistance", "FocusDistance"_L1, TagShape::Number},
    {"Exif.Nikon1.DigitalZoom", "DigitalZoom"_L1, TagShape::Number},
    {"Exif.Nikon2.Quality", "Quality"_L1, TagShape::Any},
    {"Exif.Nikon2.ColorMode", "ColorMode"_L1, TagShape::Any},
    {"Exif.Nikon2.ImageAdjustment", "ImageAdjustment"_L1, TagShape::Any},
    {"Exif.Nikon2.ISOSpeed", "ISOSetting"_L1, TagShape::Any},
    {"Exif.Nikon2.WhiteBalance", "WhiteBalanceMode"_L1, TagShape::Any},
    {"Exif.Nikon2.Focus", "FocusMode"_L1, TagShape::Any},
    {"Exif.Nikon2.DigitalZoom", "DigitalZoom"_L1, TagShape::Any},
    {"Exif.Nikon2.AuxiliaryLens", "LensAdapter"_L1, TagShape::Any},
};

} // namespace

std::span<const TagRow> makerNikonRows()
{
    return kRows;
}
