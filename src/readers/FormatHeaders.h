// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"
#include "readers/ImageFacts.h"

// One reader a format, each in the file of its name. They read headers only, take any bytes for a
// source, and leave out what a broken file does not tell.

ImageFacts readJpegHeader(ByteSource &source);
ImageFacts readPngHeader(ByteSource &source);
ImageFacts walkGif(ByteSource &source);
ImageFacts walkWebp(ByteSource &source);
ImageFacts walkBmff(ByteSource &source);
ImageFacts walkPsd(ByteSource &source);
ImageFacts readBmpHeader(ByteSource &source);
ImageFacts walkJpeg2000(ByteSource &source);
ImageFacts walkCiff(ByteSource &source);
/// TIFF of the kind for files beyond 4 GiB: its folders as Exif data, which tell the rest.
ImageFacts readBigTiff(ByteSource &source);
/// Of raw photos only what Exiv2 does not tell: what the sensor's samples are.
ImageFacts walkRaw(ByteSource &source);
/// PBM, PGM and PPM.
ImageFacts readPnmHeader(ByteSource &source);
/// Icons and mouse cursors: their first picture.
ImageFacts readIcoHeader(ByteSource &source);
ImageFacts readTgaHeader(ByteSource &source);
