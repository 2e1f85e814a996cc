// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliFixture.h"

#include <QDir>
#include <QJsonArray>
#include <QTest>

using namespace Qt::StringLiterals;

/// The preset files beside the recipes from which they were made.
class TestShippedPresets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPresetHasItsRecipe();
    void presetEqualsItsRecipe_data();
    void presetEqualsItsRecipe();
    void names_data();
    void names();
};

namespace {

const QDir kPresets(QStringLiteral(TAVRIN_SOURCE_DIR "/resources/presets"));

QStringList namesIn(const QString &folder, const QString &extension)
{
    QStringList names =
        QDir(kPresets.filePath(folder)).entryList({u"*."_s + extension}, QDir::Files, QDir::Name);
    names.replaceInStrings(u'.' + extension, QString());
    return names;
}

} // namespace

void TestShippedPresets::everyPresetHasItsRecipe()
{
    QCOMPARE(namesIn(u"."_s, u"renamesetting"_s), namesIn(u"recipes"_s, u"json"_s));
    QCOMPARE(namesIn(u"recipes"_s, u"json"_s).size(), 6);
}

void TestShippedPresets::presetEqualsItsRecipe_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : namesIn(u"recipes"_s, u"json"_s))
        QTest::newRow(qPrintable(name)) << name;
}

void TestShippedPresets::presetEqualsItsRecipe()
{
    QFETCH(QString, name);
    CliFixture cli;
    const QString preset = kPresets.filePath(name + u".renamesetting"_s);
    const QString recipe = kPresets.filePath(u"recipes/"_s + name + u".json"_s);
    QCOMPARE(cli.run({u"presets"_s, u"save"_s, u"P"_s, u"--recipe"_s, recipe}), 0);
    QCOMPARE(cli.run({u"presets"_s, u"show"_s, u"--json"_s, u"P"_s}), 0);
    const QByteArray expected = cli.outBytes();
    QCOMPARE(cli.run({u"presets"_s, u"show"_s, u"--json"_s, preset}), 0);
    QCOMPARE(cli.outBytes(), expected);
    QVERIFY(!cli.json()[u"rules"_s].toArray().isEmpty());
}

void TestShippedPresets::names_data()
{
    QTest::addColumn<QString>("preset");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("finalNames");
    QTest::newRow("blanks") << u"Clean up blanks"_s
                            << QStringList{u"  a  b_c%20d .txt"_s, u"e.txt"_s}
                            << QStringList{u"a b c d.txt"_s, u"e-1.txt"_s};
    QTest::newRow("lower case") << u"Lower-case names"_s << QStringList{u"ÄB C.TXT"_s}
                                << QStringList{u"äb c.TXT"_s};
    QTest::newRow("numbers") << u"Numbered holiday photos"_s << QStringList{u"a.jpg"_s, u"b.jpg"_s}
                             << QStringList{u"Holiday 001.jpg"_s, u"Holiday 002.jpg"_s};
    QTest::newRow("table") << u"Names from a table"_s
                           << QStringList{u"1.jpg"_s, u"2.jpg"_s, u"3.jpg"_s, u"4.jpg"_s,
                                          u"5.jpg"_s, u"6.jpg"_s, u"7.jpg"_s}
                           << QStringList{u"Arrival.jpg"_s,    u"Harbour.jpg"_s,
                                          u"Old town.jpg"_s,   u"Market.jpg"_s,
                                          u"Lighthouse.jpg"_s, u"Departure.jpg"_s,
                                          u"no row left.jpg"_s};
}

void TestShippedPresets::names()
{
    QFETCH(QString, preset);
    QFETCH(QStringList, files);
    CliFixture cli;
    cli.batch(files);
    cli.run({u"preview"_s, u"--json"_s, u"--preset"_s,
             kPresets.filePath(preset + u".renamesetting"_s), cli.batchPath()});
    QStringList finalNames;
    for (const QJsonValue file : cli.json()[u"files"_s].toArray())
        finalNames.append(file[u"finalName"_s].toString());
    QTEST(finalNames, "finalNames");
}

QTEST_GUILESS_MAIN(TestShippedPresets)
#include "tst_shippedpresets.moc"
