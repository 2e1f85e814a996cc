// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/EXIFSupport.h"

#include "commonprocs/StringAdditions.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kGeneralTags =
    "DPIHeight|DPIWidth|PixelWidth|PixelHeight|Depth|Orientation|IsFloat|IsIndexed|HasAlpha|"
    "ColorModel|ProfileName"_L1;

constexpr auto kExifTags =
    "ExposureTime|FNumber|ExposureProgram|SpectralSensitivity|ISOSpeedRatings|OECF|"
    "ExifVersion|DateTimeOriginal|DateTimeDigitized|ComponentsConfiguration|"
    "CompressedBitsPerPixel|ShutterSpeedValue|ApertureValue|BrightnessValue|CustomRendered|"
    "ExposureMode|WhiteBalance|DigitalZoomRatio|FocalLenIn35mmFilm|SceneCaptureType|"
    "GainControl|Contrast|Saturation|Sharpness|DeviceSettingDescription|SubjectDistRange|"
    "ImageUniqueID|Gamma|CFAPattern|SceneType|FileSource|SensingMethod|ExposureIndex|"
    "SubjectLocation|FocalPlaneResolutionUnit|FocalPlaneYResolution|FocalPlaneXResolution|"
    "SpatialFrequencyResponse|FlashEnergy|RelatedSoundFile|PixelYDimension|PixelXDimension|"
    "ColorSpace|FlashPixVersion|SubsecTimeDigitized|SubsecTimeOriginal|SubsecTime|"
    "UserComment|MakerNote|SubjectArea|FocalLength|Flash|LightSource|MeteringMode|"
    "SubjectDistance|MaxApertureValue|ExposureBiasValue"_L1;

constexpr auto kExifAuxTags =
    "LensInfo|LensModel|SerialNumber|LensID|LensSerialNumber|ImageNumber|FlashCompensation|"
    "OwnerName|Firmware"_L1;

constexpr auto kTIFFTags =
    "Compression|PhotometricInterpretation|DocumentName|ImageDescription|Make|Model|"
    "Orientation|XResolution|YResolution|ResolutionUnit|Software|TransferFunction|DateTime|"
    "Artist|HostComputer|Copyright|WhitePoint|PrimaryChromaticities"_L1;

constexpr auto kGIFTags =
    "LoopCount|DelayTime|ImageColorMap|HasGlobalColorMap|UnclampedDelayTime"_L1;

constexpr auto kJFIFTags = "JFIFVersion|XDensity|YDensity|DensityUnit|IsProgressive"_L1;

constexpr auto kPNGTags =
    "Gamma|InterlaceType|XPixelsPerMeter|YPixelsPerMeter|sRGBIntent|Chromaticities|Author|"
    "Copyright|Creation Time|Description|ModificationTime|Software|Title"_L1;

constexpr auto kIPTCTags =
    "ObjectTypeReference|ObjectAttributeReference|ObjectName|EditStatus|EditorialUpdate|"
    "Urgency|SubjectReference|Category|SupplementalCategory|FixtureIdentifier|Keywords|"
    "ContentLocationCode|ContentLocationName|ReleaseDate|Headline|Credit|Source|"
    "CopyrightNotice|Contact|Caption/Abstract|Writer/Editor|ImageType|ImageOrientation|"
    "LanguageIdentifier|StarRating|CreatorContactInfo|UsageTerms|Scene|"
    "OriginalTransmissionReference|Country/PrimaryLocationName|Country/PrimaryLocationCode|"
    "Province/State|SubLocation|City|BylineTitle|Byline|ObjectCycle|ProgramVersion|"
    "OriginatingProgram|DigitalCreationTime|DigitalCreationDate|TimeCreated|DateCreated|"
    "ReferenceNumber|ReferenceDate|ReferenceService|ActionAdvised|SpecialInstructions|"
    "ExpirationTime|ExpirationDate|ReleaseTime"_L1;

constexpr auto kGPSTags =
    "GPSVersion|LatitudeRef|Latitude|LongitudeRef|Longitude|AltitudeRef|Altitude|TimeStamp|"
    "Satellites|Status|MeasureMode|DOP|SpeedRef|Speed|ImgDirection|MapDatum|DestLatitudeRef|"
    "DestLatitude|DestLongitudeRef|DestLongitude|DestBearingRef|DestBearing|DestDistanceRef|"
    "DestDistance|ProcessingMethod|AreaInformation|DateStamp|Differential|ImgDirectionRef|"
    "Track|TrackRef"_L1;

constexpr auto kCIFFTags =
    "Description|Firmware|OwnerName|ImageName|ImageFileName|ReleaseMethod|ReleaseTiming|"
    "RecordID|SelfTimingTime|CameraSerialNumber|ImageSerialNumber|ContinuousDrive|FocusMode|"
    "MeteringMode|ShootingMode|LensMaxMM|LensMinMM|LensModel|WhiteBalanceIndex|"
    "FlashExposureComp|MeasuredEV"_L1;

constexpr auto kPhotoshopTags = "LayerNames"_L1;

constexpr auto kDNGTags =
    "DNGVersion|DNGBackwardVersion|UniqueCameraModel|LocalizedCameraModel|CameraSerialNumber|"
    "LensInfo"_L1;

constexpr auto kMakerNikonTags =
    "ISOSetting|ColorMode|Quality|WhiteBalanceMode|SharpenMode|FocusMode|FlashSetting|"
    "ISOSelection|FlashExposureComp|ImageAdjustment|LensAdapter|LensType|LensInfo|"
    "FocusDistance|DigitalZoom|ShootingMode|ShutterCount|CameraSerialNumber"_L1;

constexpr auto kMakerCanonTags =
    "OwnerName|CameraSerialNumber|ImageSerialNumber|FlashExposureComp|ContinuousDrive|"
    "LensModel|Firmware|AspectRatioInfo"_L1;

struct Category
{
    QLatin1StringView key;
    QLatin1StringView tags; ///< separated by "|"
};

constexpr Category kCategories[] = {
    {"{General}"_L1, kGeneralTags},
    {"{Exif}"_L1, kExifTags},
    {"{ExifAux}"_L1, kExifAuxTags},
    {"{TIFF}"_L1, kTIFFTags},
    {"{GIF}"_L1, kGIFTags},
    {"{JFIF}"_L1, kJFIFTags},
    {"{PNG}"_L1, kPNGTags},
    {"{IPTC}"_L1, kIPTCTags},
    {"{GPS}"_L1, kGPSTags},
    {"{CIFF}"_L1, kCIFFTags},
    {"{8BIM}"_L1, kPhotoshopTags},
    {"{DNG}"_L1, kDNGTags},
    {"{MakerNikon}"_L1, kMakerNikonTags},
    {"{MakerCanon}"_L1, kMakerCanonTags},
};

} // namespace

QStringList EXIFSupport::categories()
{
    QStringList keys;
    for (const Category &category : kCategories)
        keys.append(category.key);
    return keys;
}

QString EXIFSupport::titleForCategory(const QString &key)
{
    QString title = key;
    title.remove(u'{').remove(u'}');
    return insertBlankbeforeUpperCaseTransition(title);
}

QString EXIFSupport::categoryForTitle(const QString &title)
{
    QString name = title;
    name.remove(u' ');
    return u'{' + name + u'}';
}

QStringList EXIFSupport::tagsForCategory(const QString &key)
{
    const auto category = std::ranges::find(kCategories, key, &Category::key);
    if (category == std::ranges::end(kCategories))
        return {};
    return QString(category->tags).split(u'|');
}
