// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>

/// The wish to stop, as Ctrl-C and the usual signals of an ending session express it. Signals only
/// set a flag: work ends between two files, never within one.
namespace Interrupt {

/// Makes writing to a closed pipe an error that is returned, so that a run never dies half-way
/// because its reader left.
void ignoreClosedPipes();
/// Takes over SIGINT, SIGTERM and SIGHUP; for verbs that look at requested() again and again.
void takeOverSignals();
const std::atomic<bool> &requested();

} // namespace Interrupt
