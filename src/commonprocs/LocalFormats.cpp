// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/LocalFormats.h"

#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <string_view>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kLocaleVariables[] = {"LC_ALL", "LC_TIME", "LANG"};
constexpr const char *kZoneVariable = "TZ";
constexpr const char *kPlainLocale = "en_US_POSIX";
constexpr char16_t kMonthNamePattern[] = u"MMMM";
constexpr char16_t kWeekdayNamePattern[] = u"EEEE";

constexpr int kMillisecondsPerSecond = 1000;

/// Scripts that a locale's modifier ("sr_RS@latin") stands for.
constexpr std::pair<std::string_view, std::string_view> kScripts[] = {
    {"latin", "Latn"},
    {"cyrillic", "Cyrl"},
    {"devanagari", "Deva"},
};

using Style = LocalFormats::Style;

std::string localeVariable()
{
    for (const char *name : kLocaleVariables) {
        const char *value = std::getenv(name);
        if (value != nullptr && *value != '\0')
            return value;
    }
    return {};
}

std::optional<std::string> zoneVariable()
{
    const char *value = std::getenv(kZoneVariable);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

/// "de_DE.UTF-8@euro" as ICU knows it: no encoding, and of the modifiers only the scripts.
icu::Locale icuLocale(std::string_view variable)
{
    std::string name(variable.substr(0, variable.find_first_of(".@")));
    if (name.empty() || name == "C" || name == "POSIX")
        return icu::Locale(kPlainLocale);
    const size_t at = variable.find('@');
    for (const auto &[modifier, script] : kScripts) {
        if (at != std::string_view::npos && variable.substr(at + 1) == modifier)
            name.insert(std::min(name.find('_'), name.size()), "_" + std::string(script));
    }
    return icu::Locale::createCanonical(name.c_str());
}

/// The zone by its name, for the names that it gives to its times; null when ICU knows none.
std::unique_ptr<icu::TimeZone> namedZone(const std::optional<std::string> &variable)
{
    static std::mutex detecting; // the detection keeps its state in globals
    std::unique_ptr<icu::TimeZone> zone;
    if (variable) {
        const char *id = variable->c_str() + (variable->starts_with(':') ? 1 : 0);
        zone.reset(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(id)));
    } else {
        const std::lock_guard lock(detecting);
        zone.reset(icu::TimeZone::detectHostTimeZone());
    }
    return zone && *zone != icu::TimeZone::getUnknown() ? std::move(zone) : nullptr;
}

std::unique_ptr<icu::DateFormat> patternFormat(const char16_t *pattern, const icu::Locale &locale)
{
    UErrorCode status = U_ZERO_ERROR;
    auto format =
        std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(pattern), locale, status);
    return U_SUCCESS(status) ? std::move(format) : nullptr;
}

std::unique_ptr<icu::DateFormat> makeFormat(Style style, const icu::Locale &locale)
{
    using icu::DateFormat;
    const auto owned = [](DateFormat *format) { return std::unique_ptr<DateFormat>(format); };
    switch (style) {
    case Style::LongDate:
        return owned(DateFormat::createDateInstance(DateFormat::kLong, locale));
    case Style::MediumDate:
        return owned(DateFormat::createDateInstance(DateFormat::kMedium, locale));
    case Style::LongTime:
        return owned(DateFormat::createTimeInstance(DateFormat::kLong, locale));
    case Style::MediumTime:
        return owned(DateFormat::createTimeInstance(DateFormat::kMedium, locale));
    case Style::MonthName:
        return patternFormat(kMonthNamePattern, locale);
    case Style::WeekdayName:
        return patternFormat(kWeekdayNamePattern, locale);
    }
    return nullptr;
}

UDate milliseconds(std::time_t seconds)
{
    return static_cast<UDate>(seconds) * kMillisecondsPerSecond;
}

/// Difference to UTC in milliseconds.
int32_t offsetOf(const icu::TimeZone &zone, std::time_t seconds)
{
    int32_t standard = 0;
    int32_t saving = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone.getOffset(milliseconds(seconds), false, standard, saving, status);
    return standard + saving;
}

} // namespace

LocalFormats &LocalFormats::ofThisThread()
{
    thread_local LocalFormats formats;
    formats.followEnvironment();
    return formats;
}

std::tm LocalFormats::parts(std::time_t seconds) const
{
    std::tm result{};
    ::localtime_r(&seconds, &result);
    return result;
}

QString LocalFormats::text(Style style, std::time_t seconds)
{
    Zone &zone = zoneAt(seconds);
    auto &format = zone.formats[static_cast<size_t>(style)];
    if (!format) {
        format = makeFormat(style, m_locale);
        if (!format)
            return u""_s;
        format->setTimeZone(*zone.zone);
    }
    icu::UnicodeString text;
    format->format(milliseconds(seconds), text);
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

void LocalFormats::followEnvironment()
{
    std::string localeName = localeVariable();
    std::optional<std::string> zoneName = zoneVariable();
    if (m_isRead && localeName == m_localeName && zoneName == m_zoneName)
        return;
    m_isRead = true;
    ::tzset();
    m_localeName = std::move(localeName);
    m_zoneName = std::move(zoneName);
    m_fixed.clear();
    m_named.reset();
}

LocalFormats::Zone &LocalFormats::zoneAt(std::time_t seconds)
{
    if (!m_named) {
        m_locale = icuLocale(m_localeName);
        m_named.emplace().zone = namedZone(m_zoneName);
    }
    const auto offset = static_cast<int32_t>(parts(seconds).tm_gmtoff) * kMillisecondsPerSecond;
    if (m_named->zone && offsetOf(*m_named->zone, seconds) == offset)
        return *m_named;
    Zone &fixed = m_fixed[offset];
    if (!fixed.zone)
        fixed.zone = std::make_unique<icu::SimpleTimeZone>(offset, icu::UnicodeString());
    return fixed;
}
