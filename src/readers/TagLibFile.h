// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"
#include "readers/MediaFormat.h"

#include <optional>

/// Reads tags and duration with TagLib. Nothing for a family that TagLib does not read here, and
/// when the bytes are not valid for theirs.
std::optional<MediaReading> readWithTagLib(ByteSource &source, MediaFamily family);
