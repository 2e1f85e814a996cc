// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

/// Whether frames of MPEG audio (layers 1 to 3) begin here or a little later: several in a row that
/// agree with each other, since any data holds single ones by chance.
bool hasMpegAudio(ByteSource &source, qint64 start);

/// How many seconds the frames of MPEG audio from the first to the last place take when their bit
/// rates differ; nothing when they do not, as far as samples tell.
std::optional<double> durationOfManyRates(ByteSource &source, qint64 first, qint64 last);

/// Whether frames of raw AAC begin exactly here.
bool startsWithAdts(ByteSource &source, qint64 start);
