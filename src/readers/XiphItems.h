// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"

#include <taglib/xiphcomment.h>

/// The comments of a FLAC or Ogg stream, each value an item of its own; nothing for null.
void addXiphItems(const TagLib::Ogg::XiphComment *comment, MediaReading &reading);
