// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"
#include "readers/ByteSource.h"
#include "readers/CodedPicture.h"

#include <QImage>

#include <string>

/// What the module "tavrin-libav.so" beside the helper offers: readWithLibav, decodeWithLibav,
/// libavVersion.
/// Loading libavformat with all that it depends on takes longer than reading a hundred photos, so
/// it waits for the first file that needs it.
extern "C" bool tavrinReadWithLibav(ByteSource &source, const char *demuxer, MediaReading &reading);
extern "C" void tavrinDecodeWithLibav(const CodedPicture &picture, int edge, QImage &image);
extern "C" void tavrinLibavVersion(std::string &version);
