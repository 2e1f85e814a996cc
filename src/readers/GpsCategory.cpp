// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagTables.h"

using namespace Qt::StringLiterals;

namespace {

constexpr TagRow kRows[] = {
    {"Exif.GPSInfo.GPSVersionID", "GPSVersion"_L1, TagShape::Numbers},
    {"Exif.GPSInfo.GPSLatitudeRef", "LatitudeRef"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSLatitude", "Latitude"_L1, TagShape::Degrees},
    {"Exif.GPSInfo.GPSLongitudeRef", "LongitudeRef"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSLongitude", "Longitude"_L1, TagShape::Degrees},
    {"Exif.GPSInfo.GPSAltitudeRef", "AltitudeRef"_L1, TagShape::Number},
    {"Exif.GPSInfo.GPSAltitude", "Altitude"_L1, TagShape::Number},
    {"Exif.GPSInfo.GPSTimeStamp", "TimeStamp"_L1, TagShape::ClockTime},
    {"Exif.GPSInfo.GPSSatellites", "Satellites"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSStatus", "Status"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSMeasureMode", "MeasureMode"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSDOP", "DOP"_L1, TagShape::Number},
    {"Exif.GPSInfo.GPSSpeedRef", "SpeedRef"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSSpeed", "Speed"_L1, TagShape::Number},
    {"Exif.GPSInfo.GPSImgDirection", "ImgDirection"_L1, TagShape::Number},
    {"Exif.GPSInfo.GPSMapDatum", "MapDatum"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSDestLatitudeRef", "DestLatitudeRef"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSDestLatitude", "DestLatitude"_L1, TagShape::Degrees},
    {"Exif.GPSInfo.GPSDestLongitudeRef", "DestLongitudeRef"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSDestLongitude", "DestLongitude"_L1, TagShape::Degrees},
    {"Exif.GPSInfo.GPSDestBearingRef", "DestBearingRef"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSDestBearing", "DestBearing"_L1, TagShape::Number},
    {"Exif.GPSInfo.GPSDestDistanceRef", "DestDistanceRef"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSDestDistance", "DestDistance"_L1, TagShape::Number},
    {"Exif.GPSInfo.GPSProcessingMethod", "ProcessingMethod"_L1, TagShape::Comment},
    {"Exif.GPSInfo.GPSAreaInformation", "AreaInformation"_L1, TagShape::Comment},
    {"Exif.GPSInfo.GPSDateStamp", "DateStamp"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSDifferential", "Differential"_L1, TagShape::Number},
    {"Exif.GPSInfo.GPSImgDirectionRef", "ImgDirectionRef"_L1, TagShape::Text},
    {"Exif.GPSInfo.GPSTrack", "Track"_L1, TagShape::Number},
    {"Exif.GPSInfo.GPSTrackRef", "TrackRef"_L1, TagShape::Text},
};

} // namespace

std::span<const TagRow> gpsRows()
{
    return kRows;
}
