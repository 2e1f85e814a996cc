// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

/// CRC-32C (Castagnoli) of the bytes. A first part's sum, given as start, goes on over a second.
quint32 crc32c(QByteArrayView bytes, quint32 start = 0);
