// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ImageReader.h"

#include "readers/FileSource.h"
#include "readers/FormatHeaders.h"
#include "readers/GeneralCategory.h"
#include "readers/ImageTags.h"
#include "readers/IptcCategory.h"
#include "readers/TagCategories.h"

#include <exception>

using namespace Qt::StringLiterals;

namespace {

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
    case ImageFormat::Other:
        return {};
    }
    return {};
}

QVariantMap propertiesOf(ByteSource &source)
{
    const ImageFormat format = imageFormatOf(source);
    ImageFacts facts = factsOf(format, source);
    const ImageTags tags = readImageTags(source, format, facts);
    if (tags.isTiff)
        addTiffFacts(tags, facts);
    else if (format == ImageFormat::Other && tags.width == 0)
        facts = readQtHeader(source);
    QVariantMap properties = generalProperties(facts, tags);
    properties.insert(facts.dictionaries);
    properties.insert(tagCategories(tags));
    if (const QVariantMap iptc = iptcCategory(tags); !iptc.isEmpty())
        properties.insert(u"{IPTC}"_s, iptc);
    return properties;
}

} // namespace

std::optional<QVariantMap> readImageProperties(const QByteArray &path)
{
    FileSource source(path);
    if (!source.isOpen())
        return std::nullopt;
    try {
        const QVariantMap properties = propertiesOf(source);
        return properties.isEmpty() ? std::nullopt : std::optional(properties);
    } catch (const std::exception &) {
        return std::nullopt; // out of memory
    }
}
