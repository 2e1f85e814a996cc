// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

/// A smaller picture that a photo carries for viewers, and how it has to be turned.
struct EmbeddedPreview
{
    QByteArray bytes;    ///< a file of its own, mostly a JPEG; empty when there is none
    int orientation = 1; ///< as Exif counts it, 1 to 8
};

/// The smallest one that fills a square of edge pixels, else the largest. Never throws.
EmbeddedPreview embeddedPreview(ByteSource &source, int edge);
