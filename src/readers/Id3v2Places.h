// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

#include <vector>

/// Where the ID3v2 blocks of a file stand.
struct Id3v2Places
{
    std::vector<qint64> leading;  ///< one behind the other from the start of the file
    std::vector<qint64> appended; ///< at the end, told by a footer
    qint64 audioStart = 0;        ///< behind the leading blocks; 0 when there are none
};

Id3v2Places id3v2PlacesOf(ByteSource &source);

/// The block there without its extended header, for readers that lose frames behind one; empty when
/// it has none.
QByteArray id3v2WithoutExtension(ByteSource &source, qint64 at);
