// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"

#include <QByteArray>

#include <optional>

/// The tags and the duration of one audio or video file. Goes by the contents of the file, never by
/// its name; opens no other file and no network. Nothing when it is no media file. Never throws.
/// Not for the process that holds a batch: a hostile file may crash or stall the libraries
/// underneath. Any thread, one file at a time a process.
std::optional<MediaReading> readMedia(const QByteArray &path);
