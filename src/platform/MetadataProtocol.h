// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ImageWish.h"
#include "platform/MediaReading.h"

#include <QByteArray>
#include <QFlags>
#include <QVariantMap>

#include <optional>

/// What a program asks its metadata helper about one file.
struct MetadataRequest
{
    enum Part {
        ImageProperties = 1,
        Media = 2,
        Thumbnail = 4,
    };
    Q_DECLARE_FLAGS(Parts, Part)

    quint64 id = 0; ///< comes back with the reply
    Parts parts;
    int edge = 0;    ///< of the square into which the thumbnail fits, in pixels
    QByteArray path; ///< of the file
    ImageWish wish;  ///< which of the image properties
};
Q_DECLARE_OPERATORS_FOR_FLAGS(MetadataRequest::Parts)

/// A small picture: four bytes a pixel as in a premultiplied 32-bit ARGB image of this machine, row
/// after row without gaps.
struct MetadataThumbnail
{
    int width = 0;
    int height = 0;
    QByteArray pixels;
};

/// What the helper found. Parts that were not asked for, or are not there, are unset.
struct MetadataReply
{
    quint64 id = 0;
    std::optional<QVariantMap> imageProperties;
    std::optional<MediaReading> media;
    std::optional<MetadataThumbnail> thumbnail;
};

/// The language between a program and its metadata helper: frames of a length and a CBOR item, over
/// a stream of bytes. The helper greets first; then requests are answered in their order. Neither
/// side trusts the other: the helper may have been taken over by the file that it reads.
namespace MetadataProtocol {

inline constexpr int kHeaderBytes = 4; ///< the length of what follows, low byte first
inline constexpr qsizetype kMaxRequest = qsizetype{8} * 1024;
inline constexpr qsizetype kMaxReply = qsizetype{16} * 1024 * 1024;
inline constexpr int kMaxEdge = 1024;
/// The longest path that a request can carry; no system opens longer ones.
inline constexpr qsizetype kMaxPath = 4096;
/// A request for more properties than that asks for all.
inline constexpr qsizetype kMaxWishBytes = 2048;

/// Whole frames. A reply that is too large for one says that nothing was found.
QByteArray greeting();
QByteArray frame(const MetadataRequest &request);
QByteArray frame(const MetadataReply &reply);

/// What the frames carried; nothing when it is anything but a well-formed message of its kind, with
/// sizes, counts and depths that this side is ready to hold.
bool isGreeting(const QByteArray &content);
std::optional<MetadataRequest> readRequest(const QByteArray &content);
std::optional<MetadataReply> readReply(const QByteArray &content);

} // namespace MetadataProtocol
