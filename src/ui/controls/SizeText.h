// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Sizes of files as the desktop shows them.
namespace SizeText {

/// In the largest unit that leaves a number to the left of the point; tenths from one megabyte on.
QString of(qint64 bytes);

} // namespace SizeText
