// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// The tags of audio and video files on offer, in their order.
namespace ID3AVSupport {

/// The common keys, the six derived ones, and "creationDate+", which no file ever has.
QStringList tags();

} // namespace ID3AVSupport
