// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/MediaFormat.h"

#include <QByteArray>

/// The front cover, else the first picture, of a file whose family TagLib reads; empty for none.
QByteArray coverWithTagLib(ByteSource &source, MediaFamily family);
