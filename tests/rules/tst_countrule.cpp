// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TCountRule.h"
#include "support/Rules.h"
#include "support/Table.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMost = std::numeric_limits<qint64>::max();
constexpr qint64 kLeast = std::numeric_limits<qint64>::min();

/// What the rule gives for the files in turn.
QStringList evaluated(TRuleModel &rule, const QStringList &names, qint64 batchSize)
{
    QStringList results;
    TRuleDict dict;
    dict.batchSize = batchSize;
    TErrorLog log;
    for (const QString &name : names) {
        TFileObject file(TFileItem{TFileURL::fileURLWithPath(u"/batch/"_s + name), {}});
        results.append(rule.processWithFileObject(file, &log, dict));
    }
    return log.isEmpty() ? results : QStringList{u"reported a problem"_s};
}

QVariantMap roman(qint64 start, qint64 format = 1)
{
    return {{u"startValue"_s, start}, {u"counterFormat"_s, format}};
}

} // namespace

class TestCountRule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void preparedBatch_data()
    {
        Table<QVariantMap, qint64, QString, QString>("settings", "batchSize", "files", "expected");
        const auto row = [](const char *name, const QVariantMap &settings, qint64 batchSize,
                            const QString &files, const QString &expected) {
            QTest::newRow(name) << settings << batchSize << files << expected;
        };
        const auto start = [](qint64 value) { return QVariantMap{{u"startValue"_s, value}}; };
        const auto width = [](qint64 units, qint64 character) {
            return QVariantMap{
                {u"manualPadding"_s, 1}, {u"padding"_s, units}, {u"paddingChar"_s, character}};
        };
        const auto with = [](QVariantMap settings, const QVariantMap &more) {
            settings.insert(more);
            return settings;
        };
        const QVariantMap perType{{u"individualFileTypes"_s, true}};

        row("width of one step beyond the last", {}, 12, u"a b c"_s, u"01 02 03"_s);
        row("width grows early", {}, 9, u"a b"_s, u"01 02"_s);
        row("a batch of none", start(0), 0, u"a"_s, u"00"_s);
        row("counting down to none", with(start(2), {{u"increment"_s, -1}}), 2, u"a b"_s,
            u"02 01"_s);
        row("increment", with(start(10), {{u"increment"_s, 5}}), 3, u"a b c"_s, u"10 15 20"_s);
        // Padding goes before the minus sign, and the sign counts for the width.
        row("negative", with(start(-9), {{u"increment"_s, -1}}), 2, u"a b"_s, u"0-9 -10"_s);
        row("wraps around", start(kMost), 0, u"a b"_s,
            u"9223372036854775807 -9223372036854775808"_s);
        row("wild increment", with(start(1), {{u"increment"_s, kLeast}}), 3, u"a"_s,
            u"0000000000000000001"_s.prepend(u'0'));

        row("per extension", perType, 3, u"a.jpg b.png c.jpg"_s, u"1 1 2"_s);
        row("extensions keep their case", perType, 4, u"a.jpg b.JPG c.jpg d e"_s, u"1 1 2 1 2"_s);

        row("total", {{u"counterType"_s, 1}}, 7, u"a b"_s, u"7 7"_s);

        row("Roman", roman(1), 4, u"a b c d"_s, u"i ii iii iv"_s);
        row("Roman of nothing", roman(0), 200, u"a b"_s, u"000 00i"_s);
        row("unknown format", roman(1, 3), 1, u"a"_s, u"???"_s);

        row("zeros", width(4, 0), 1000000, u"a"_s, u"0001"_s);
        row("any other", width(4, 7), 1, u"a"_s, u"xxx1"_s);
        row("never cut", with(width(2, 0), start(12345)), 1, u"a"_s, u"12345"_s);
        row("padding is manual only", {{u"padding"_s, 9}}, 1, u"a"_s, u"1"_s);
    }

    void preparedBatch()
    {
        QFETCH(QVariantMap, settings);
        QFETCH(qint64, batchSize);
        QFETCH(QString, files);
        const TRulePtr rule = makeRule(u"Counter"_s, settings);
        rule->prepareToStart();
        QTEST(evaluated(*rule, files.split(u' '), batchSize).join(u' '), "expected");
    }

    void startsTwiceAsHighBeforeItIsPrepared()
    {
        TCountRule rule;
        QCOMPARE(rule.globalCounter(), 1);
        QCOMPARE(evaluated(rule, {u"a"_s, u"b"_s}, 2), (QStringList{u"2"_s, u"3"_s}));
    }

    void eachRunStartsAgain()
    {
        for (const bool perType : {false, true}) {
            const TRulePtr rule = makeRule(u"Counter"_s, {{u"individualFileTypes"_s, perType}});
            for (int run = 0; run < 2; ++run) {
                rule->prepareToStart();
                QCOMPARE(evaluated(*rule, {u"a"_s, u"b"_s}, 2), (QStringList{u"1"_s, u"2"_s}));
            }
            rule->advanceToNext();
            QCOMPARE(evaluated(*rule, {u"c"_s}, 2), QStringList{u"3"_s});
        }
    }

    void aCopyGoesOnCounting()
    {
        for (const bool perType : {false, true}) {
            const TRulePtr rule = makeRule(u"Counter"_s, {{u"individualFileTypes"_s, perType}});
            rule->prepareToStart();
            evaluated(*rule, {u"a.x"_s, u"b.x"_s}, 2);
            QCOMPARE(evaluated(*rule->copy(), {u"c.x"_s}, 2), QStringList{u"3"_s});
            QCOMPARE(evaluated(*rule, {u"c.x"_s}, 2), QStringList{u"3"_s});
        }
    }

    void aDecodedRuleRestartsTheBatchCounterOnly()
    {
        for (const bool perType : {false, true}) {
            const TRulePtr rule = makeRule(u"Counter"_s, {{u"individualFileTypes"_s, perType}});
            rule->prepareToStart();
            evaluated(*rule, {u"a.x"_s, u"b.x"_s}, 2);
            const TRulePtr decoded = TRuleKinds::copyArrayViaEncode({rule}).front();
            QCOMPARE(evaluated(*decoded, {u"c.x"_s}, 2), QStringList{perType ? u"3"_s : u"1"_s});
        }
    }

    void theOffsetIsWrittenUnderOneKeyAndReadUnderAnother()
    {
        TCountRule rule;
        rule.setGlobalCounter(5);
        QCOMPARE(rule.properties().value(u"globalCounter"_s), QVariant(5LL));
        TreeArchive archive;
        archive.appendObject(rule.archiveClass(),
                             [&rule](TEncoder &coder) { rule.encodeWithCoder(coder); });
        archive.appendObject(rule.archiveClass(),
                             [](TEncoder &coder) { coder.encodeInteger("globalcounter"_L1, 6); });
        std::vector<qint64> written;
        std::vector<qint64> read;
        archive.forEachObject([&](const TDecoder &coder) {
            written.push_back(coder.decodeInteger("globalCounter"_L1));
            const auto decoded = TCountRule::decoding();
            decoded->initWithCoder(coder);
            read.push_back(decoded->globalCounter());
        });
        QCOMPARE(written, (std::vector<qint64>{5, 0}));
        QCOMPARE(read, (std::vector<qint64>{0, 6}));
    }

    void settersTakePart()
    {
        TCountRule rule;
        rule.prepareToStart();
        rule.setStartValue(3);
        rule.setIncrement(2);
        rule.setIndividualFileTypes(true);
        rule.setManualPadding(1);
        rule.setPadding(3);
        rule.setPaddingChar(4);
        rule.setExtensionCounters({{u"jpg"_s, 40}});
        QCOMPARE(evaluated(rule, {u"a.jpg"_s, u"b.jpg"_s, u"c.png"_s}, 3),
                 (QStringList{u"_40"_s, u"_42"_s, u"__3"_s}));
        QCOMPARE(rule.extensionCounters().value(u"jpg"_s), 44);
        rule.setCounterFormat(2);
        rule.setCounterType(1);
        QCOMPARE(evaluated(rule, {u"a.jpg"_s}, 4), QStringList{u"_IV"_s});
    }

    void tiles_data()
    {
        const Table<qint64, bool, qint64, QString> row("format", "perType", "type", "tile");
        row("decimal", 0, false, 0, u"1, 2, 3");
        row("Roman", 1, false, 0, u"i, ii, iii");
        row("upper Roman", 2, true, 0, u"I, II, III (per .EXT)");
        row("unknown", 3, true, 0, u"??? (per .EXT)");
        row("negative", -1, false, 0, u"???");
        row("total", 1, true, 2, u"(total)");
    }

    void tiles()
    {
        QFETCH(qint64, format);
        QFETCH(bool, perType);
        QFETCH(qint64, type);
        const TRulePtr rule = makeRule(u"Counter"_s, {{u"counterFormat"_s, format},
                                                      {u"individualFileTypes"_s, perType},
                                                      {u"counterType"_s, type}});
        QTEST(rule->name(), "tile");
        QTEST(TRuleKinds::copyArrayViaEncode({rule}).front()->name(), "tile");
    }
};

QTEST_GUILESS_MAIN(TestCountRule)
#include "tst_countrule.moc"
