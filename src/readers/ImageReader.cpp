// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ImageReader.h"

std::optional<QVariantMap> readImageProperties(const QByteArray &)
{
    return std::nullopt;
}
