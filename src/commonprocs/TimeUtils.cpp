// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/TimeUtils.h"

#include "commonprocs/LocalFormats.h"

#include <unicode/uversion.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace Qt::StringLiterals;
using Style = LocalFormats::Style;

namespace {

constexpr int kSecondsPerMinute = 60;
constexpr int kMinutesPerHour = 60;
constexpr int kFirstYear = 1900; ///< of std::tm
constexpr int kYearsPerCentury = 100;

std::time_t wholeSeconds(TDate date)
{
    const qint64 seconds = date.nanos / TDate::kNanosPerSecond;
    return date.nanos % TDate::kNanosPerSecond < 0 ? seconds - 1 : seconds;
}

std::tm localTime(TDate date)
{
    return LocalFormats::ofThisThread().parts(wholeSeconds(date));
}

QString localText(Style style, TDate date)
{
    return date.isSet() ? LocalFormats::ofThisThread().text(style, wholeSeconds(date)) : u""_s;
}

QString numberText(TDate date, int (*element)(const std::tm &))
{
    return date.isSet() ? QString::number(element(localTime(date))) : u""_s;
}

} // namespace

namespace TimeUtils {

QString systemLongDate(TDate date)
{
    return localText(Style::LongDate, date);
}

QString systemMediumDate(TDate date)
{
    return localText(Style::MediumDate, date);
}

QString systemLongTime(TDate date)
{
    return localText(Style::LongTime, date);
}

QString systemMediumTime(TDate date)
{
    return localText(Style::MediumTime, date);
}

QString monthName(TDate date)
{
    return localText(Style::MonthName, date);
}

QString weekdayName(TDate date)
{
    return localText(Style::WeekdayName, date);
}

QString year(TDate date)
{
    return numberText(date, [](const std::tm &parts) { return parts.tm_year + kFirstYear; });
}

QString shortYear(TDate date)
{
    return numberText(
        date, [](const std::tm &parts) { return (parts.tm_year + kFirstYear) % kYearsPerCentury; });
}

QString month(TDate date)
{
    return numberText(date, [](const std::tm &parts) { return parts.tm_mon + 1; });
}

QString day(TDate date)
{
    return numberText(date, [](const std::tm &parts) { return parts.tm_mday; });
}

QString weekdayNumber(TDate date)
{
    return numberText(date, [](const std::tm &parts) { return parts.tm_wday + 1; });
}

int hour(TDate date)
{
    return localParts(date).hour;
}

int minute(TDate date)
{
    return localParts(date).minute;
}

int second(TDate date)
{
    return localParts(date).second;
}

CalendarParts localParts(TDate date)
{
    if (!date.isSet())
        return {};
    const std::tm parts = localTime(date);
    return {parts.tm_year + kFirstYear,
            parts.tm_mon + 1,
            parts.tm_mday,
            parts.tm_hour,
            parts.tm_min,
            parts.tm_sec};
}

QString iso8601(TDate date)
{
    if (!date.isSet())
        return u""_s;
    // The format has no seconds in its offset, so old local mean times are shown to the minute of
    // offset, with the clock moved accordingly: the moment stays exact.
    const auto offset = static_cast<int>(localTime(date).tm_gmtoff / kSecondsPerMinute);
    const std::time_t shifted = wholeSeconds(date) + std::time_t{offset} * kSecondsPerMinute;
    std::tm parts{};
    ::gmtime_r(&shifted, &parts);
    std::array<char, 96> text{};
    const int length =
        std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d%c%02d:%02d",
                      parts.tm_year + kFirstYear, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                      parts.tm_min, parts.tm_sec, offset < 0 ? '-' : '+',
                      std::abs(offset) / kMinutesPerHour, std::abs(offset) % kMinutesPerHour);
    return QString::fromLatin1(text.data(), length);
}

QString systemDateAndTime(TDate date)
{
    return date.isSet() ? systemMediumDate(date) + u' ' + systemMediumTime(date) : u""_s;
}

QString icuVersion()
{
    UVersionInfo version;
    std::array<char, U_MAX_VERSION_STRING_LENGTH> text{};
    u_getVersion(version);
    u_versionToString(version, text.data());
    return QString::fromLatin1(text.data());
}

} // namespace TimeUtils
