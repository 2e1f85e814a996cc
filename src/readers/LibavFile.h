// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"
#include "readers/ByteSource.h"

#include <optional>

/// Reads tags and duration with libavformat: by the given demuxer alone, from the given bytes
/// alone. References to other files and to the network are refused. Nothing when the bytes are not
/// what the demuxer reads.
std::optional<MediaReading> readWithLibav(ByteSource &source, const char *demuxer);
