// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TDate.h"

#include <QString>

/// Elements of a date in the user's locale (LC_ALL, LC_TIME, LANG) and zone (TZ, else the
/// system's). Numbers are those of the Gregorian calendar and carry no leading zeros; texts follow
/// the locale. Of an unset date every text is "" and every number 0. Any thread may call:
/// formatters are kept per thread for the locale and zone in force, and a change of either takes
/// effect at once.
namespace TimeUtils {

QString systemLongDate(TDate date);
QString systemMediumDate(TDate date);
QString systemLongTime(TDate date);
QString systemMediumTime(TDate date);
QString year(TDate date);
/// Pattern "yy" read back as a number, so 2007 gives "7".
QString shortYear(TDate date);
QString monthName(TDate date);
QString month(TDate date);
QString day(TDate date);
QString weekdayName(TDate date);
/// 1 Sunday to 7 Saturday.
QString weekdayNumber(TDate date);
int hour(TDate date);
int minute(TDate date);
int second(TDate date);

/// Gregorian calendar parts in the local zone, for file names.
struct CalendarParts
{
    int year, month, day, hour, minute, second;
};
CalendarParts localParts(TDate date);
/// ISO 8601 with offset ("2025-07-03T14:05:09+02:00"), for JSON; "" when unset.
QString iso8601(TDate date);
/// System date and time formats, joined by a blank, for the text log.
QString systemDateAndTime(TDate date);

/// Of the ICU library in use, which knows the locales.
QString icuVersion();

} // namespace TimeUtils
