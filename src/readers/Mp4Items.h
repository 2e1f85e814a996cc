// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"
#include "readers/ByteSource.h"

#include <optional>

/// The tags and the duration of an MP4, M4A or QuickTime file: user data, metadata by names and the
/// list of iTunes in the order of the file. Own code, because the media libraries drop or
/// merge the keys of QuickTime. Nothing when the file has no movie box.
std::optional<MediaReading> readMp4(ByteSource &source);

/// The first picture of the list of iTunes.
QByteArray mp4Cover(ByteSource &source, qint64 mostBytes);
