// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

#include <exiv2/image.hpp>
#include <memory>

/// Makes Exiv2 ready and silent; every use of it goes through here first. May be called often.
void prepareExiv2();

/// A picture with as much of its metadata as could be read; null when the source is none. Throws
/// what Exiv2 throws.
std::unique_ptr<Exiv2::Image> openExivImage(ByteSource &source);
