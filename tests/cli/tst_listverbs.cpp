// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Cli.h"
#include "cli/CliFixture.h"
#include "support/Table.h"

#include <QFile>
#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace {

QString contentOf(const QString &relative)
{
    QFile file(QStringLiteral(TAVRIN_SOURCE_DIR "/") + relative);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

class TestListVerbs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rulesListEveryKind()
    {
        CliFixture cli;
        QCOMPARE(cli.runLine(u"rules --json"_s), 0);
        const QJsonArray kinds = cli.json()[u"array"_s].toArray();
        QStringList names;
        for (const QJsonValue kind : kinds) {
            names.append(kind[u"kind"_s].toString());
            for (const QJsonValue setting : kind[u"settings"_s].toArray()) {
                QVERIFY(!setting[u"meaning"_s].toString().isEmpty());
                QVERIFY(!setting[u"default"_s].isUndefined());
            }
        }

        QCOMPARE(names, QStringList({u"Text"_s, u"Counter"_s, u"Original"_s, u"Date"_s,
                                     u"ImageTag"_s, u"AudioTag"_s, u"VideoTag"_s, u"CSVTag"_s,
                                     u"RegExTag"_s, u"Separator"_s}));
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

    void rulesAsText()
    {
        CliFixture cli;
        QCOMPARE(cli.runLine(u"rules"_s), 0);
        QVERIFY2(cli.out().startsWith(u"Text: a constant text\n    theText=\"Tavrin\"  (text) "_s),
                 qPrintable(cli.out()));
        QVERIFY(cli.out().contains(
            u"\n    mapArray=[{\"original\":\"htm\",\"target\":\"html\"}]  (pairs) "_s));
        QCOMPARE(cli.runLine(u"rules more"_s), 2);
    }

    void table_data()
    {
        const Table<QByteArray, int, QByteArray> row("content", "status", "json");
        row("cells", QByteArray("a,\"b\"\nc"), 0,
            QByteArray("[\n[\"a\",\"\\\"b\\\"\"],\n[\"c\"]\n]\n"));
        row("malformed", QByteArray("a, \"b\"\n"), 1, QByteArray("null\n"));
    }

    void table()
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

    void archiveShowsALog()
    {
        CliFixture cli;
        cli.tree.rawFile("batch/a\xff.txt");
        cli.runLine(u"rename --yes --rule Counter BATCH"_s);
        QCOMPARE(cli.run({u"archive"_s, cli.onlyLog()}), 0);
        QVERIFY2(cli.outBytes().contains(R"("$class":"TRenameTRX")"), cli.outBytes().constData());
        QVERIFY(!cli.json().isEmpty());
    }

    void archiveOfRubbish()
    {
        CliFixture cli;
        const QString path = cli.tree.file(u"rubbish"_s, "bplist00");
        QCOMPARE(cli.run({u"archive"_s, u"--json"_s, path}), 2);
        QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(2));
        QVERIFY(cli.err().contains(path));
        QCOMPARE(cli.runLine(u"archive BATCH"_s), 2);
        QCOMPARE(cli.runLine(u"archive /none"_s), 2);
        QVERIFY(cli.err().contains(u"/none"_s));
    }

    void versionAndHelp()
    {
        CliFixture cli;
        QCOMPARE(cli.runLine(u"--version"_s), 0);
        QCOMPARE(cli.out(), QStringLiteral("tavrin-cli " TAVRIN_VERSION "\n"));
        QCOMPARE(cli.runLine(u"--help"_s), 0);
        forEachVerb([&cli](const Command::Help &help, const OptionGroups &) {
            QVERIFY(cli.out().contains(u"\n    "_s + help.name + u' '));
            QVERIFY(cli.out().contains(help.summary));
        });
        QCOMPARE(cli.runLine(u"help logs"_s), 0);
        const QString help = cli.out();
        QCOMPARE(cli.runLine(u"logs -h"_s), 0);
        QCOMPARE(cli.out(), help);
    }

    void helpExplainsEveryOption_data()
    {
        const Table<QString, QStringList> row("verb", "options");
        forEachVerb([&row](const Command::Help &help, const OptionGroups &groups) {
            QStringList options;
            for (const OptionGroup &group : groups) {
                for (const OptionInfo &option : group.options)
                    options.append(option.name);
            }
            row(help.name.data(), QString(help.name), options);
        });
    }

    void helpExplainsEveryOption()
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

    void helpFitsIntoEightyColumns()
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

    void unknownVerb()
    {
        CliFixture cli;
        QCOMPARE(cli.runLine(u"renname --json"_s), 2);
        QVERIFY(cli.err().contains(u"\"renname\"; possible: preview, rename"_s));
        QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(2));
        QCOMPARE(cli.runLine(u""_s), 2);
        QVERIFY(cli.err().contains(u"possible: preview"_s));
    }

    void manualAndCompletionsKnowEveryOption_data()
    {
        const Table<QString, QString> row("file", "optionFormat");
        row("man page", u"packaging/tavrin-cli.1", u"\\-\\-%1");
        row("manual", u"docs/manual/cli.md", u"--%1");
        row("bash", u"packaging/completions/tavrin-cli.bash", u"--%1");
        row("zsh", u"packaging/completions/_tavrin-cli", u"--%1");
        row("fish", u"packaging/completions/tavrin-cli.fish", u"-l %1");
    }

    void manualAndCompletionsKnowEveryOption()
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

private:
    /// Calls visit with the help and the options of every verb.
    template <class Visit>
    static void forEachVerb(Visit visit)
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
};

QTEST_GUILESS_MAIN(TestListVerbs)
#include "tst_listverbs.moc"
