// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/images/Images.h"

#include "ui/images/ImageCanvas.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainterPath>
#include <QSaveFile>
#include <QTransform>

#include <cstring>

namespace {

constexpr QImage::Format kPlain = QImage::Format_ARGB32_Premultiplied;
constexpr int kBytesPerPixel = 4;
constexpr const char *kFormats[] = {"png", "jpeg"};

/// What has to be done to a stored picture: first mirrored, then turned clockwise.
struct Turn
{
    bool isMirrored;
    int angle;
};
constexpr Turn kTurns[] = {{false, 0},  {true, 0},   {false, 180}, {true, 180},
                           {true, 270}, {false, 90}, {true, 90},   {false, 270}};

Turn turnFor(int orientation)
{
    const bool isKnown = orientation >= 1 && orientation <= 8;
    return kTurns[isKnown ? orientation - 1 : 0];
}

QImage onWhite(const QImage &image)
{
    QImage opaque(image.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    QPainter(&opaque).drawImage(opaque.rect(), image);
    return opaque;
}

} // namespace

namespace Images {

QImage fromThumbnail(const MetadataThumbnail &thumbnail)
{
    const qsizetype row = qsizetype{kBytesPerPixel} * thumbnail.width;
    if (thumbnail.width <= 0 || thumbnail.height <= 0 ||
        thumbnail.pixels.size() != row * thumbnail.height)
        return {};
    QImage image(thumbnail.width, thumbnail.height, kPlain);
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(image.scanLine(y), thumbnail.pixels.constData() + row * y,
                    static_cast<std::size_t>(row));
    return image;
}

MetadataThumbnail toThumbnail(const QImage &image)
{
    const QImage plain = image.convertToFormat(kPlain);
    MetadataThumbnail thumbnail{plain.width(), plain.height(), {}};
    for (int y = 0; y < plain.height(); ++y)
        thumbnail.pixels.append(
            QByteArrayView(plain.constScanLine(y), qsizetype{kBytesPerPixel} * plain.width()));
    return thumbnail;
}

QImage upright(const QImage &image, int orientation)
{
    const Turn turn = turnFor(orientation);
    const QImage mirrored = turn.isMirrored ? image.mirrored(true, false) : image;
    return turn.angle == 0 ? mirrored : mirrored.transformed(QTransform().rotate(turn.angle));
}

QSize upright(const QSize &size, int orientation)
{
    return turnFor(orientation).angle % 180 == 0 ? size : size.transposed();
}

QSize fitting(const QSize &size, const QSize &bounds)
{
    const bool fits = size.width() <= bounds.width() && size.height() <= bounds.height();
    return (fits ? size : size.scaled(bounds, Qt::KeepAspectRatio)).expandedTo(QSize(1, 1));
}

QImage fitted(const QImage &image, const QSize &bounds)
{
    const QSize size = fitting(image.size(), bounds);
    return image.isNull() || size == image.size()
               ? image
               : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage rounded(const QImage &image, qreal radius)
{
    if (image.isNull())
        return image;
    ImageCanvas canvas(image.size());
    QPainterPath shape;
    shape.addRoundedRect(QRectF(QPointF(), image.size()), radius, radius);
    canvas->setClipPath(shape);
    canvas->fillPath(shape, QBrush(image));
    return canvas.finish();
}

TResult<QByteArray> encoded(const QImage &image, Format format, int quality)
{
    using Result = TResult<QByteArray>;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, kFormats[static_cast<int>(format)]);
    writer.setQuality(quality);
    const bool needsGround = format == Format::Jpeg && image.hasAlphaChannel();
    return writer.write(needsGround ? onWhite(image) : image)
               ? Result(bytes)
               : Result::failure(writer.errorString());
}

QString save(const QImage &image, const QString &path, Format format, int quality)
{
    const TResult<QByteArray> bytes = encoded(image, format, quality);
    if (!bytes)
        return bytes.message();
    QSaveFile file(path);
    const bool isSaved = file.open(QIODevice::WriteOnly) &&
                         file.write(bytes.value()) == bytes.value().size() && file.commit();
    return isSaved ? QString() : file.errorString();
}

} // namespace Images
