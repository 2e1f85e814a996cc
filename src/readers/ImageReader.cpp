// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ImageReader.h"

#include "readers/FileSource.h"
#include "readers/FormatHeaders.h"
#include "readers/GeneralCategory.h"
#include "readers/ImageTags.h"
#include "readers/IptcCategory.h"
#include "readers/TagCategories.h"

#include <algorithm>
#include <array>
#include <exception>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kProfileName{"ProfileName"};
/// What the Exif block of a JPEG and its header tell by themselves.
constexpr std::array kHeaderCategories{""_L1,       "{Exif}"_L1,       "{TIFF}"_L1,      "{GPS}"_L1,
                                       "{JFIF}"_L1, "{MakerNikon}"_L1, "{MakerCanon}"_L1};

/// Words without which a packet of XMP cannot tell a tag: namespaces and properties. Decoding it
/// takes longer than all the rest.
struct XmpWord
{
    QLatin1StringView category;
    QLatin1StringView tag; ///< empty for every one of the category
    const char *word;
};
constexpr char kExifSpace[] = "exif/1.0/";
constexpr char kTiffSpace[] = "tiff/1.0/";
constexpr XmpWord kXmpWords[] = {{"{Exif}"_L1, ""_L1, kExifSpace},
                                 {"{Exif}"_L1, "DateTimeOriginal"_L1, "DateCreated"},
                                 {"{Exif}"_L1, "DateTimeDigitized"_L1, "CreateDate"},
                                 {"{GPS}"_L1, ""_L1, "GPS"},
                                 {"{TIFF}"_L1, ""_L1, kTiffSpace},
                                 {"{TIFF}"_L1, "DateTime"_L1, "ModifyDate"},
                                 {"{TIFF}"_L1, "Software"_L1, "CreatorTool"},
                                 {""_L1, "Orientation"_L1, kTiffSpace},
                                 {""_L1, "DPIWidth"_L1, kTiffSpace},
                                 {""_L1, "DPIHeight"_L1, kTiffSpace}};

/// "{IPTC}" at the top level: whether there is one, the header alone cannot tell.
bool isWholeCategory(const ImageWish::Tag &tag)
{
    return tag.category.isEmpty() && tag.tag.startsWith(u'{');
}

/// Such wishes, which nearly all are, need neither the other blocks of a JPEG, but for its XMP at
/// times, nor a second reading of its header.
bool isForHeader(const ImageWish &wish)
{
    return !wish.isAll() &&
           std::all_of(wish.tags.begin(), wish.tags.end(), [](const ImageWish::Tag &tag) {
               return tag.tag != kProfileName && !isWholeCategory(tag) &&
                      std::find(kHeaderCategories.begin(), kHeaderCategories.end(), tag.category) !=
                          kHeaderCategories.end();
           });
}

ImageFacts factsOf(ImageFormat format, ByteSource &source)
{
    switch (format) {
    case ImageFormat::Jpeg:
        return readJpegHeader(source);
    case ImageFormat::Png:
        return readPngHeader(source);
    case ImageFormat::Gif:
        return walkGif(source);
    case ImageFormat::Webp:
        return walkWebp(source);
    case ImageFormat::Bmff:
        return walkBmff(source);
    case ImageFormat::Psd:
        return walkPsd(source);
    case ImageFormat::Bmp:
        return readBmpHeader(source);
    case ImageFormat::Jpeg2000:
        return walkJpeg2000(source);
    case ImageFormat::Crw:
        return walkCiff(source);
    case ImageFormat::BigTiff:
        return readBigTiff(source);
    case ImageFormat::Pnm:
        return readPnmHeader(source);
    case ImageFormat::Ico:
        return readIcoHeader(source);
    case ImageFormat::Tga:
        return readTgaHeader(source);
    case ImageFormat::Other:
        return walkRaw(source);
    }
    return {};
}

QVariantMap propertiesOf(const ImageFacts &facts, const ImageTags &tags, const ImageWish &wish)
{
    QVariantMap properties = generalProperties(facts, tags);
    properties.insert(facts.dictionaries);
    properties.insert(tagCategories(tags, wish));
    if (const QVariantMap iptc = iptcCategory(tags); !iptc.isEmpty())
        properties.insert(u"{IPTC}"_s, iptc);
    return properties;
}

bool hasTag(const QVariantMap &properties, const ImageWish::Tag &tag)
{
    return tag.category.isEmpty() ? properties.contains(tag.tag)
                                  : properties.value(tag.category).toMap().contains(tag.tag);
}

/// Whether the packet may have a tag that is wanted and not among the properties, or any tag of a
/// category that is wanted and not there: rules tell a missing category from a missing tag.
bool mayTellMore(const QByteArray &xmp, const QVariantMap &properties, const ImageWish &wish)
{
    return std::any_of(wish.tags.begin(), wish.tags.end(), [&](const ImageWish::Tag &tag) {
        const bool isAnyOfUse = !tag.category.isEmpty() && !properties.contains(tag.category);
        return !hasTag(properties, tag) && std::ranges::any_of(kXmpWords, [&](const XmpWord &row) {
            return row.category == tag.category && xmp.contains(row.word) &&
                   (isAnyOfUse || row.tag.isEmpty() || row.tag == tag.tag);
        });
    });
}

QVariantMap propertiesOfHeader(const ImageFacts &facts, const ImageWish &wish)
{
    ImageTags tags = tagsOfExif(facts);
    const QVariantMap properties = propertiesOf(facts, tags, wish);
    if (!mayTellMore(facts.xmp, properties, wish))
        return properties;
    addXmp(facts, tags);
    return propertiesOf(facts, tags, wish);
}

QVariantMap propertiesOf(ByteSource &source, const ImageWish &wish)
{
    const ImageFormat format = imageFormatOf(source);
    ImageFacts facts = factsOf(format, source);
    if (format == ImageFormat::Jpeg && facts.width > 0 && isForHeader(wish))
        return propertiesOfHeader(facts, wish);
    const ImageTags tags = readImageTags(source, format, facts);
    if (tags.isTiff)
        addTiffFacts(tags, facts);
    return propertiesOf(facts, tags, wish);
}

} // namespace

std::optional<QVariantMap> readImageProperties(const QByteArray &path, const ImageWish &wish)
{
    FileSource source(path);
    if (!source.isOpen())
        return std::nullopt;
    try {
        const QVariantMap properties = wish.of(propertiesOf(source, wish));
        return properties.isEmpty() ? std::nullopt : std::optional(properties);
    } catch (const std::exception &) {
        return std::nullopt; // out of memory
    }
}
