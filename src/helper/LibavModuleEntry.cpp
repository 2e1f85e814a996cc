// SPDX-License-Identifier: GPL-3.0-or-later
#include "helper/LibavModule.h"
#include "readers/LibavFile.h"
#include "readers/LibavPicture.h"
#include "readers/ReaderVersions.h"

extern "C" bool tavrinReadWithLibav(ByteSource &source, const char *demuxer, MediaReading &reading)
{
    std::optional<MediaReading> read = readWithLibav(source, demuxer);
    if (read)
        reading = std::move(*read);
    return read.has_value();
}

extern "C" void tavrinDecodeWithLibav(const CodedPicture &picture, int edge, QImage &image)
{
    image = decodeWithLibav(picture, edge);
}

extern "C" void tavrinLibavVersion(std::string &version)
{
    version = libavVersion();
}
