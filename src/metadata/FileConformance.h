// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileItem.h"

/// Whether a file counts as an image, as audio, as a movie ... (a TypeIdentifiers constant), by the
/// extension of its name; a folder is never a file of such a type. Reads the head of files that may
/// be transport streams, no others. May be called from any thread.
bool fileConformsTo(const TFileItem &item, QLatin1StringView type);
