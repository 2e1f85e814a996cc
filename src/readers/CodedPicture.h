// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

#include <vector>

/// One still picture as its coder made it: a video coder in a HEIF or AVIF file, or that of a
/// format of which the whole file is one picture.
struct CodedPicture
{
    enum class Coder { Hevc, Av1, Jpeg2000, Psd, Tga };

    Coder coder = Coder::Hevc;
    int width = 0;
    int height = 0;
    int columns = 1;               ///< of the tiles that the picture is put together from
    QByteArray setup;              ///< what the coder's own header says
    std::vector<QByteArray> tiles; ///< row after row; none when there is no picture
};

/// The smallest thumbnail or picture of a HEIF or AVIF file that fills a square of edge pixels,
/// else the largest. Never throws but for want of memory.
CodedPicture codedPicture(ByteSource &file, int edge);

/// The picture that the file is, of this size; none when it is too large.
CodedPicture wholePicture(ByteSource &file, CodedPicture::Coder coder, qint64 width, qint64 height);
