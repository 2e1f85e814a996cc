// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"
#include "readers/ImageTags.h"

/// Gives back to the times of the IPTC records the text that the file has: Exiv2 makes them times
/// with a zone, whether they have one or not. Where the records stand packed they stay like that.
void keepTimesAsStored(ByteSource &source, ImageTags &tags);
