// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"
#include "readers/ByteSource.h"

#include <optional>

/// Title and duration as the head of a Matroska file states them, which is all there is of a file
/// that ends before its tracks are described. Nothing when it does not say how long it is.
std::optional<MediaReading> readMatroskaInfo(ByteSource &source);

/// When the last picture or sound begins, in seconds; 0 when there is none. For files whose writer
/// could not go back to the head, as recordings of browsers and those that broke off.
double matroskaEnd(ByteSource &source);
