// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// What the program tells its caller. Where several apply, the first of Interrupted, UsageError,
/// NotConfirmed, Refused, Incomplete and Done counts.
namespace ExitStatus {

inline constexpr int kDone = 0;
inline constexpr int kIncomplete = 1; ///< files failed, were skipped or are missing, or none came
inline constexpr int kUsageError = 2; ///< line or recipe wrong, log or preset corrupt; nothing done
inline constexpr int kRefused = 3;    ///< critical problems; nothing renamed
inline constexpr int kNotConfirmed = 4; ///< nobody said yes, or the run could not be undone
inline constexpr int kInterrupted = 130;

} // namespace ExitStatus
