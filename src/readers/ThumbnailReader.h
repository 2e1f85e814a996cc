// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>

/// The picture of one image file (or the cover of an audio or video file), upright, scaled down so
/// that it fits a square of edge pixels; null when there is none or it cannot be decoded. Never
/// throws. Not for the process that holds a batch, as readImageProperties.
QImage readThumbnail(const QByteArray &path, int edge);
