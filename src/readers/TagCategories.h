// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ImageTags.h"

#include <QVariantMap>

/// The categories that come from Exif data and maker notes: "{Exif}", "{TIFF}", "{GPS}" ... Empty
/// ones are left out.
QVariantMap tagCategories(const ImageTags &tags);
