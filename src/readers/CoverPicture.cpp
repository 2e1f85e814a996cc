// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/CoverPicture.h"

#include "readers/FileSource.h"
#include "readers/MediaFormat.h"
#include "readers/Mp4Items.h"
#include "readers/TagLibCover.h"

#include <exception>

namespace {

constexpr qint64 kMostBytes = qint64{64} * 1024 * 1024;

QByteArray coverOf(ByteSource &source)
{
    const MediaFamily family = mediaFormatOf(source).family;
    if (family == MediaFamily::Mp4)
        return mp4Cover(source, kMostBytes);
    const QByteArray picture = coverWithTagLib(source, family);
    return picture.size() <= kMostBytes ? picture : QByteArray();
}

} // namespace

QByteArray readCoverPicture(const QByteArray &path)
{
    FileSource source(path);
    if (!source.isOpen())
        return {};
    try {
        return coverOf(source);
    } catch (const std::exception &) {
        return {}; // out of memory, or a fault of a library's
    }
}
