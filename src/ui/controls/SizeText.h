// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Sizes of files as the desktop's file managers show them: a kB is 1000 bytes.
namespace SizeText {

/// In the largest unit that leaves a number to the left of the point; tenths from one megabyte on.
QString of(qint64 bytes);

} // namespace SizeText
