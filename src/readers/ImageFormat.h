// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

/// The formats whose headers this library reads itself; Other may still be one that Exiv2 knows.
enum class ImageFormat {
    Jpeg,
    Png,
    Gif,
    Webp,
    Bmff,
    Psd,
    Bmp,
    Jpeg2000,
    Crw,
    BigTiff,
    Pnm,
    Ico,
    Tga,
    Other
};

/// Which one the first bytes tell.
ImageFormat imageFormatOf(ByteSource &source);
