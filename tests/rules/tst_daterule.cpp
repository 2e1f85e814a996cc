// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/TimeUtils.h"
#include "platform/Clock.h"
#include "rules/TDateRule.h"
#include "support/Rules.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

namespace {

// Thursday, 2025-07-03 13:05:09 UTC.
constexpr TDate kNow = TDate::fromSeconds(1'751'547'909);

} // namespace

class TestDateRule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formats_data()
    {
        Table<qint64, QString>("format", "expected");
        const auto row = [](qint64 format, const QString &expected) {
            QTest::addRow("%lld", format) << format << expected;
        };
        row(0, u"July 3, 2025"_s);
        row(1, u"Jul 3, 2025"_s);
        row(2, TimeUtils::systemLongTime(kNow));
        row(3, TimeUtils::systemMediumTime(kNow));
        row(4, u"2025"_s);
        row(5, u"25"_s);
        row(6, u"July"_s);
        row(7, u"7"_s);
        row(8, u"3"_s);
        row(9, u"Thursday"_s);
        row(10, u"5"_s);
        row(11, u"13"_s);
        row(12, u"5"_s);
        row(13, u"9"_s);
        row(14, u"PM"_s);
        row(15, u"P"_s);
        row(16, u"???date???"_s);
        row(-1, u"???date???"_s);
    }

    void formats()
    {
        QFETCH(qint64, format);
        const TRulePtr rule = makeRule(u"Date"_s, {{u"dateFormat"_s, format}});
        TFileObject file;
        TErrorLog log;
        TRuleDict dict;
        dict.now = kNow;
        QTEST(rule->processWithFileObject(file, &log, dict), "expected");
        QVERIFY(log.isEmpty());
        QCOMPARE(rule->name(), u"(Now)"_s);
    }

    void hoursTurnAtMidnightAndNoon()
    {
        constexpr qint64 kMidnight = 1'751'500'800;
        TDateRule rule;
        QStringList texts;
        for (const int hour : {0, 11, 12, 13}) {
            const TDate date = TDate::fromSeconds(kMidnight + hour * 3600 + 1800);
            for (const auto &[format, clock] : {std::pair{11, 1}, {11, 0}, {14, 0}}) {
                rule.setDateFormat(format);
                rule.setTimeFormat(clock);
                texts.append(rule.getDateFromDate(date));
            }
        }
        QCOMPARE(texts.join(u' '), u"0 12 AM 11 11 AM 12 12 PM 13 1 PM"_s);
    }

    void aCutRaisesTheLimitForGood()
    {
        TDateRule rule;
        rule.setLimitSize(1);
        rule.setMaxSize(0);
        QString text = u"Monday"_s;
        rule.handleMaxSizeFor(text);
        QCOMPARE(text, u"M"_s);
        QCOMPARE(rule.maxSize(), 1);
        QCOMPARE(rule.properties().value(u"maxSize"_s), QVariant(1LL));
    }

    void aShortTextLeavesTheLimitAlone()
    {
        TDateRule rule;
        rule.setLimitSize(1);
        rule.setMaxSize(0);
        QString text;
        rule.handleMaxSizeFor(text);
        QCOMPARE(rule.maxSize(), 0);
        rule.setMaxSize(6);
        text = u"Monday"_s;
        rule.handleMaxSizeFor(text);
        QCOMPARE(text, u"Monday"_s);
        QCOMPARE(rule.maxSize(), 6);
    }

    void paddingOperations_data()
    {
        // texts: in front, after, by position
        const Table<qint64, qint64, QString> row("padding", "position", "texts");
        row("front", 4, 0, u"**ab|ab**|**ab");
        row("end", 4, 1, u"**ab|ab**|ab**");
        row("negative", -4, 0, u"ab|ab|ab");
    }

    void paddingOperations()
    {
        QFETCH(qint64, padding);
        QFETCH(qint64, position);
        TDateRule rule;
        rule.setPadding(padding);
        rule.setPaddingChar(2);
        rule.setPaddingPosition(position);
        QStringList texts{u"ab"_s, u"ab"_s, u"ab"_s};
        rule.handlePaddingFor(texts[0]);
        rule.handlePaddingAfter(texts[1]);
        rule.handlePaddingBothSidesWith(texts[2]);
        QTEST(texts.join(u'|'), "texts");
    }

    void anUnsetDateGivesNothing()
    {
        TDateRule rule;
        for (const qint64 format : {0, 4, 5, 11, 12, 14}) {
            rule.setDateFormat(format);
            QCOMPARE(rule.getDateFromDate({}), u""_s);
        }
    }

    void theSystemClockIsTheDefault()
    {
        TDateRule rule;
        rule.setDateFormat(0);
        TFileObject file;
        TRuleDict dict;
        const QString before = TimeUtils::systemLongDate(SystemClock().now());
        const QString text = rule.processWithFileObject(file, nullptr, dict);
        const QString after = TimeUtils::systemLongDate(SystemClock().now());
        QVERIFY(text == before || text == after);
    }
};

QTEST_GUILESS_MAIN(TestDateRule)
#include "tst_daterule.moc"
