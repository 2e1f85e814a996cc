// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/GeneralCategory.h"

#include "readers/ProfileName.h"
#include "readers/Resolution.h"
#include "readers/TagValue.h"

#include <exception>
#include <string>

using namespace Qt::StringLiterals;

namespace {

const QString kSrgbName = u"sRGB IEC61966-2.1"_s;
constexpr int kMostSubImages = 9;
constexpr qint64 kUnspecifiedAlpha = 0;
enum Unit : int { NoUnit = 1, Inch = 2, Centimetre = 3 };

/// The numbers of a tag; none when it is absent or broken.
QVariantList numbersAt(const Exiv2::ExifData &exif, const std::string &key)
{
    try {
        const auto it = exif.findKey(Exiv2::ExifKey(key));
        return it == exif.end() ? QVariantList()
                                : shapedValue(it->value(), TagShape::Numbers).toList();
    } catch (const std::exception &) {
        return {};
    }
}

double numberAt(const Exiv2::ExifData &exif, const std::string &key, double otherwise = 0)
{
    const QVariantList numbers = numbersAt(exif, key);
    return numbers.isEmpty() ? otherwise : numbers.front().toDouble();
}

/// Where the tags of the full picture stand: raw files and DNG put a small preview first.
std::string mainGroup(const Exiv2::ExifData &exif)
{
    const auto isMain = [&](const std::string &group) {
        return numberAt(exif, group + "NewSubfileType", 1) == 0;
    };
    const std::string first = "Exif.Image.";
    if (isMain(first) || numberAt(exif, first + "NewSubfileType", 0) == 0)
        return first;
    for (int i = 1; i <= kMostSubImages; ++i) {
        const std::string group = "Exif.SubImage" + std::to_string(i) + '.';
        if (isMain(group))
            return group;
    }
    return first;
}

QString colorModelOf(int photometric)
{
    switch (photometric) {
    case 0: // white is zero
    case 1: // black is zero
    case 4: // a mask
        return kModelGray;
    case 5:
        return kModelCmyk;
    case 8: // and two variants
    case 9:
    case 10:
        return kModelLab;
    default:
        return kModelRgb;
    }
}

bool isAlpha(const QVariantList &extraSamples)
{
    for (const QVariant &kind : extraSamples) {
        if (kind.toLongLong() != kUnspecifiedAlpha)
            return true;
    }
    return false;
}

void insertPositive(QVariantMap &map, const QString &key, double number)
{
    if (number > 0)
        map.insert(key, number);
}

struct Dpi
{
    double x = 0;
    double y = 0;
};

/// Goes by the parts of the fraction, whose quotient may be rounded already.
double dpiAt(const Exiv2::ExifData &exif, const std::string &key, int unit)
{
    const double dots = numberAt(exif, key);
    if (dots <= 0 || unit != Centimetre)
        return unit == Inch ? dots : 0;
    const auto *rationals =
        dynamic_cast<const Exiv2::URationalValue *>(&exif.findKey(Exiv2::ExifKey(key))->value());
    return rationals ? dpiOfCentimetres(rationals->value_[0].first, rationals->value_[0].second)
                     : dpiOfCentimetres(dots);
}

Dpi dpiOf(const Exiv2::ExifData &exif)
{
    const int unit = static_cast<int>(numberAt(exif, "Exif.Image.ResolutionUnit", Inch));
    return {dpiAt(exif, "Exif.Image.XResolution", unit),
            dpiAt(exif, "Exif.Image.YResolution", unit)};
}

/// In Exif data wins over the container's own statement: it is the camera's or the editor's. XMP
/// often outlives a change of the pixels.
void insertDpi(QVariantMap &map, const ImageFacts &facts, const ImageTags &tags)
{
    Dpi dpi = dpiOf(tags.exif);
    if (dpi.x <= 0 || dpi.y <= 0)
        dpi = {facts.dpiWidth, facts.dpiHeight};
    if (dpi.x <= 0 && dpi.y <= 0)
        dpi = dpiOf(tags.exifOfXmp);
    insertPositive(map, u"DPIWidth"_s, dpi.x);
    insertPositive(map, u"DPIHeight"_s, dpi.y);
}

/// 0 when nobody states one. What a container does to the picture holds, whatever the Exif says.
int orientationOf(const ImageFacts &facts, const ImageTags &tags)
{
    if (facts.orientation > 0)
        return facts.orientation;
    const double ofXmp = numberAt(tags.exifOfXmp, "Exif.Image.Orientation");
    const double stated = numberAt(tags.exif, "Exif.Image.Orientation", ofXmp);
    return stated >= 1 && stated <= 8 ? static_cast<int>(stated) : 0;
}

QString profileNameOf(const ImageFacts &facts, const ImageTags &tags)
{
    const QByteArray &profile = facts.profile.isEmpty() ? tags.profile : facts.profile;
    if (!profile.isEmpty())
        return profileName(profile);
    const bool isSrgb = facts.isSrgb || numberAt(tags.exif, "Exif.Photo.ColorSpace") == 1;
    return isSrgb ? kSrgbName : QString();
}

} // namespace

void addTiffFacts(const ImageTags &tags, ImageFacts &facts)
{
    const std::string group = mainGroup(tags.exif);
    facts.width = static_cast<qint64>(numberAt(tags.exif, group + "ImageWidth"));
    facts.height = static_cast<qint64>(numberAt(tags.exif, group + "ImageLength"));
    facts.depth = static_cast<int>(numberAt(tags.exif, group + "BitsPerSample", 1));
    facts.isFloat = numberAt(tags.exif, group + "SampleFormat") == 3;
    const int photometric =
        static_cast<int>(numberAt(tags.exif, group + "PhotometricInterpretation", 2));
    facts.colorModel = colorModelOf(photometric);
    facts.isIndexed = photometric == 3;
    facts.hasAlpha = isAlpha(numbersAt(tags.exif, group + "ExtraSamples"));
}

QVariantMap generalProperties(const ImageFacts &facts, const ImageTags &tags)
{
    QVariantMap map;
    const qint64 width = facts.width > 0 ? facts.width : tags.width;
    const qint64 height = facts.height > 0 ? facts.height : tags.height;
    if (width > 0 && height > 0) {
        map.insert(u"PixelWidth"_s, width);
        map.insert(u"PixelHeight"_s, height);
    }
    if (facts.depth > 0)
        map.insert(u"Depth"_s, facts.depth);
    if (!facts.colorModel.isEmpty())
        map.insert(u"ColorModel"_s, facts.colorModel);
    if (facts.hasAlpha)
        map.insert(u"HasAlpha"_s, *facts.hasAlpha ? 1 : 0);
    if (facts.isIndexed)
        map.insert(u"IsIndexed"_s, 1);
    if (facts.isFloat)
        map.insert(u"IsFloat"_s, 1);
    if (const int orientation = orientationOf(facts, tags); orientation > 0)
        map.insert(u"Orientation"_s, orientation);
    insertDpi(map, facts, tags);
    if (const QString name = profileNameOf(facts, tags); !name.isEmpty())
        map.insert(u"ProfileName"_s, name);
    return map;
}
