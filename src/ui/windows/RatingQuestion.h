// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"

#include <QUrl>

/// Asks once in a long while whether the user would rate Tavrin, in the desktop's software centre.
/// Never again after a rating or a "never". Main thread only.
namespace RatingQuestion {

/// From one question to the next, and before the first.
inline constexpr qint64 kRunsBetween = 30;

/// Counts a start of the program; once a start, after the preferences were read.
void countRun();
bool isDue();
/// Asks if it is due; the answer is remembered. open shows a page and says whether it could.
void askIfDue(TDialogHost &host, const std::function<bool(const QUrl &)> &open);
/// With the desktop's own way to show a page.
void askIfDue(TDialogHost &host);

} // namespace RatingQuestion
