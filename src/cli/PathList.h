// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <functional>

/// Reads paths from a descriptor, which is not owned, one an entry ending in the separator. Empty
/// entries are passed over, and the last one needs no separator. take says whether to go on. 0, or
/// the errno that ended the reading.
int readPathList(int descriptor, char separator, const std::function<bool(QByteArrayView)> &take);
