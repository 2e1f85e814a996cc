// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TCSVRule.h"
#include "platform/TreeCoder.h"
#include "support/Table.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

using Rows = QList<QStringList>;

constexpr qint64 kMost = std::numeric_limits<qint64>::max();

TStringTablePtr table(const Rows &rows)
{
    return std::make_shared<TStringTable>(rows.begin(), rows.end());
}

TStringTablePtr threeRows()
{
    return table({{u"r0"_s, u"x0"_s}, {u"r1"_s, u"x1"_s}, {u"r2"_s, u"x2"_s}});
}

/// The fragments of a number of files in a row, blanks between them; problems in a second list.
QString evaluated(TCSVRule &rule, int files, QStringList *problems = nullptr)
{
    QStringList texts;
    for (int i = 0; i < files; ++i) {
        TFileObject file(TFileItem{TFileURL::fileURLWithPath(u"/d/%1.txt"_s.arg(i)), {}});
        TErrorLog runLog;
        TRuleDict dict;
        texts << rule.processWithFileObject(file, &runLog, dict);
        if (file.errLog() != runLog)
            texts << u"(file and run do not agree)"_s;
        for (const TErrorTypes &error : runLog) {
            if (problems != nullptr)
                *problems << u"%1 %2"_s.arg(error.errClass).arg(error.errDesc.toString());
        }
    }
    return texts.join(' '_L1);
}

} // namespace

class TestCsvRule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsInTurn_data()
    {
        const Table<QVariantMap, TStringTablePtr, QString, QStringList> row("settings", "rows",
                                                                            "expected", "problems");
        const auto settings = [](bool skipFirst, bool wrap) {
            return QVariantMap{{u"skipFirst"_s, skipFirst}, {u"wrap"_s, wrap}};
        };
        const auto noRow = [](int number, int file) {
            return u"1 CSV table: Row %1 does not exist. Default used. File: /d/%2.txt"_s
                .arg(number)
                .arg(file);
        };
        const QString missing = u"(csv err)"_s;
        row("wrap", settings(false, true), threeRows(), u"r0 r1 r2 r0 r1", {});
        row("header, wrap", settings(true, true), threeRows(), u"r1 r2 r1 r2 r1", {});
        row("header, no wrap", settings(true, false), threeRows(),
            u"r1 r2 (csv err) (csv err) (csv err)", {noRow(3, 2), noRow(4, 3), noRow(5, 4)});
        row("no wrap", settings(false, false), table({{u"a"_s}, {u"b"_s}, {u"c"_s}, {u"d"_s}}),
            u"a b c d (csv err)", {noRow(4, 4)});
        const QString fiveMissing = QStringList(5, missing).join(' '_L1);
        row("no rows, wrap", settings(false, true), table({}), fiveMissing,
            {noRow(0, 0), noRow(1, 1), noRow(2, 2), noRow(3, 3), noRow(4, 4)});
        row("only a header, wrap", settings(true, true), table({{u"head"_s}}), fiveMissing,
            {noRow(1, 0), noRow(2, 1), noRow(3, 2), noRow(4, 3), noRow(5, 4)});
    }

    void rowsInTurn()
    {
        QFETCH(QVariantMap, settings);
        QFETCH(TStringTablePtr, rows);
        TCSVRule rule;
        rule.setProperties(settings);
        rule.setTheRows(rows);
        QStringList problems;
        QTEST(evaluated(rule, 5, &problems), "expected");
        QTEST(problems, "problems");
        QCOMPARE(rule.globalCounter(), quint64{5});
    }

    void noTableCountsNothing()
    {
        TCSVRule rule;
        QStringList problems;
        QCOMPARE(evaluated(rule, 2, &problems), u"(csv err) (csv err)"_s);
        QCOMPARE(problems, QStringList({u"1 No CSV loaded. Default text used. File: /d/0.txt"_s,
                                        u"1 No CSV loaded. Default text used. File: /d/1.txt"_s}));
        QCOMPARE(rule.globalCounter(), quint64{0});
    }

    void unsetDefaultBecomesEmpty()
    {
        TCSVRule rule;
        rule.setDefaultText({});
        QCOMPARE(evaluated(rule, 1), u""_s);
        QVERIFY(rule.properties().contains(u"defaultText"_s));
    }

    void runsStartAgain()
    {
        TCSVRule rule;
        rule.setTheRows(threeRows());
        QCOMPARE(evaluated(rule, 2), u"r0 r1"_s);
        rule.prepareToStart();
        QCOMPARE(evaluated(rule, 1), u"r0"_s);
        rule.setProperties({});
        QCOMPARE(evaluated(rule, 1), u"r0"_s);
    }

    void tile_data()
    {
        const Table<bool, qint64, QString> row("loaded", "column", "name");
        row("none", false, 4, u"CSV:!!no Data !!");
        row("first", true, 0, u"CSV: Col(1)");
        row("tenth", true, 9, u"CSV: Col(10)");
        row("last number", true, kMost, u"CSV: Col(-9223372036854775808)");
    }

    void tile()
    {
        QFETCH(bool, loaded);
        QFETCH(qint64, column);
        TCSVRule rule;
        QCOMPARE(rule.name(), u"CSV:!!no Data !!"_s);
        rule.setTheRows(loaded ? threeRows() : nullptr);
        rule.setUseColumn(column);
        rule.updatePreview();
        QTEST(rule.name(), "name");
    }

    void archiveKeepsAllButTheCounter()
    {
        TCSVRule rule;
        rule.setProperties({{u"theRows"_s, QVariant::fromValue(threeRows())},
                            {u"skipFirst"_s, true},
                            {u"wrap"_s, false},
                            {u"trimQuotes"_s, false},
                            {u"useColumn"_s, 1},
                            {u"defaultText"_s, u"none"_s}});
        rule.updatePreview();
        QCOMPARE(evaluated(rule, 1), u"x1"_s);
        TreeArchive archive;
        archive.appendObject(rule.archiveClass(),
                             [&rule](TEncoder &coder) { rule.encodeWithCoder(coder); });
        const auto decoded = TCSVRule::decoding();
        archive.forEachObject([&decoded](const TDecoder &coder) { decoded->initWithCoder(coder); });
        QCOMPARE(decoded->properties(), rule.properties());
        QCOMPARE(decoded->theRows(), rule.theRows());
        QCOMPARE(evaluated(*decoded, 3), u"x1 x2 none"_s);
    }

    void emptyArchiveReadsAsUnset()
    {
        TreeArchive archive;
        archive.appendObject(TCSVRule().archiveClass(), [](TEncoder &) {});
        const auto decoded = TCSVRule::decoding();
        archive.forEachObject([&decoded](const TDecoder &coder) { decoded->initWithCoder(coder); });
        QVERIFY(!decoded->wrap());
        QVERIFY(!decoded->trimQuotes());
        QVERIFY(!decoded->theRows());
        QVERIFY(decoded->defaultText().isNull());
        QVERIFY(!decoded->theColor().isSet());
        QCOMPARE(decoded->name(), u"CSV:!!no Data !!"_s);
    }

    void copySharesTheTable()
    {
        TCSVRule rule;
        rule.setTheRows(threeRows());
        evaluated(rule, 2);
        const auto copy = std::dynamic_pointer_cast<TCSVRule>(rule.copy());
        QVERIFY(copy);
        QCOMPARE(copy->theRows().get(), rule.theRows().get());
        QCOMPARE(evaluated(*copy, 1), u"r0"_s);
        QCOMPARE(copy->theColor(), rule.theColor());
    }

    void propertiesAreTakenWhenPresent()
    {
        TCSVRule rule;
        QVERIFY(!rule.properties().contains(u"theRows"_s));
        rule.setProperties({{u"useColumn"_s, 2}});
        QVERIFY(rule.wrap());
        QCOMPARE(rule.defaultText(), u"(csv err)"_s);
        QCOMPARE(rule.useColumn(), 2);
        rule.setTheRows(threeRows());
        rule.setProperties({{u"wrap"_s, false}});
        QVERIFY(rule.theRows());
    }
};

QTEST_GUILESS_MAIN(TestCsvRule)
#include "tst_csvrule.moc"
