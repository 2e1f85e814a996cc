// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/URLListProcessing.h"

#include <atomic>

/// Names of files are bytes. Qt's own panels pass over those that are no valid UTF-8, the desktop's
/// show them with U+FFFD; here they are found again. Blocks on the disk.
namespace UnshownNames {

enum class Kind { Files, Folders };

/// What a folder holds under names that Qt's panels pass over, hidden ones left out, in the order
/// of their bytes. Ends early when stop becomes true.
TFileURLs in(const QString &folder, Kind kind, const std::atomic<bool> &stop);
/// The path with names as they are on disk where a panel gave U+FFFD, as far as they can be told
/// apart.
QString restored(const QString &path);

} // namespace UnshownNames
