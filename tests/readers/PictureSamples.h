// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QVariantMap>

#include <vector>

/// One small picture of each format, made of bytes, and what must be read from it.
struct PictureSample
{
    const char *name;
    QByteArray bytes;
    QVariantMap expected; ///< keys as "PixelWidth" and "{GIF}/LoopCount"
};

std::vector<PictureSample> pictureSamples();

/// The picture as a JPEG file; exif, a TIFF structure, xmp and records of IPTC go in front of the
/// rest.
QByteArray jpegFile(const QImage &image, const QByteArray &exif = {}, const QByteArray &xmp = {},
                    const QByteArray &iptc = {});
/// The picture with text and resolution as PNG chunks, those texts behind the pixels.
QByteArray pngFile(const QImage &image, const QByteArray &chunksBehindPixels = {});
QByteArray pngChunk(const QByteArray &type, const QByteArray &contents);
/// A packet of a few properties, as "exif:FNumber='28/10' tiff:Make='M'", and of such as are made
/// of parts.
QByteArray xmpPacket(const char *attributes, const char *elements = "");
