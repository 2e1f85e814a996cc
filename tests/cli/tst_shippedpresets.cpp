// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliFixture.h"
#include "support/Table.h"

#include <QDir>
#include <QJsonArray>

using namespace Qt::StringLiterals;

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

/// The preset files beside the recipes from which they were made.
class TestShippedPresets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPresetHasItsRecipe()
    {
        QCOMPARE(namesIn(u"."_s, u"renamesetting"_s), namesIn(u"recipes"_s, u"json"_s));
        QCOMPARE(namesIn(u"recipes"_s, u"json"_s).size(), 6);
    }

    void presetEqualsItsRecipe_data()
    {
        const Table<QString> row("name");
        for (const QString &name : namesIn(u"recipes"_s, u"json"_s))
            row(qPrintable(name), name);
    }

    void presetEqualsItsRecipe()
    {
        QFETCH(QString, name);
        CliFixture cli;
        const QString preset = kPresets.filePath(name + u".renamesetting"_s);
        const QString recipe = kPresets.filePath(u"recipes/"_s + name + u".json"_s);
        QCOMPARE(cli.run({u"presets"_s, u"save"_s, u"P"_s, u"--recipe"_s, recipe}), 0);
        QCOMPARE(cli.runLine(u"presets show --json P"_s), 0);
        const QByteArray expected = cli.outBytes();
        QCOMPARE(cli.run({u"presets"_s, u"show"_s, u"--json"_s, preset}), 0);
        QCOMPARE(cli.outBytes(), expected);
        QVERIFY(!cli.json()[u"rules"_s].toArray().isEmpty());
    }

    void names_data()
    {
        const Table<QString, QStringList, QStringList> row("preset", "files", "finalNames");
        row("blanks", u"Clean up blanks", {u"  a  b_c%20d .txt"_s, u"e.txt"_s},
            {u"a b c d.txt"_s, u"e-1.txt"_s});
        row("lower case", u"Lower-case names", {u"ÄB C.TXT"_s}, {u"äb c.TXT"_s});
        row("numbers", u"Numbered holiday photos", {u"a.jpg"_s, u"b.jpg"_s},
            {u"Holiday 001.jpg"_s, u"Holiday 002.jpg"_s});
        row("table", u"Names from a table",
            {u"1.jpg"_s, u"2.jpg"_s, u"3.jpg"_s, u"4.jpg"_s, u"5.jpg"_s, u"6.jpg"_s, u"7.jpg"_s},
            {u"Arrival.jpg"_s, u"Harbour.jpg"_s, u"Old town.jpg"_s, u"Market.jpg"_s,
             u"Lighthouse.jpg"_s, u"Departure.jpg"_s, u"no row left.jpg"_s});
    }

    void names()
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
};

QTEST_GUILESS_MAIN(TestShippedPresets)
#include "tst_shippedpresets.moc"
