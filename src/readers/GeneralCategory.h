// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ImageFacts.h"
#include "readers/ImageTags.h"

#include <QVariantMap>

/// Fills in what a picture of the TIFF kind says of its pixels; its tags are its header.
void addTiffFacts(const ImageTags &tags, ImageFacts &facts);

/// The top-level properties: "PixelWidth", "ProfileName" ...
QVariantMap generalProperties(const ImageFacts &facts, const ImageTags &tags);
