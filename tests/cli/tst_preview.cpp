// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliFixture.h"

#include <QJsonArray>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestPreview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_data();
    void text();
    void jsonDocument();
    void jsonLinesSayTheSame();
    void namesThatAreNotUtf8();
    void recipesComeInTheOrderOfTheLine();
    void recipeFile();
    void optionsReachTheEngine_data();
    void optionsReachTheEngine();
    void csvRuleReadsItsFile();
    void sorting_data();
    void sorting();
    void namesSortWithoutTheirExtensions();
    void lists_data();
    void lists();
    void statuses_data();
    void statuses();
    void usageErrorsNameTheWord_data();
    void usageErrorsNameTheWord();
    void nothingIsReadBeforeTheRecipeIsUnderstood();
    void firstLineComesBeforeTheLastFile();
    void refusedMoveIsMarkedButCountsNothing();
    void batchProblemsAreShownOnce();
    void colours_data();
    void colours();
    void brokenOutput_data();
    void brokenOutput();
    void interrupted();
    void previewTouchesNothing();

private:
    QString asText(const QStringList &options);
};

namespace {

const QString kPrefix = u"Text theText=new-"_s;
const QString kCounter = u"Counter"_s;
const QString kOriginal = u"Original"_s;

QStringList column(const QJsonArray &files, const QString &key)
{
    QStringList values;
    for (const QJsonValue file : files)
        values.append(file[key].toString());
    return values;
}

} // namespace

void TestPreview::text_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");
    const QStringList two{u"a.txt"_s, u"b.txt"_s};
    QTest::newRow("names") << two << QStringList{u"--rule"_s, kPrefix, u"--rule"_s, kCounter} << 0
                           << u"a.txt -> new-1.txt\nb.txt -> new-2.txt\n"
                              "2 files, 0 missing, 0 warnings, 0 critical problems\n"_s
                           << u""_s;
    QTest::newRow("problems below their file")
        << two << QStringList{u"--rule"_s, u"Text theText=x"_s} << 0
        << u"a.txt -> x.txt\nb.txt -> x-1.txt\n"
           "    warning: Duplicate: \"x\" is already used. Check BATCH/b.txt\n"
           "2 files, 0 missing, 1 warning, 0 critical problems\n"_s
        << u""_s;
    QTest::newRow("quiet") << two
                           << QStringList{u"-q"_s, u"--rule"_s, u"Text theText=x"_s,
                                          u"--duplicates-critical"_s}
                           << 3 << u""_s
                           << u"BATCH/b.txt: critical: Duplicate: \"x\" is already used. Check "
                              "BATCH/b.txt\ntavrin-cli: critical problems: a run with this recipe "
                              "would be refused\n"_s;
    QTest::newRow("whole paths when verbose")
        << QStringList{u"sub/a"_s} << QStringList{u"-v"_s, u"--rule"_s, kPrefix} << 0
        << u"BATCH/sub/a -> new-\n1 file, 0 missing, 0 warnings, 0 critical problems\n"_s
        << u"tavrin-cli: rule: Text theText=new-\ntavrin-cli: 1 file\n"_s;
    QTest::newRow("names cannot forge lines")
        << QStringList{u"a\nb -> c"_s, u"d\u001b[31m"_s}
        << QStringList{u"--rule"_s, kOriginal, u"--rule"_s, kCounter} << 0
        << u"a\\x0Ab -> c -> a\\x0Ab -> c1\nd\\x1B[31m -> d\\x1B[31m2\n"
           "2 files, 0 missing, 0 warnings, 0 critical problems\n"_s
        << u""_s;
    QTest::newRow("no rules") << QStringList{u"a.txt"_s} << QStringList{} << 3
                              << u"a.txt -> No Rules\n    critical: No rules defined. You need at "
                                 "least one naming rule\n"
                                 "1 file, 0 missing, 0 warnings, 1 critical problem\n"_s
                              << u"tavrin-cli: no rules: give at least one --rule, --preset or "
                                 "--recipe\n"_s;
}

void TestPreview::text()
{
    QFETCH(QStringList, files);
    QFETCH(QStringList, options);
    CliFixture cli;
    cli.batch(files);
    const int status = cli.run(QStringList{u"preview"_s} + options + QStringList{cli.batchPath()});
    QTEST(cli.out().replace(cli.batchPath(), u"BATCH"_s), "out");
    QTEST(cli.err().replace(cli.batchPath(), u"BATCH"_s), "err");
    QTEST(status, "status");
}

void TestPreview::jsonDocument()
{
    CliFixture cli;
    cli.batch({u"a.txt"_s, u"b.HTM"_s, u"x-1"_s});
    const int status = cli.run({u"preview"_s, u"--json"_s, u"--rule"_s, u"Text theText=\" x \""_s,
                                u"--extension"_s, u"handlingMethod=2 map=htm:html"_s,
                                cli.batchPath(), u"missing"_s});
    QCOMPARE(status, 1);
    QVERIFY(cli.err().contains(u"missing"_s));
    const QJsonObject document = cli.json();
    QCOMPARE(document.keys(),
             QStringList({u"criticals"_s, u"errors"_s, u"files"_s, u"missing"_s, u"warnings"_s}));
    QCOMPARE(document[u"missing"_s], QJsonValue(1));
    QCOMPARE(document[u"warnings"_s], QJsonValue(0));
    const QJsonArray files = document[u"files"_s].toArray();
    const QJsonObject second{{u"path"_s, cli.tree.path(u"batch/b.HTM"_s)},
                             {u"fileName"_s, u"b"_s},
                             {u"extension"_s, u"HTM"_s},
                             {u"targetName"_s, u" x "_s},
                             {u"targetExtension"_s, u".html"_s},
                             {u"finalName"_s, u"x.html"_s},
                             {u"errLevel"_s, 0},
                             {u"errors"_s, QJsonArray()}};
    QCOMPARE(files[1].toObject(), second);
    // The uniqueness test asks for "x." here, so the bare name is what will be tried.
    QCOMPARE(column(files, u"finalName"_s), QStringList({u"x.txt"_s, u"x.html"_s, u"x"_s}));
}

void TestPreview::jsonLinesSayTheSame()
{
    CliFixture cli;
    cli.batch({u"a.txt"_s, u"b.txt"_s});
    const QStringList arguments{u"--rule"_s, u"Text theText=x"_s, u"--duplicates-critical"_s,
                                cli.batchPath()};
    QCOMPARE(cli.run(QStringList{u"preview"_s, u"--json"_s} + arguments), 3);
    const QJsonObject document = cli.json();
    QCOMPARE(document[u"refused"_s], QJsonValue(true));
    QCOMPARE(document[u"criticals"_s], QJsonValue(1));
    QCOMPARE(document[u"errors"_s].toArray(), document[u"files"_s][1][u"errors"_s].toArray());
    QCOMPARE(cli.run(QStringList{u"preview"_s, u"--jsonl"_s} + arguments), 3);
    const QList<QJsonObject> lines = cli.jsonLines();
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0], document[u"files"_s][0].toObject());
    QCOMPARE(lines[1], document[u"files"_s][1].toObject());
    QJsonObject rest = document;
    rest.remove(u"files"_s);
    QCOMPARE(lines[2], rest);
}

void TestPreview::namesThatAreNotUtf8()
{
    CliFixture cli;
    cli.tree.rawFile("batch/a\xff.txt");
    QCOMPARE(cli.run({u"preview"_s, u"--json"_s, u"--rule"_s, kOriginal, u"--rule"_s, kCounter,
                      cli.batchPath()}),
             0);
    QVERIFY(cli.outBytes().contains(R"("finalName":"a\udcff1.txt")"));
    QVERIFY(cli.outBytes().contains(R"(/batch/a\udcff.txt")"));
    QCOMPARE(
        cli.run({u"preview"_s, u"--rule"_s, kOriginal, u"--rule"_s, kCounter, cli.batchPath()}), 0);
    QVERIFY(cli.out().startsWith(u"a\\xFF.txt -> a\\xFF1.txt\n"_s));
}

QString TestPreview::asText(const QStringList &options)
{
    CliFixture cli;
    cli.batch({u"a.txt"_s});
    cli.tree.file(u"recipe.json"_s, R"({"rules":[{"kind":"Text","theText":"r"}]})");
    QStringList arguments{u"preview"_s};
    for (const QString &option : options)
        arguments.append(option == u"recipe.json"_s ? cli.tree.path(option) : option);
    cli.run({u"presets"_s, u"save"_s, u"P"_s, u"--rule"_s, u"Text theText=p"_s});
    cli.run(arguments + QStringList{cli.batchPath()});
    return cli.out().section(u'\n', 0, 0).section(u" -> "_s, 1);
}

void TestPreview::recipesComeInTheOrderOfTheLine()
{
    QCOMPARE(asText({u"--rule"_s, u"Text theText=a"_s, u"--preset"_s, u"P"_s, u"--recipe"_s,
                     u"recipe.json"_s, u"--rule"_s, u"Text theText=b"_s}),
             u"aprb.txt"_s);
    QCOMPARE(asText({u"--recipe"_s, u"recipe.json"_s, u"--rule"_s, u"Text theText=b"_s,
                     u"--preset"_s, u"P"_s}),
             u"rbp.txt"_s);
}

void TestPreview::recipeFile()
{
    CliFixture cli;
    cli.batch({u"a.TXT"_s, u"b.TXT"_s});
    const QString recipe = cli.tree.file(
        u"recipe.json"_s,
        R"({"rules":[{"kind":"Text","theText":"a:b"},{"kind":"Text","theText":""}],)"
        R"("extension":{"caseHandling":2},"options":{"compliance":1,"duplicatesAreCritical":true}})");
    QCOMPARE(cli.run({u"preview"_s, u"--json"_s, u"--recipe"_s, recipe, cli.batchPath()}), 3);
    QCOMPARE(column(cli.json()[u"files"_s].toArray(), u"finalName"_s),
             QStringList({u"a:b.txt"_s, u"a:b-1.txt"_s}));
    // Without "rules" the list is empty, whatever else the file says.
    const QString empty = cli.tree.file(u"empty.json"_s, R"({"extension":{"caseHandling":2}})");
    QCOMPARE(cli.run({u"preview"_s, u"--json"_s, u"--recipe"_s, empty, cli.batchPath()}), 3);
    QCOMPARE(cli.json()[u"criticals"_s], QJsonValue(2));
    QCOMPARE(cli.json()[u"files"_s][0][u"finalName"_s], QJsonValue(QJsonValue::Null));
    QCOMPARE(cli.json()[u"files"_s][0][u"targetName"_s], QJsonValue(u"No Rules"_s));
}

void TestPreview::optionsReachTheEngine_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("finalName");
    const QString colon = u"Text theText=a:b"_s;
    QTest::newRow("colons replaced") << QStringList{u"--rule"_s, colon} << u"a_b.txt"_s;
    QTest::newRow("compliance") << QStringList{u"--compliance"_s, u"--rule"_s, colon}
                                << u"a:b.txt"_s;
    QTest::newRow("own name is taken") << QStringList{u"--rule"_s, kOriginal} << u"x-1.txt"_s;
    QTest::newRow("unchanged kept")
        << QStringList{u"--keep-unchanged"_s, u"--rule"_s, kOriginal} << u"x.txt"_s;
    QTest::newRow("extension") << QStringList{u"--extension=handlingMethod=1 replacer=md"_s,
                                              u"--rule"_s, kOriginal}
                               << u"x.md"_s;
    QTest::newRow("extension settings add up")
        << QStringList{u"--extension=handlingMethod=1"_s, u"--extension=replacer=rst"_s,
                       u"--rule"_s, kOriginal}
        << u"x.rst"_s;
}

void TestPreview::optionsReachTheEngine()
{
    QFETCH(QStringList, options);
    CliFixture cli;
    cli.batch({u"x.txt"_s});
    cli.run(QStringList{u"preview"_s, u"--json"_s} + options + QStringList{cli.batchPath()});
    QTEST(cli.json()[u"files"_s][0][u"finalName"_s].toString(), "finalName");
}

void TestPreview::csvRuleReadsItsFile()
{
    CliFixture cli;
    cli.batch({u"a"_s, u"b"_s});
    const QString table = cli.tree.file(u"names.csv"_s, "id,name\n1,\"Ann\"\n2,Ben\n");
    const QString rule = u"CSVTag file='%1' useColumn=1 skipFirst=true"_s.arg(table);
    QCOMPARE(cli.run({u"preview"_s, u"--json"_s, u"--rule"_s, rule, cli.batchPath()}), 0);
    QCOMPARE(column(cli.json()[u"files"_s].toArray(), u"finalName"_s),
             QStringList({u"Ann"_s, u"Ben"_s}));
    QCOMPARE(cli.run({u"preview"_s, u"--json"_s, u"--rule"_s, u"CSVTag file=/none.csv"_s,
                      cli.batchPath()}),
             2);
    QVERIFY(cli.err().contains(u"/none.csv"_s));
}

void TestPreview::sorting_data()
{
    QTest::addColumn<QString>("sort");
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QString>("order");
    const QString falling = u"Counter startValue=9 increment=-1"_s;
    // b becomes empty, which is critical; a gets the name that A had first, which is a warning.
    const QString faulty = u"RegExTag match=^b$ replace="_s;
    QTest::newRow("name") << u"fileName"_s << kOriginal << u"A a B b c"_s;
    QTest::newRow("name with case") << u"fileName:case"_s << kOriginal << u"A B a b c"_s;
    QTest::newRow("name falling") << u"fileName:desc"_s << kOriginal << u"c B b A a"_s;
    QTest::newRow("name falling with case")
        << u"fileName:case:desc"_s << kOriginal << u"c b a B A"_s;
    QTest::newRow("size") << u"size"_s << kOriginal << u"c b a B A"_s;
    QTest::newRow("size falling") << u"size:desc"_s << kOriginal << u"A B a b c"_s;
    QTest::newRow("target name") << u"targetName"_s << falling << u"c b a B A"_s;
    QTest::newRow("target name falling") << u"targetName:desc"_s << falling << u"A B a b c"_s;
    QTest::newRow("error") << u"error"_s << faulty << u"A B c a b"_s;
    QTest::newRow("error falling") << u"error:desc"_s << faulty << u"b a A B c"_s;
}

void TestPreview::sorting()
{
    QFETCH(QString, sort);
    QFETCH(QString, rule);
    CliFixture cli;
    qsizetype size = 9;
    for (const QString &name : {u"A"_s, u"B"_s, u"a"_s, u"b"_s, u"c"_s})
        cli.tree.file(u"batch/"_s + name + u".txt"_s, QByteArray(size--, 'x'));
    cli.run({u"preview"_s, u"--json"_s, u"--sort"_s, sort, u"--rule"_s, rule, cli.batchPath()});
    QTEST(column(cli.json()[u"files"_s].toArray(), u"fileName"_s).join(u' '), "order");
}

void TestPreview::namesSortWithoutTheirExtensions()
{
    CliFixture cli;
    cli.batch({u"a b.txt"_s, u"a.txt"_s});
    cli.run({u"preview"_s, u"--json"_s, u"--sort"_s, u"fileName"_s, u"--rule"_s, kCounter,
             cli.batchPath()});
    QCOMPARE(column(cli.json()[u"files"_s].toArray(), u"fileName"_s),
             QStringList({u"a"_s, u"a b"_s}));
}

void TestPreview::lists_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("files");
    const QStringList lines{u"--files-from"_s, u"-"_s};
    const QStringList nul{u"-0"_s, u"--files-from=-"_s};
    QTest::newRow("lines") << QByteArray("BATCH/b\nBATCH/a\n") << lines
                           << QStringList{u"c"_s, u"b"_s, u"a"_s};
    QTest::newRow("no last line break")
        << QByteArray("BATCH/b\nBATCH/a") << lines << QStringList{u"c"_s, u"b"_s, u"a"_s};
    QTest::newRow("blank lines") << QByteArray("\n\nBATCH/b\n\n") << lines
                                 << QStringList{u"c"_s, u"b"_s};
    QTest::newRow("named twice") << QByteArray("BATCH/b\nBATCH/c\nBATCH/b\n") << lines
                                 << QStringList{u"c"_s, u"b"_s};
    QTest::newRow("NUL") << QByteArray("BATCH/new\nline\0BATCH/a\0", 23) << nul
                         << QStringList{u"c"_s, u"new\nline"_s, u"a"_s};
    QTest::newRow("empty") << QByteArray() << lines << QStringList{u"c"_s};
    QTest::newRow("raw bytes") << QByteArray("BATCH/\xff\n") << lines
                               << QStringList{u"c"_s, QString(QChar(0xDCFF))};
    QTest::newRow("longer than a block") << QByteArray("BATCH/a\n").repeated(20'000) + "BATCH/b"
                                         << lines << QStringList{u"c"_s, u"a"_s, u"b"_s};
}

void TestPreview::lists()
{
    QFETCH(QByteArray, list);
    QFETCH(QStringList, options);
    CliFixture cli;
    cli.batch({u"a"_s, u"b"_s, u"c"_s, u"new\nline"_s});
    cli.tree.rawFile("batch/\xff");
    cli.tree.file(u"list"_s, list.replace("BATCH", cli.batchPath().toUtf8()));
    cli.input = ::open(cli.tree.path(u"list"_s).toUtf8().constData(), O_RDONLY | O_CLOEXEC);
    cli.run(
        QStringList{u"preview"_s, u"--json"_s, u"--rule"_s, kCounter, cli.tree.path(u"batch/c"_s)} +
        options);
    ::close(cli.input);
    QTEST(column(cli.json()[u"files"_s].toArray(), u"fileName"_s), "files");
    QCOMPARE(cli.json()[u"missing"_s], QJsonValue(0));
}

void TestPreview::statuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    const QStringList rule{u"--rule"_s, kCounter};
    QTest::newRow("done") << rule + QStringList{u"BATCH"_s} << 0;
    QTest::newRow("warnings are no failure")
        << QStringList{u"--rule"_s, u"Text theText=x"_s, u"BATCH"_s} << 0;
    QTest::newRow("missing") << rule + QStringList{u"BATCH"_s, u"BATCH/none"_s} << 1;
    QTest::newRow("nothing matched") << rule + QStringList{u"BATCH/empty"_s} << 1;
    QTest::newRow("no paths") << rule << 2;
    QTest::newRow("no such list") << rule + QStringList{u"--files-from"_s, u"BATCH/none"_s} << 2;
    QTest::newRow("a folder as list") << rule + QStringList{u"--files-from"_s, u"BATCH"_s} << 2;
    QTest::newRow("critical") << QStringList{u"--rule"_s, u"Text theText=' '"_s, u"BATCH"_s} << 3;
    QTest::newRow("critical counts before missing")
        << QStringList{u"--rule"_s, u"Text theText=' '"_s, u"BATCH"_s, u"BATCH/none"_s} << 3;
    QTest::newRow("no rules and no files") << QStringList{u"BATCH/empty"_s} << 3;
}

void TestPreview::statuses()
{
    QFETCH(QStringList, arguments);
    CliFixture cli;
    cli.batch({u"a"_s, u"b"_s});
    cli.tree.folder(u"batch/empty"_s);
    arguments.replaceInStrings(u"BATCH"_s, cli.batchPath());
    QTEST(cli.run(QStringList{u"preview"_s, u"--json"_s} + arguments), "status");
    QFETCH(int, status);
    QCOMPARE(cli.json()[u"error"_s][u"status"_s].toInt(), status == 2 ? 2 : 0);
    QCOMPARE(cli.json().contains(u"refused"_s), status == 3);
}

void TestPreview::usageErrorsNameTheWord_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("mentioned");
    const auto row = [](const char *name, const QStringList &arguments, const QString &mentioned) {
        QTest::newRow(name) << arguments << mentioned;
    };
    row("rule", {u"--rule"_s, u"Texd"_s}, u"--rule: unknown kind of rule \"Texd\""_s);
    row("extension", {u"--extension"_s, u"x=1"_s},
        u"--extension: extension: unknown setting \"x\""_s);
    row("preset", {u"--preset"_s, u"none"_s}, u"--preset none: there is no such preset"_s);
    row("preset file", {u"--preset"_s, u"/no.renamesetting"_s}, u"/no.renamesetting"_s);
    row("recipe", {u"--recipe"_s, u"/no.json"_s}, u"/no.json"_s);
    row("sort", {u"--sort"_s, u"name"_s}, u"\"name\"; possible: fileName, targetName"_s);
    row("sort order", {u"--sort"_s, u"size:up"_s}, u"\"up\"; possible: desc"_s);
    row("case for sizes", {u"--sort"_s, u"size:case"_s}, u"\"case\"; possible: desc"_s);
    row("colour", {u"--color"_s, u"yes"_s}, u"\"yes\"; possible: auto, always, never"_s);
    row("progress", {u"--progress=on"_s}, u"\"on\"; possible: auto, always, never"_s);
    row("option", {u"--rules"_s}, u"--rules; possible: --rule, --preset"_s);
}

void TestPreview::usageErrorsNameTheWord()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, mentioned);
    CliFixture cli;
    QCOMPARE(cli.run(QStringList{u"preview"_s} + arguments + QStringList{u"."_s}), 2);
    QVERIFY2(cli.err().contains(mentioned), qPrintable(cli.err()));
    QVERIFY(cli.err().contains(u"tavrin-cli preview --help"_s));
    QCOMPARE(cli.out(), QString());
    QCOMPARE(cli.run(QStringList{u"preview"_s, u"--json"_s} + arguments + QStringList{u"."_s}), 2);
    QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(2));
    QVERIFY(cli.json()[u"error"_s][u"text"_s].toString().contains(mentioned));
}

void TestPreview::nothingIsReadBeforeTheRecipeIsUnderstood()
{
    CliFixture cli;
    QCOMPARE(cli.run({u"preview"_s, u"--recipe"_s, u"/none.json"_s, u"--preset"_s, u"none"_s,
                      u"--rule"_s, u"CSVTag file=/none.csv"_s, u"--rule"_s, u"Typo"_s, u"/none"_s}),
             2);
    QVERIFY2(cli.err().contains(u"Typo"_s), qPrintable(cli.err()));
    QVERIFY2(!cli.err().contains(u"none"_s), qPrintable(cli.err()));
    const QString recipe =
        cli.tree.file(u"r.json"_s, R"({"rules":[{"kind":"Counter","start":1}]})");
    QCOMPARE(cli.run({u"preview"_s, u"--rule"_s, u"CSVTag file=/none.csv"_s, u"--recipe"_s, recipe,
                      u"/none"_s}),
             2);
    QVERIFY2(cli.err().contains(u"\"start\""_s), qPrintable(cli.err()));
    QVERIFY2(!cli.err().contains(u"none"_s), qPrintable(cli.err()));
}

void TestPreview::firstLineComesBeforeTheLastFile()
{
    for (const QString &form : {u"--color=never"_s, u"--json"_s, u"--jsonl"_s}) {
        CliFixture cli;
        QStringList names;
        for (int i = 0; i < 3000; ++i)
            names.append(QString::number(10'000 + i));
        cli.batch(names);
        int writes = 0;
        cli.onOutput = [&] {
            // The flag stops the preview after the files that have been printed by then.
            ++writes;
            cli.interrupted = true;
        };
        QCOMPARE(cli.run({u"preview"_s, form, u"--rule"_s, kCounter, cli.batchPath()}), 130);
        QVERIFY(cli.outBytes().contains("10000"));
        QVERIFY(!cli.outBytes().contains("12999"));
        QVERIFY(writes >= 1);
    }
}

void TestPreview::refusedMoveIsMarkedButCountsNothing()
{
    CliFixture cli;
    cli.batch({u"a"_s});
    const QStringList arguments{u"--compliance"_s, u"--rule"_s, u"Text theText=x/y"_s,
                                cli.batchPath()};
    QCOMPARE(cli.run(QStringList{u"preview"_s} + arguments), 0);
    QVERIFY2(cli.out().startsWith(u"a -> x/y\n    will fail: "_s), qPrintable(cli.out()));
    QCOMPARE(cli.run(QStringList{u"preview"_s, u"--json"_s} + arguments), 0);
    QCOMPARE(cli.json()[u"files"_s][0][u"finalName"_s], QJsonValue(u"x/y"_s));
    QCOMPARE(cli.json()[u"files"_s][0][u"errLevel"_s], QJsonValue(0));
}

void TestPreview::batchProblemsAreShownOnce()
{
    CliFixture cli;
    cli.batch({u"a"_s, u"b"_s});
    QCOMPARE(cli.run({u"preview"_s, u"--rule"_s, u"Text theText="_s, u"--rule"_s, kCounter,
                      cli.batchPath()}),
             0);
    QCOMPARE(cli.out(), u"a -> 1\nb -> 2\nwarning: Text constant is empty (2 times)\n"
                        "2 files, 0 missing, 2 warnings, 0 critical problems\n"_s);
}

void TestPreview::colours_data()
{
    QTest::addColumn<bool>("terminal");
    QTest::addColumn<QString>("noColour");
    QTest::addColumn<QString>("option");
    QTest::addColumn<bool>("coloured");
    QTest::newRow("terminal") << true << u""_s << u"auto"_s << true;
    QTest::newRow("file") << false << u""_s << u"auto"_s << false;
    QTest::newRow("NO_COLOR") << true << u"1"_s << u"auto"_s << false;
    QTest::newRow("always wins") << false << u"1"_s << u"always"_s << true;
    QTest::newRow("never") << true << u""_s << u"never"_s << false;
}

void TestPreview::colours()
{
    QFETCH(QString, noColour);
    QFETCH(QString, option);
    QFETCH(bool, coloured);
    CliFixture cli;
    cli.batch({u"a.txt"_s, u"onetwo.md"_s});
    QFETCH(bool, terminal);
    cli.outIsTerminal = terminal;
    qputenv("NO_COLOR", noColour.toUtf8());
    qputenv("TERM", "xterm");
    cli.run({u"preview"_s, u"--color"_s, option, u"--extension"_s,
             u"handlingMethod=1 replacer=md"_s, u"--rule"_s, u"Text theText=\" one\""_s,
             u"--rule"_s, u"Text theText=two"_s, cli.tree.path(u"batch/a.txt"_s)});
    QCOMPARE(cli.outBytes().contains('\x1b'), coloured);
    // Whatever the colours, the text is that of the final name.
    QByteArray plain = cli.outBytes();
    while (plain.contains('\x1b'))
        plain.remove(plain.indexOf('\x1b'),
                     plain.indexOf('m', plain.indexOf('\x1b')) - plain.indexOf('\x1b') + 1);
    QVERIFY2(plain.startsWith("a.txt -> onetwo-1.md\n"), plain.constData());
    QCOMPARE(cli.outBytes().count("\x1b[0m"), coloured ? 3 : 0);
}

void TestPreview::brokenOutput_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("message");
    QTest::newRow("reader left") << EPIPE << u""_s;
    QTest::newRow("disk full") << ENOSPC << u"tavrin-cli: cannot write to standard output: "_s;
}

void TestPreview::brokenOutput()
{
    QFETCH(int, error);
    QFETCH(QString, message);
    CliFixture cli;
    cli.batch({u"a"_s});
    cli.failOutputWith = error;
    QCOMPARE(cli.run({u"preview"_s, u"--rule"_s, kCounter, cli.batchPath()}), 1);
    QCOMPARE(cli.err().left(message.size()), message);
    QCOMPARE(cli.err().isEmpty(), message.isEmpty());
}

void TestPreview::interrupted()
{
    CliFixture cli;
    cli.batch({u"a"_s});
    cli.interrupted = true;
    QCOMPARE(cli.run({u"preview"_s, u"--rule"_s, kCounter, cli.batchPath()}), 130);
}

void TestPreview::previewTouchesNothing()
{
    CliFixture cli;
    cli.batch({u"a.txt"_s, u"sub/b.txt"_s});
    const QStringList before = cli.tree.list();
    QCOMPARE(cli.run({u"preview"_s, u"--rule"_s, kCounter, cli.batchPath()}), 0);
    QCOMPARE(cli.tree.list(), before);
}

QTEST_GUILESS_MAIN(TestPreview)
#include "tst_preview.moc"
