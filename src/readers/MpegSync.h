// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

/// Whether frames of MPEG audio (layers 1 to 3) begin here or a little later: several in a row that
/// agree with each other, since any data holds single ones by chance.
bool hasMpegAudio(ByteSource &source, qint64 start);

/// Whether frames of raw AAC begin exactly here.
bool startsWithAdts(ByteSource &source, qint64 start);
