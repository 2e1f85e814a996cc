// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

/// The preferences in memory. There is one for the whole program; it belongs to the main thread.
struct TPrefsObject
{
    qint64 version = 1;
    bool firstRun = true;
    qint64 runCount = 0;
    bool hasRated = false;

    /// The defaults of everything but the version.
    void reset();

    friend bool operator==(const TPrefsObject &, const TPrefsObject &) = default;
};

/// Makes the program's preferences and fills them: from the store when that is valid, else with the
/// defaults, writing nothing.
void initPreferences();
/// The program's preferences; the defaults before initPreferences.
TPrefsObject &thePreferences();

/// True when the store carries the mark of this program, text for text.
bool prefsValid();
void DefaultPrefs(TPrefsObject &prefs);
bool ReadPreferences(TPrefsObject &prefs);
/// Writes fields and marks and syncs the store; false when the disk refused.
bool WritePreferences(const TPrefsObject &prefs);

/// Forgets everything read so far: preferences, store, user defaults and the log level.
void resetSettingsForTests();
