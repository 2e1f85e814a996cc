// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Cli.h"
#include "cli/CliFixture.h"

#include <QFile>
#include <QJsonArray>
#include <QTest>

using namespace Qt::StringLiterals;

class TestListVerbs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rulesListEveryKind();
    void rulesAsText();
    void table_data();
    void table();
    void archiveShowsALog();
    void archiveOfRubbish();
    void versionAndHelp();
    void helpExplainsEveryOption_data();
    void helpExplainsEveryOption();
    void helpFitsIntoEightyColumns();
    void unknownVerb();
    void manualAndCompletionsKnowEveryOption_data();
    void manualAndCompletionsKnowEveryOption();

private:
    /// Calls visit with the help and the options of every verb.
    template <class Visit>
    static void forEachVerb(Visit visit);
};

namespace {

QString contentOf(const QString &relative)
{
    QFile file(QStringLiteral(TAVRIN_SOURCE_DIR "/") + relative);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

template <class Visit>
void TestListVerbs::forEachVerb(Visit visit)
{
    MemoryOutput output;
    ScriptedTerminal terminal;
    DiskFileManager disk;
    SystemClock clock;
    std::atomic<bool> interrupted = false;
    CliEnvironment environment{output, output, -1, terminal, disk, clock, interrupted};
    for (const auto &command : Cli::commands(environment))
        visit(command->help(), command->optionGroups());
}

void TestListVerbs::rulesListEveryKind()
{
    CliFixture cli;
    QCOMPARE(cli.run({u"rules"_s, u"--json"_s}), 0);
    const QJsonArray kinds = cli.json()[u"array"_s].toArray();
    QStringList names;
    for (const QJsonValue kind : kinds) {
        names.append(kind[u"kind"_s].toString());
        for (const QJsonValue setting : kind[u"settings"_s].toArray()) {
            QVERIFY(!setting[u"meaning"_s].toString().isEmpty());
            QVERIFY(!setting[u"default"_s].isUndefined());
        }
    }
    QCOMPARE(names, QStringList({u"Text"_s, u"Counter"_s, u"Original"_s, u"Date"_s, u"ImageTag"_s,
                                 u"AudioTag"_s, u"VideoTag"_s, u"CSVTag"_s, u"RegExTag"_s,
                                 u"Separator"_s}));
    const QJsonValue start = kinds[1][u"settings"_s][0];
    QCOMPARE(start[u"key"_s], QJsonValue(u"startValue"_s));
    QCOMPARE(start[u"type"_s], QJsonValue(u"integer"_s));
    QCOMPARE(start[u"default"_s], QJsonValue(1));
    QVERIFY(start[u"values"_s].isUndefined());
    const QJsonValue format = kinds[1][u"settings"_s][2];
    QCOMPARE(format[u"values"_s].toArray(), QJsonArray({0, 1, 2}));
    const QJsonValue rows = kinds[7][u"settings"_s][0];
    QCOMPARE(rows[u"default"_s], QJsonValue(QJsonValue::Null));
    QCOMPARE(kinds[8][u"settings"_s][0][u"default"_s], QJsonValue(QJsonArray()));
}

void TestListVerbs::rulesAsText()
{
    CliFixture cli;
    QCOMPARE(cli.run({u"rules"_s}), 0);
    QVERIFY2(cli.out().startsWith(u"Text: a constant text\n    theText=\"Tavrin\"  (text) "_s),
             qPrintable(cli.out()));
    QVERIFY(cli.out().contains(
        u"\n    mapArray=[{\"original\":\"htm\",\"target\":\"html\"}]  (pairs) "_s));
    QCOMPARE(cli.run({u"rules"_s, u"more"_s}), 2);
}

void TestListVerbs::table_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("cells") << QByteArray("a,\"b\"\nc") << 0
                           << QByteArray("[\n[\"a\",\"\\\"b\\\"\"],\n[\"c\"]\n]\n");
    QTest::newRow("malformed") << QByteArray("a, \"b\"\n") << 1 << QByteArray("null\n");
}

void TestListVerbs::table()
{
    QFETCH(QByteArray, content);
    QFETCH(int, status);
    CliFixture cli;
    const QString path = cli.tree.file(u"t.csv"_s, content);
    QCOMPARE(cli.run({u"table"_s, u"--json"_s, path}), status);
    QTEST(cli.outBytes(), "json");
    QCOMPARE(cli.err().contains(path), status == 1);
    QCOMPARE(cli.run({u"table"_s, path}), status);
    QCOMPARE(cli.out(), status == 0 ? u"0\ta\t\"b\"\n1\tc\n"_s : u""_s);
}

void TestListVerbs::archiveShowsALog()
{
    CliFixture cli;
    cli.tree.rawFile("batch/a\xff.txt");
    cli.run({u"rename"_s, u"--yes"_s, u"--rule"_s, u"Counter"_s, cli.batchPath()});
    QCOMPARE(cli.run({u"archive"_s, cli.onlyLog()}), 0);
    QVERIFY2(cli.outBytes().contains(R"("$class":"TRenameTRX")"), cli.outBytes().constData());
    QVERIFY(!cli.json().isEmpty());
}

void TestListVerbs::archiveOfRubbish()
{
    CliFixture cli;
    const QString path = cli.tree.file(u"rubbish"_s, "bplist00");
    QCOMPARE(cli.run({u"archive"_s, u"--json"_s, path}), 2);
    QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(2));
    QVERIFY(cli.err().contains(path));
    QCOMPARE(cli.run({u"archive"_s, cli.batchPath()}), 2);
    QCOMPARE(cli.run({u"archive"_s, u"/none"_s}), 2);
    QVERIFY(cli.err().contains(u"/none"_s));
}

void TestListVerbs::versionAndHelp()
{
    CliFixture cli;
    QCOMPARE(cli.run({u"--version"_s}), 0);
    QCOMPARE(cli.out(), QStringLiteral("tavrin-cli " TAVRIN_VERSION "\n"));
    QCOMPARE(cli.run({u"--help"_s}), 0);
    forEachVerb([&cli](const Command::Help &help, const OptionGroups &) {
        QVERIFY(cli.out().contains(u"\n    "_s + help.name + u' '));
        QVERIFY(cli.out().contains(help.summary));
    });
    QCOMPARE(cli.run({u"help"_s, u"logs"_s}), 0);
    const QString help = cli.out();
    QCOMPARE(cli.run({u"logs"_s, u"-h"_s}), 0);
    QCOMPARE(cli.out(), help);
}

void TestListVerbs::helpExplainsEveryOption_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QStringList>("options");
    forEachVerb([](const Command::Help &help, const OptionGroups &groups) {
        QStringList options;
        for (const OptionGroup &group : groups) {
            for (const OptionInfo &option : group.options)
                options.append(option.name);
        }
        QTest::newRow(help.name.data()) << QString(help.name) << options;
    });
}

void TestListVerbs::helpExplainsEveryOption()
{
    QFETCH(QString, verb);
    QFETCH(QStringList, options);
    CliFixture cli;
    QCOMPARE(cli.run({verb, u"--help"_s}), 0);
    QVERIFY(cli.out().startsWith(u"Usage:\n    tavrin-cli "_s + verb));
    QVERIFY(cli.out().contains(u"Exit status:"_s));
    for (const QString &option : options)
        QVERIFY2(cli.out().contains(u" --"_s + option), qPrintable(option));
}

void TestListVerbs::helpFitsIntoEightyColumns()
{
    CliFixture cli;
    QStringList verbs{QString()};
    forEachVerb(
        [&verbs](const Command::Help &help, const OptionGroups &) { verbs.append(help.name); });
    for (const QString &verb : verbs) {
        cli.run(verb.isEmpty() ? QStringList{u"--help"_s} : QStringList{verb, u"--help"_s});
        for (const QString &line : cli.out().split(u'\n'))
            QVERIFY2(line.size() <= 80, qPrintable(line));
    }
}

void TestListVerbs::unknownVerb()
{
    CliFixture cli;
    QCOMPARE(cli.run({u"renname"_s, u"--json"_s}), 2);
    QVERIFY(cli.err().contains(u"\"renname\"; possible: preview, rename"_s));
    QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(2));
    QCOMPARE(cli.run({}), 2);
    QVERIFY(cli.err().contains(u"possible: preview"_s));
}

void TestListVerbs::manualAndCompletionsKnowEveryOption_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("optionFormat");
    QTest::newRow("man page") << u"packaging/tavrin-cli.1"_s << u"\\-\\-%1"_s;
    QTest::newRow("manual") << u"docs/manual/cli.md"_s << u"--%1"_s;
    QTest::newRow("bash") << u"packaging/completions/tavrin-cli.bash"_s << u"--%1"_s;
    QTest::newRow("zsh") << u"packaging/completions/_tavrin-cli"_s << u"--%1"_s;
    QTest::newRow("fish") << u"packaging/completions/tavrin-cli.fish"_s << u"-l %1"_s;
}

void TestListVerbs::manualAndCompletionsKnowEveryOption()
{
    QFETCH(QString, file);
    QFETCH(QString, optionFormat);
    const QString text = contentOf(file);
    forEachVerb([&](const Command::Help &help, const OptionGroups &groups) {
        QVERIFY2(text.contains(help.name), help.name.data());
        for (const OptionGroup &group : groups) {
            for (const OptionInfo &option : group.options) {
                const QString name = optionFormat.arg(
                    QString(option.name)
                        .replace(u"-"_s, optionFormat.startsWith(u'\\') ? u"\\-"_s : u"-"_s));
                QVERIFY2(text.contains(name), qPrintable(name));
            }
        }
    });
}

QTEST_GUILESS_MAIN(TestListVerbs)
#include "tst_listverbs.moc"
