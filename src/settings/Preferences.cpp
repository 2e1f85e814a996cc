// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Preferences.h"

#include "settings/PreferenceStore.h"
#include "settings/PrefsWriter.h"
#include "settings/UserDefaults.h"
#include "settings/logging.h"

namespace {

constexpr QLatin1StringView kAuthor{"author"};
constexpr QLatin1StringView kWrittenBy{"written by zel"};
constexpr QLatin1StringView kPrefSize{"prefSize"};
constexpr qint64 kSize = 8;
constexpr QLatin1StringView kVersion{"version"};
constexpr qint64 kCurrentVersion = 1;
constexpr QLatin1StringView kFirstRun{"firstrun"};
constexpr QLatin1StringView kRunCount{"runCount"};
constexpr QLatin1StringView kHasRated{"hasRated"};
constexpr QLatin1StringView kHasLaunchedBefore{"SUHasLaunchedBefore"};
constexpr QLatin1StringView kAutomaticChecks{"SUEnableAutomaticChecks"};

} // namespace

void TPrefsObject::reset()
{
    firstRun = true;
    runCount = 0;
    hasRated = false;
}

TPrefsObject &thePreferences()
{
    static TPrefsObject preferences;
    return preferences;
}

void initPreferences()
{
    thePreferences() = {};
    initPrefsWriter();
    if (prefsValid())
        ReadPreferences(thePreferences());
    else
        DefaultPrefs(thePreferences());
}

bool prefsValid()
{
    return PrefsReadNSString(kAuthor) == kWrittenBy;
}

void DefaultPrefs(TPrefsObject &prefs)
{
    prefs.version = kCurrentVersion;
    prefs.reset();
}

bool ReadPreferences(TPrefsObject &prefs)
{
    prefs.version = PrefsReadNumber(kVersion);
    prefs.firstRun = PrefsReadBool(kFirstRun);
    prefs.runCount = PrefsReadNumber(kRunCount);
    prefs.hasRated = PrefsReadBool(kHasRated);
    return true;
}

bool WritePreferences(const TPrefsObject &prefs)
{
    PrefsWriteBool(kHasLaunchedBefore, true);
    PrefsWriteBool(kAutomaticChecks, false);
    PrefsWriteString(kAuthor, kWrittenBy);
    PrefsWriteNumber(kPrefSize, kSize);
    PrefsWriteNumber(kVersion, prefs.version);
    PrefsWriteBool(kFirstRun, prefs.firstRun);
    PrefsWriteNumber(kRunCount, prefs.runCount);
    PrefsWriteBool(kHasRated, prefs.hasRated);
    return PrefsSyncAndFlush();
}

void resetSettingsForTests()
{
    PreferenceStore::resetForTests();
    UserDefaults::resetForTests();
    resetLogLevelForTests();
    thePreferences() = {};
}
