// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"
#include "readers/ByteSource.h"

/// What the module "tavrin-libav.so" beside the helper offers: readWithLibav. Loading libavformat
/// with all that it depends on takes longer than reading a hundred photos, so it waits for the
/// first file that needs it.
extern "C" bool tavrinReadWithLibav(ByteSource &source, const char *demuxer, MediaReading &reading);
