// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/MediaReader.h"

#include "readers/FileSource.h"
#include "readers/LibavFile.h"
#include "readers/MatroskaInfo.h"
#include "readers/MediaFormat.h"
#include "readers/Mp4Items.h"
#include "readers/TagLibFile.h"

#include <cstring>
#include <exception>

namespace {

constexpr char kMatroska[] = "matroska";

std::optional<MediaReading> readTags(ByteSource &source, const MediaFormat &format)
{
    switch (format.family) {
    case MediaFamily::None:
    case MediaFamily::Libav:
        return std::nullopt;
    case MediaFamily::Mp4:
        return readMp4(source);
    default:
        return readWithTagLib(source, format.family);
    }
}

/// libavformat reads what nobody else does, and finds durations that nobody else does.
std::optional<MediaReading> read(ByteSource &source)
{
    const MediaFormat format = mediaFormatOf(source);
    std::optional<MediaReading> reading = readTags(source, format);
    if ((reading && reading->duration > 0) || !format.demuxer)
        return reading;
    std::optional<MediaReading> second = readWithLibav(source, format.demuxer);
    const bool isMatroska = std::strcmp(format.demuxer, kMatroska) == 0;
    if (!second && isMatroska)
        return readMatroskaInfo(source);
    if (second && isMatroska && second->duration <= 0)
        second->duration = matroskaEnd(source);
    if (!reading)
        return second;
    if (second)
        reading->duration = second->duration;
    return reading;
}

} // namespace

std::optional<MediaReading> readMedia(const QByteArray &path)
{
    FileSource source(path);
    if (!source.isOpen())
        return std::nullopt;
    try {
        return read(source);
    } catch (const std::exception &) {
        return std::nullopt; // out of memory, or a fault of a library's
    }
}
