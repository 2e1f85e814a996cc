// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MetadataProtocol.h"
#include "platform/TResult.h"

#include <QImage>

/// Pictures in memory: from and to plain pixels, turned upright, scaled, and as files. Nothing here
/// decodes a file. All may be called from any thread.
namespace Images {

enum class Format { Png, Jpeg };
inline constexpr int kStandardQuality = -1;

/// Null when the pixels are not as many as the sizes say.
QImage fromThumbnail(const MetadataThumbnail &thumbnail);
MetadataThumbnail toThumbnail(const QImage &image);

/// The picture as it should be seen, of one stored with an Exif orientation of 1 to 8; unchanged
/// for any other number.
QImage upright(const QImage &image, int orientation);
/// The same for a size alone.
QSize upright(const QSize &size, int orientation);

/// Scaled down with its aspect so that it fits the size; never empty, never larger than before.
QSize fitting(const QSize &size, const QSize &bounds);
QImage fitted(const QImage &image, const QSize &bounds);
/// With corners of a radius in the picture's own pixels, transparent outside.
QImage rounded(const QImage &image, qreal radius);

/// A file in memory; quality is 0 to 100. Transparent parts of a JPEG are white.
TResult<QByteArray> encoded(const QImage &image, Format format, int quality = kStandardQuality);
/// Writes the whole file or leaves what was there; why it failed, empty when it did not.
[[nodiscard]] QString save(const QImage &image, const QString &path, Format format,
                           int quality = kStandardQuality);

} // namespace Images
