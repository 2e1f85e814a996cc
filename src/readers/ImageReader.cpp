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

/// Such wishes, which nearly all are, need neither the other blocks of a JPEG nor a second reading
/// of its header.
bool isForHeader(const ImageWish &wish)
{
    return !wish.isAll() &&
           std::all_of(wish.tags.begin(), wish.tags.end(), [](const ImageWish::Tag &tag) {
               return tag.tag != kProfileName &&
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

bool hasAll(const QVariantMap &properties, const ImageWish &wish)
{
    return std::all_of(wish.tags.begin(), wish.tags.end(), [&](const ImageWish::Tag &tag) {
        return tag.category.isEmpty() ? properties.contains(tag.tag)
                                      : properties.value(tag.category).toMap().contains(tag.tag);
    });
}

QVariantMap propertiesOf(ByteSource &source, const ImageWish &wish)
{
    const ImageFormat format = imageFormatOf(source);
    ImageFacts facts = factsOf(format, source);
    if (format == ImageFormat::Jpeg && facts.width > 0 && isForHeader(wish)) {
        const QVariantMap properties = propertiesOf(facts, tagsOfExif(facts), wish);
        if (facts.xmp.isEmpty() || hasAll(properties, wish))
            return properties;
    }
    const ImageTags tags = readImageTags(source, format, facts);
    if (tags.isTiff)
        addTiffFacts(tags, facts);
    else if (format == ImageFormat::Other && tags.width == 0 && facts.colorModel.isEmpty())
        facts = readQtHeader(source);
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
