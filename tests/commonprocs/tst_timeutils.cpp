// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/TimeUtils.h"
#include "support/Table.h"

#include <array>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace TimeUtils;

namespace {

// 2025-07-03 12:05:09 UTC, a Thursday.
constexpr TDate kSummer = TDate::fromSeconds(1'751'544'309);
// 2007-01-07 23:30:00 UTC, a Sunday.
constexpr TDate kWinter = TDate::fromSeconds(1'168'212'600);

} // namespace

/// Every row sets its own locale and zone; a change takes effect at the next call.
class TestTimeUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        qunsetenv("LC_TIME");
        qunsetenv("LANG");
        qputenv("LC_ALL", "C.UTF-8");
        qputenv("TZ", "UTC");
    }

    void systemFormats_data()
    {
        Table<QByteArray, QByteArray, TDate, QStringList>("locale", "zone", "date", "expected");
        const auto row = [](const char *locale, const char *zone, TDate date,
                            const QStringList &expected) {
            QTest::addRow("%s, %s", locale, zone)
                << QByteArray(locale) << QByteArray(zone) << date << expected;
        };
        row("C.UTF-8", "UTC", kSummer,
            {u"July 3, 2025"_s, u"Jul 3, 2025"_s, u"12:05:09 PM UTC"_s, u"12:05:09 PM"_s, u"July"_s,
             u"Thursday"_s, u"Jul 3, 2025 12:05:09 PM"_s});
        row("en_US.UTF-8", "America/New_York", kWinter,
            {u"January 7, 2007"_s, u"Jan 7, 2007"_s, u"6:30:00 PM EST"_s, u"6:30:00 PM"_s,
             u"January"_s, u"Sunday"_s, u"Jan 7, 2007 6:30:00 PM"_s});
        row("de_DE.UTF-8@euro", "Europe/Berlin", kWinter,
            {u"8. Januar 2007"_s, u"08.01.2007"_s, u"00:30:00 MEZ"_s, u"00:30:00"_s, u"Januar"_s,
             u"Montag"_s, u"08.01.2007 00:30:00"_s});
        row("sr_RS.UTF-8@latin", "Europe/Belgrade", kSummer,
            {u"3. jul 2025."_s, u"3. 7. 2025."_s, u"14:05:09 CEST"_s, u"14:05:09"_s, u"jul"_s,
             u"četvrtak"_s, u"3. 7. 2025. 14:05:09"_s});
    }

    void systemFormats()
    {
        QFETCH(QByteArray, locale);
        QFETCH(QByteArray, zone);
        QFETCH(TDate, date);
        QFETCH(QStringList, expected);
        qputenv("LC_ALL", locale);
        qputenv("TZ", zone);
        QStringList actual{systemLongDate(date),   systemMediumDate(date), systemLongTime(date),
                           systemMediumTime(date), monthName(date),        weekdayName(date),
                           systemDateAndTime(date)};
        // Which blank stands before AM and PM depends on the version of the locale data.
        actual.replaceInStrings(u"\u202F"_s, u" "_s);
        QCOMPARE(actual, expected);
    }

    void localeVariablesInTheirOrder_data()
    {
        const Table<QByteArray, QByteArray, QByteArray, QString> row("all", "time", "lang",
                                                                     "month");
        const QByteArray german("de_DE.UTF-8");
        const QByteArray french("fr_FR.UTF-8");
        row("LC_ALL first", german, french, french, u"Juli");
        row("LC_TIME next", QByteArray(), german, french, u"Juli");
        row("LANG last", QByteArray(), QByteArray(), german, u"Juli");
        row("none", QByteArray(), QByteArray(), QByteArray(), u"July");
    }

    void localeVariablesInTheirOrder()
    {
        QFETCH(QByteArray, all);
        QFETCH(QByteArray, time);
        QFETCH(QByteArray, lang);
        qputenv("LC_ALL", all);
        qputenv("LC_TIME", time);
        qputenv("LANG", lang);
        QTEST(monthName(kSummer), "month");
    }

    void numbers_data()
    {
        // expected: year, short year, month, day, weekday
        Table<QByteArray, QByteArray, TDate, QString, QString>("locale", "zone", "date", "expected",
                                                               "clock");
        const auto row = [](const char *locale, const char *zone, TDate date,
                            const QString &expected, const QString &clock) {
            QTest::addRow("%s, %s, %lld", locale, zone, static_cast<long long>(date.nanos))
                << QByteArray(locale) << QByteArray(zone) << date << expected << clock;
        };
        row("C", "UTC", kSummer, u"2025 25 7 3 5"_s, u"12:5:9"_s);
        row("C", "Europe/Berlin", kSummer, u"2025 25 7 3 5"_s, u"14:5:9"_s);
        row("C", "Europe/Berlin", kWinter, u"2007 7 1 8 2"_s, u"0:30:0"_s);
        // Texts would show the Buddhist or Persian year; numbers stay Gregorian and in plain
        // digits.
        row("th_TH.UTF-8", "UTC", kWinter, u"2007 7 1 7 1"_s, u"23:30:0"_s);
        row("fa_IR.UTF-8", "UTC", kWinter, u"2007 7 1 7 1"_s, u"23:30:0"_s);
        row("C", "UTC", {-1}, u"1969 69 12 31 4"_s, u"23:59:59"_s);
        row("C", "UTC", TDate::fromSeconds(946'684'800), u"2000 0 1 1 7"_s, u"0:0:0"_s);
    }

    void numbers()
    {
        QFETCH(QByteArray, locale);
        QFETCH(QByteArray, zone);
        QFETCH(TDate, date);
        QFETCH(QString, expected);
        QFETCH(QString, clock);
        qputenv("LC_ALL", locale);
        qputenv("TZ", zone);
        const QStringList texts{year(date), shortYear(date), month(date), day(date),
                                weekdayNumber(date)};
        QCOMPARE(texts.join(u' '), expected);
        QCOMPARE(u"%1:%2:%3"_s.arg(hour(date)).arg(minute(date)).arg(second(date)), clock);
        const CalendarParts parts = localParts(date);
        QCOMPARE(u"%1 %2 %3"_s.arg(parts.year).arg(parts.month).arg(parts.day),
                 (QStringList{texts[0], texts[2], texts[3]}).join(u' '));
        QCOMPARE(u"%1:%2:%3"_s.arg(parts.hour).arg(parts.minute).arg(parts.second), clock);
    }

    void isoText_data()
    {
        Table<QByteArray, TDate, QString>("zone", "date", "text");
        const auto row = [](const char *zone, TDate date, const QString &text) {
            QTest::addRow("%s, %lld", zone, static_cast<long long>(date.nanos))
                << QByteArray(zone) << date << text;
        };
        row("UTC", kSummer, u"2025-07-03T12:05:09+00:00"_s);
        row("Europe/Berlin", kSummer, u"2025-07-03T14:05:09+02:00"_s);
        row("Europe/Berlin", kWinter, u"2007-01-08T00:30:00+01:00"_s);
        // The last second before and the first one after the clocks went back.
        row("Europe/Berlin", TDate::fromSeconds(1'761'440'399), u"2025-10-26T02:59:59+02:00"_s);
        row("Europe/Berlin", TDate::fromSeconds(1'761'440'400), u"2025-10-26T02:00:00+01:00"_s);
        row("America/New_York", kWinter, u"2007-01-07T18:30:00-05:00"_s);
        row("America/St_Johns", kWinter, u"2007-01-07T20:00:00-03:30"_s);
        row(":Asia/Kolkata", kWinter, u"2007-01-08T05:00:00+05:30"_s);
        row("CET-1CEST,M3.5.0,M10.5.0/3", kSummer, u"2025-07-03T14:05:09+02:00"_s);
        // The sign of a rule counts to the west.
        row("GMT+3", kSummer, u"2025-07-03T09:05:09-03:00"_s);
        row("", kSummer, u"2025-07-03T12:05:09+00:00"_s);
        row("UTC", {-1}, u"1969-12-31T23:59:59+00:00"_s);
        row("Europe/Berlin", TDate::fromSeconds(-1'000'000'000), u"1938-04-24T23:13:20+01:00"_s);
        // Local mean time was 53 minutes and 28 seconds ahead; the moment is kept, not the seconds.
        row("Europe/Berlin", TDate::fromSeconds(-3'000'000'000), u"1874-12-07T19:33:00+00:53"_s);
    }

    void isoText()
    {
        QFETCH(QByteArray, zone);
        QFETCH(TDate, date);
        qputenv("TZ", zone);
        QTEST(iso8601(date), "text");
        // The long time agrees with the offset that the numbers show.
        const QString clock = iso8601(date).mid(u"2025-07-03T"_s.size(), u"14:05"_s.size());
        qputenv("LC_ALL", "de_DE.UTF-8");
        QVERIFY2(systemLongTime(date).startsWith(clock), qPrintable(systemLongTime(date)));
    }

    void unsetDate()
    {
        for (const auto element :
             {systemLongDate, systemMediumDate, systemLongTime, systemMediumTime, year, shortYear,
              monthName, month, day, weekdayName, weekdayNumber, iso8601, systemDateAndTime})
            QCOMPARE(element(TDate{}), u""_s);
        QCOMPARE(hour(TDate{}), 0);
    }

    void everyThreadAgrees()
    {
        qputenv("LC_ALL", "de_DE.UTF-8");
        qunsetenv("TZ");
        const QString expected = systemLongDate(kWinter) + systemLongTime(kWinter);
        std::array<QString, 4> texts;
        {
            std::vector<std::jthread> threads;
            for (QString &text : texts) {
                threads.emplace_back([&text] {
                    for (int i = 0; i < 100; ++i)
                        text = systemLongDate(kWinter) + systemLongTime(kWinter);
                });
            }
        }
        for (const QString &text : texts)
            QCOMPARE(text, expected);
    }
};

QTEST_GUILESS_MAIN(TestTimeUtils)
#include "tst_timeutils.moc"
