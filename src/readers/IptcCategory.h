// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ImageTags.h"

#include <QVariantMap>

/// The "{IPTC}" dictionary: the classic records, and for what they lack the same statement in XMP.
QVariantMap iptcCategory(const ImageTags &tags);
