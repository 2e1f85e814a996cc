// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

/// What the user has chosen for the window, in the user defaults. Main thread only.
namespace UiSettings {

/// The code of a language, such as "en"; empty: that of the system.
QString language();
void setLanguage(const QString &code);
bool showsWelcome();
void setShowsWelcome(bool shows);
/// Whether to look for a new version at start; off at first.
bool looksForUpdates();
void setLooksForUpdates(bool looks);
/// Where versions are announced; empty: nowhere.
QUrl updateFeed();
void setUpdateFeed(const QUrl &feed);
/// The day of the last look at start, as Julian day number; 0 for never.
qint64 lastUpdateDay();
void setLastUpdateDay(qint64 day);

} // namespace UiSettings
