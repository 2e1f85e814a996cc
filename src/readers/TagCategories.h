// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ImageWish.h"
#include "readers/ImageTags.h"

#include <QVariantMap>

/// The categories that come from Exif data and maker notes: "{Exif}", "{TIFF}", "{GPS}" ... Empty
/// ones are left out.
/// With a wish, values that are not wanted may be left out, as long as their category shows.
QVariantMap tagCategories(const ImageTags &tags, const ImageWish &wish = {});
