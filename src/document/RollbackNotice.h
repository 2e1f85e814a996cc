// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1StringView>

/// Notification that files of a run have their old names back, for the batch that they are in.
namespace RollbackNotice {

inline constexpr QLatin1StringView kRolledBack{"rolledBack"};
/// Path of the run's log (QString).
inline constexpr QLatin1StringView kLog{"log"};
/// How many files this rollback moved back (qlonglong).
inline constexpr QLatin1StringView kRestored{"restored"};

} // namespace RollbackNotice
