// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ThumbnailReader.h"

#include "readers/CodedPicture.h"
#include "readers/CoverPicture.h"
#include "readers/EmbeddedPreview.h"
#include "readers/FileSource.h"
#include "readers/FormatHeaders.h"
#include "readers/GeneralCategory.h"
#include "readers/ImageFormat.h"
#include "readers/ImageTags.h"
#include "readers/LibavPicture.h"
#include "readers/MemorySource.h"
#include "readers/SourceDevice.h"

#include <QImageReader>
#include <QTransform>

#include <algorithm>
#include <exception>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMostMebibytes = 256;
// Drawings may refer to other files, which must not be opened.
constexpr const char *kRefusedFormats[] = {"svg", "svgz"};

bool isRefused(const QByteArray &format)
{
    return std::any_of(std::begin(kRefusedFormats), std::end(kRefusedFormats),
                       [&](const char *refused) { return format == refused; });
}

QSize fitting(const QSize &size, int edge)
{
    const bool fits = size.width() <= edge && size.height() <= edge;
    const QSize scaled = fits ? size : size.scaled(edge, edge, Qt::KeepAspectRatio);
    return scaled.expandedTo(QSize(1, 1));
}

QImage scaledDown(const QImage &image, int edge)
{
    const QSize size = fitting(image.size(), edge);
    return image.isNull() || image.size() == size
               ? image
               : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// Upright where the picture itself says how it is turned.
QImage decoded(ByteSource &source, int edge)
{
    SourceDevice device(source);
    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!reader.canRead() || isRefused(reader.format()))
        return {};
    if (const QSize size = reader.size(); size.isValid())
        reader.setScaledSize(fitting(size, edge));
    return scaledDown(reader.read(), edge);
}

/// Turns a picture as an Exif orientation asks for.
QImage turned(const QImage &image, int orientation)
{
    constexpr int kAngles[] = {0, 0, 180, 180, 270, 90, 90, 270};
    constexpr bool kMirrored[] = {false, true, false, true, true, false, true, false};
    const auto index = static_cast<size_t>(orientation - 1);
    const QImage mirrored = kMirrored[index] ? image.mirrored(true, false) : image;
    return kAngles[index] == 0 ? mirrored
                               : mirrored.transformed(QTransform().rotate(kAngles[index]));
}

/// The formats of which Qt reads nothing, or not everything, and libavcodec the whole file.
struct FileCoder
{
    ImageFormat format;
    CodedPicture::Coder coder;
    ImageFacts (*facts)(ByteSource &);
};
constexpr FileCoder kFileCoders[] = {
    {ImageFormat::Jpeg2000, CodedPicture::Coder::Jpeg2000, walkJpeg2000},
    {ImageFormat::Psd, CodedPicture::Coder::Psd, walkPsd},
    {ImageFormat::Tga, CodedPicture::Coder::Tga, readTgaHeader},
};

QImage wholePictureOf(ByteSource &file, const FileCoder &coder, int edge)
{
    const ImageFacts facts = coder.facts(file);
    const CodedPicture picture = wholePicture(file, coder.coder, facts.width, facts.height);
    if (picture.tiles.empty())
        return {};
    const QImage image = scaledDown(decodeWithLibav(picture, edge), edge);
    const ImageTags tags = readImageTags(file, coder.format, facts);
    const int orientation = generalProperties(facts, tags).value(u"Orientation"_s).toInt();
    return turned(image, std::max(orientation, 1));
}

QImage itemOf(ByteSource &file, int edge)
{
    const CodedPicture picture = codedPicture(file, edge);
    if (picture.tiles.empty())
        return {};
    const QImage image = scaledDown(decodeWithLibav(picture, edge), edge);
    return turned(image, std::max(walkBmff(file).orientation, 1));
}

/// What Qt has no plug-in for.
QImage codedPictureOf(ByteSource &file, ImageFormat format, int edge)
{
    if (format == ImageFormat::Bmff)
        return itemOf(file, edge);
    const auto coder = std::ranges::find(kFileCoders, format, &FileCoder::format);
    return coder == std::end(kFileCoders) ? QImage() : wholePictureOf(file, *coder, edge);
}

QImage previewOf(ByteSource &file, int edge)
{
    const EmbeddedPreview preview = embeddedPreview(file, edge);
    if (preview.bytes.isEmpty())
        return {};
    MemorySource source(preview.bytes);
    return turned(decoded(source, edge), preview.orientation);
}

QImage coverOf(const QByteArray &path, int edge)
{
    const QByteArray cover = readCoverPicture(path);
    if (cover.isEmpty())
        return {};
    MemorySource source(cover);
    return decoded(source, edge);
}

} // namespace

QImage readThumbnail(const QByteArray &path, int edge)
{
    FileSource file(path);
    if (!file.isOpen() || edge <= 0)
        return {};
    QImageReader::setAllocationLimit(kMostMebibytes);
    try {
        const ImageFormat format = imageFormatOf(file);
        QImage image = decoded(file, edge);
        // A PSD may have layers alone; then its preview knows more than its picture.
        const bool isPreviewFirst = format == ImageFormat::Psd;
        if (image.isNull() && !isPreviewFirst)
            image = codedPictureOf(file, format, edge);
        if (image.isNull())
            image = previewOf(file, edge);
        if (image.isNull() && isPreviewFirst)
            image = codedPictureOf(file, format, edge);
        return image.isNull() ? coverOf(path, edge) : image;
    } catch (const std::exception &) {
        return {}; // out of memory
    }
}
