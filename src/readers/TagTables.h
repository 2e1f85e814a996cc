// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/TagValue.h"

#include <QLatin1StringView>

#include <span>

/// One line of a category's table: where Exiv2 has the value, what we call it, and its shape. Of
/// several lines for one key, the first whose source the file has counts.
struct TagRow
{
    const char *source;
    QLatin1StringView key;
    TagShape shape;
};

std::span<const TagRow> exifRows();
std::span<const TagRow> exifAuxRows();
std::span<const TagRow> tiffRows();
std::span<const TagRow> gpsRows();
std::span<const TagRow> dngRows();
std::span<const TagRow> makerNikonRows();
std::span<const TagRow> makerCanonRows();
