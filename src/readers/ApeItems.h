// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"

#include <taglib/apetag.h>

/// The tags of an APE block; nothing for null.
void addApeItems(const TagLib::APE::Tag *tag, MediaReading &reading);
