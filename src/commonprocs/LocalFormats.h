// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>

#include <array>
#include <ctime>
#include <map>
#include <memory>
#include <optional>
#include <string>

/// One thread's view of locale and zone, with the formatters made so far. The C library decides the
/// offset of every moment, because it understands each form of TZ and is what other programs show;
/// ICU's zone is used where it agrees, for the sake of its names, and a fixed one elsewhere. ICU is
/// only asked for texts, since its data take a while to load.
class LocalFormats
{
public:
    enum class Style : quint8 {
        LongDate,
        MediumDate,
        LongTime,
        MediumTime,
        MonthName,
        WeekdayName
    };

    /// The calling thread's formats, brought up to date with the environment.
    static LocalFormats &ofThisThread();

    /// Calendar and clock of a moment, in seconds since 1970.
    std::tm parts(std::time_t seconds) const;
    QString text(Style style, std::time_t seconds);

private:
    static constexpr size_t kStyleCount = 6;
    struct Zone
    {
        std::unique_ptr<icu::TimeZone> zone;
        std::array<std::unique_ptr<icu::DateFormat>, kStyleCount> formats;
    };

    void followEnvironment();
    Zone &zoneAt(std::time_t seconds);

    std::string m_localeName;
    std::optional<std::string> m_zoneName;
    bool m_isRead = false;       ///< the environment
    std::optional<Zone> m_named; ///< set with the locale by the first text
    icu::Locale m_locale;
    std::map<int32_t, Zone> m_fixed;
};
