// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"

#include <taglib/asftag.h>

/// The content description and attributes of an ASF file (WMA, WMV); nothing for null.
void addAsfItems(const TagLib::ASF::Tag *tag, MediaReading &reading);
