// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/MediaReader.h"

std::optional<MediaReading> readMedia(const QByteArray &)
{
    return std::nullopt;
}
