// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"

#include <QVariantMap>

#include <functional>

/// The tags of an audio or video file as the rules look them up: values under their common keys (of
/// several, the last one counts; pictures are left out), "track", "numberOfTracks", "disk",
/// "numberOfDisks", and always "duration" (minutes and seconds) and "durationHMS".
/// console, which may be empty, takes a line for each format and each value that was transferred.
QVariantMap tagDictionary(const MediaReading &media,
                          const std::function<void(const QString &)> &console);
