// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/CodedPicture.h"

#include <QImage>

/// Decodes a still picture with libavcodec, thinned out to less than twice the edge where it is
/// larger; null when it cannot be decoded.
QImage decodeWithLibav(const CodedPicture &picture, int edge);
