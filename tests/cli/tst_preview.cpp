// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliFixture.h"
#include "support/Table.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

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

class TestPreview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_data()
    {
        const Table<QStringList, QStringList, int, QString, QString> row("files", "options",
                                                                         "status", "out", "err");
        const QStringList two{u"a.txt"_s, u"b.txt"_s};
        row("names", two, {u"--rule"_s, kPrefix, u"--rule"_s, kCounter}, 0,
            u"a.txt -> new-1.txt\nb.txt -> new-2.txt\n"
            "2 files, 0 missing, 0 warnings, 0 critical problems\n",
            u"");
        row("problems below their file", two, {u"--rule"_s, u"Text theText=x"_s}, 0,
            u"a.txt -> x.txt\nb.txt -> x-1.txt\n"
            "    warning: Duplicate: \"x\" is already used. Check BATCH/b.txt\n"
            "2 files, 0 missing, 1 warning, 0 critical problems\n",
            u"");
        row("quiet", two, {u"-q"_s, u"--rule"_s, u"Text theText=x"_s, u"--duplicates-critical"_s},
            3, u"",
            u"BATCH/b.txt: critical: Duplicate: \"x\" is already used. Check "
            "BATCH/b.txt\ntavrin-cli: critical problems: a run with this recipe "
            "would be refused\n");
        row("whole paths when verbose", {u"sub/a"_s}, {u"-v"_s, u"--rule"_s, kPrefix}, 0,
            u"BATCH/sub/a -> new-\n1 file, 0 missing, 0 warnings, 0 critical problems\n",
            u"tavrin-cli: rule: Text theText=new-\ntavrin-cli: 1 file\n");
        row("names cannot forge lines", {u"a\nb -> c"_s, u"d\u001b[31m"_s},
            {u"--rule"_s, kOriginal, u"--rule"_s, kCounter}, 0,
            u"a\\x0Ab -> c -> a\\x0Ab -> c1\nd\\x1B[31m -> d\\x1B[31m2\n"
            "2 files, 0 missing, 0 warnings, 0 critical problems\n",
            u"");
        row("no rules", {u"a.txt"_s}, {}, 3,
            u"a.txt -> No Rules\n    critical: No rules defined. You need at "
            "least one naming rule\n"
            "1 file, 0 missing, 0 warnings, 1 critical problem\n",
            u"tavrin-cli: no rules: give at least one --rule, --preset or "
            "--recipe\n");
    }

    void text()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, options);
        CliFixture cli;
        cli.batch(files);
        const int status =
            cli.run(QStringList{u"preview"_s} + options + QStringList{cli.batchPath()});
        QTEST(cli.out().replace(cli.batchPath(), u"BATCH"_s), "out");
        QTEST(cli.err().replace(cli.batchPath(), u"BATCH"_s), "err");
        QTEST(status, "status");
    }

    void jsonDocument()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"b.HTM"_s, u"x-1"_s});
        const int status = cli.runLine(
            u"preview --json --rule 'Text theText=\" x \"' --extension 'handlingMethod=2 map=htm:html' BATCH missing"_s);
        QCOMPARE(status, 1);
        QVERIFY(cli.err().contains(u"missing"_s));
        const QJsonObject document = cli.json();
        QCOMPARE(document.keys(), QStringList({u"criticals"_s, u"errors"_s, u"files"_s,
                                               u"missing"_s, u"warnings"_s}));
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

    void jsonLinesSayTheSame()
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

    void namesThatAreNotUtf8()
    {
        CliFixture cli;
        cli.tree.rawFile("batch/a\xff.txt");
        QCOMPARE(cli.run({u"preview"_s, u"--json"_s, u"--rule"_s, kOriginal, u"--rule"_s, kCounter,
                          cli.batchPath()}),
                 0);
        QVERIFY(cli.outBytes().contains("\"finalName\":\"a\\udcff1.txt\""));
        QVERIFY(cli.outBytes().contains("/batch/a\\udcff.txt\""));
        QCOMPARE(
            cli.run({u"preview"_s, u"--rule"_s, kOriginal, u"--rule"_s, kCounter, cli.batchPath()}),
            0);
        QVERIFY(cli.out().startsWith(u"a\\xFF.txt -> a\\xFF1.txt\n"_s));
    }

    void recipesComeInTheOrderOfTheLine()
    {
        QCOMPARE(asText({u"--rule"_s, u"Text theText=a"_s, u"--preset"_s, u"P"_s, u"--recipe"_s,
                         u"recipe.json"_s, u"--rule"_s, u"Text theText=b"_s}),
                 u"aprb.txt"_s);
        QCOMPARE(asText({u"--recipe"_s, u"recipe.json"_s, u"--rule"_s, u"Text theText=b"_s,
                         u"--preset"_s, u"P"_s}),
                 u"rbp.txt"_s);
    }

    void recipeFile()
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

    void optionsReachTheEngine_data()
    {
        const Table<QStringList, QString> row("options", "finalName");
        const QString colon = u"Text theText=a:b"_s;
        row("colons replaced", {u"--rule"_s, colon}, u"a_b.txt");
        row("compliance", {u"--compliance"_s, u"--rule"_s, colon}, u"a:b.txt");
        row("own name is taken", {u"--rule"_s, kOriginal}, u"x-1.txt");
        row("unchanged kept", {u"--keep-unchanged"_s, u"--rule"_s, kOriginal}, u"x.txt");
        row("extension", {u"--extension=handlingMethod=1 replacer=md"_s, u"--rule"_s, kOriginal},
            u"x.md");
        row("extension settings add up",
            {u"--extension=handlingMethod=1"_s, u"--extension=replacer=rst"_s, u"--rule"_s,
             kOriginal},
            u"x.rst");
    }

    void optionsReachTheEngine()
    {
        QFETCH(QStringList, options);
        CliFixture cli;
        cli.batch({u"x.txt"_s});
        cli.run(QStringList{u"preview"_s, u"--json"_s} + options + QStringList{cli.batchPath()});
        QTEST(cli.json()[u"files"_s][0][u"finalName"_s].toString(), "finalName");
    }

    void csvRuleReadsItsFile()
    {
        CliFixture cli;
        cli.batch({u"a"_s, u"b"_s});
        const QString table = cli.tree.file(u"names.csv"_s, "id,name\n1,\"Ann\"\n2,Ben\n");
        const QString rule = u"CSVTag file='%1' useColumn=1 skipFirst=true"_s.arg(table);
        QCOMPARE(cli.run({u"preview"_s, u"--json"_s, u"--rule"_s, rule, cli.batchPath()}), 0);
        QCOMPARE(column(cli.json()[u"files"_s].toArray(), u"finalName"_s),
                 QStringList({u"Ann"_s, u"Ben"_s}));
        QCOMPARE(cli.runLine(u"preview --json --rule 'CSVTag file=/none.csv' BATCH"_s), 2);
        QVERIFY(cli.err().contains(u"/none.csv"_s));
    }

    void sorting_data()
    {
        const Table<QString, QString, QString> row("sort", "rule", "order");
        const QString falling = u"Counter startValue=9 increment=-1"_s;
        // b becomes empty, which is critical; a gets the name that A had first, which is a warning.
        const QString faulty = u"RegExTag match=^b$ replace="_s;
        row("name", u"fileName", kOriginal, u"A a B b c");
        row("name with case", u"fileName:case", kOriginal, u"A B a b c");
        row("name falling", u"fileName:desc", kOriginal, u"c B b A a");
        row("name falling with case", u"fileName:case:desc", kOriginal, u"c b a B A");
        row("size", u"size", kOriginal, u"c b a B A");
        row("size falling", u"size:desc", kOriginal, u"A B a b c");
        row("target name", u"targetName", falling, u"c b a B A");
        row("target name falling", u"targetName:desc", falling, u"A B a b c");
        row("size in the name", u"targetName", u"Original whichProperty=2", u"c b a B A");
        row("date in the name", u"targetName", u"Original whichProperty=3 dateFormat=4",
            u"c b a B A");
        row("error", u"error", faulty, u"A B c a b");
        row("error falling", u"error:desc", faulty, u"b a A B c");
    }

    void sorting()
    {
        QFETCH(QString, sort);
        QFETCH(QString, rule);
        CliFixture cli;
        qsizetype size = 9;
        for (const QString &name : {u"A"_s, u"B"_s, u"a"_s, u"b"_s, u"c"_s}) {
            QFile file(cli.tree.file(u"batch/"_s + name + u".txt"_s, QByteArray(size, 'x')));
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.setFileTime(QDateTime(QDate(static_cast<int>(2000 + size), 7, 3), {}),
                                     QFile::FileModificationTime));
            --size;
        }
        cli.run({u"preview"_s, u"--json"_s, u"--sort"_s, sort, u"--rule"_s, rule, cli.batchPath()});
        QTEST(column(cli.json()[u"files"_s].toArray(), u"fileName"_s).join(u' '), "order");
    }

    void namesSortWithoutTheirExtensions()
    {
        CliFixture cli;
        cli.batch({u"a b.txt"_s, u"a.txt"_s});
        cli.run({u"preview"_s, u"--json"_s, u"--sort"_s, u"fileName"_s, u"--rule"_s, kCounter,
                 cli.batchPath()});
        QCOMPARE(column(cli.json()[u"files"_s].toArray(), u"fileName"_s),
                 QStringList({u"a"_s, u"a b"_s}));
    }

    void lists_data()
    {
        const Table<QByteArray, QStringList, QStringList> row("list", "options", "files");
        const QStringList lines{u"--files-from"_s, u"-"_s};
        const QStringList nul{u"-0"_s, u"--files-from=-"_s};
        row("lines", QByteArray("BATCH/b\nBATCH/a\n"), lines, {u"c"_s, u"b"_s, u"a"_s});
        row("no last line break", QByteArray("BATCH/b\nBATCH/a"), lines, {u"c"_s, u"b"_s, u"a"_s});
        row("blank lines", QByteArray("\n\nBATCH/b\n\n"), lines, {u"c"_s, u"b"_s});
        row("named twice", QByteArray("BATCH/b\nBATCH/c\nBATCH/b\n"), lines, {u"c"_s, u"b"_s});
        row("NUL", QByteArray("BATCH/new\nline\0BATCH/a\0", 23), nul,
            {u"c"_s, u"new\nline"_s, u"a"_s});
        row("empty", QByteArray(), lines, {u"c"_s});
        row("raw bytes", QByteArray("BATCH/\xff\n"), lines, {u"c"_s, QString(QChar(0xDCFF))});
        row("longer than a block", QByteArray("BATCH/a\n").repeated(20'000) + "BATCH/b", lines,
            {u"c"_s, u"a"_s, u"b"_s});
    }

    void lists()
    {
        QFETCH(QByteArray, list);
        QFETCH(QStringList, options);
        CliFixture cli;
        cli.batch({u"a"_s, u"b"_s, u"c"_s, u"new\nline"_s});
        cli.tree.rawFile("batch/\xff");
        cli.tree.file(u"list"_s, list.replace("BATCH", cli.batchPath().toUtf8()));
        cli.input = ::open(cli.tree.path(u"list"_s).toUtf8().constData(), O_RDONLY | O_CLOEXEC);
        cli.run(QStringList{u"preview"_s, u"--json"_s, u"--rule"_s, kCounter,
                            cli.tree.path(u"batch/c"_s)} +
                options);
        ::close(cli.input);
        QTEST(column(cli.json()[u"files"_s].toArray(), u"fileName"_s), "files");
        QCOMPARE(cli.json()[u"missing"_s], QJsonValue(0));
    }

    void statuses_data()
    {
        const Table<QStringList, int> row("arguments", "status");
        const QStringList rule{u"--rule"_s, kCounter};
        row("done", rule + QStringList{u"BATCH"_s}, 0);
        row("warnings are no failure", {u"--rule"_s, u"Text theText=x"_s, u"BATCH"_s}, 0);
        row("missing", rule + QStringList{u"BATCH"_s, u"BATCH/none"_s}, 1);
        row("nothing matched", rule + QStringList{u"BATCH/empty"_s}, 1);
        row("no paths", rule, 2);
        row("no such list", rule + QStringList{u"--files-from"_s, u"BATCH/none"_s}, 2);
        row("a folder as list", rule + QStringList{u"--files-from"_s, u"BATCH"_s}, 2);
        row("critical", {u"--rule"_s, u"Text theText=' '"_s, u"BATCH"_s}, 3);
        row("critical for an extension",
            rule + QStringList{u"--extension"_s,
                               u"handlingMethod=4 regAccess=0 regEx='((.?){99}){99}z'"_s,
                               u"BATCH"_s},
            3);
        row("critical counts before missing",
            {u"--rule"_s, u"Text theText=' '"_s, u"BATCH"_s, u"BATCH/none"_s}, 3);
        row("no rules and no files", {u"BATCH/empty"_s}, 3);
    }

    void statuses()
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

    void usageErrorsNameTheWord_data()
    {
        Table<QStringList, QString>("arguments", "mentioned");
        const auto row = [](const char *name, const QStringList &arguments,
                            const QString &mentioned) {
            QTest::newRow(name) << arguments << mentioned;
        };
        row("rule", {u"--rule"_s, u"Texd"_s}, u"--rule: unknown kind of rule \"Texd\""_s);
        row("extension", {u"--extension"_s, u"x=1"_s}, u"--extension: unknown setting \"x\""_s);
        row("preset", {u"--preset"_s, u"none"_s}, u"--preset none: there is no such preset"_s);
        row("preset file", {u"--preset"_s, u"/no.renamesetting"_s}, u"/no.renamesetting"_s);
        row("recipe", {u"--recipe"_s, u"/no.json"_s}, u"/no.json"_s);
        row("sort", {u"--sort"_s, u"name"_s}, u"\"name\"; possible: fileName, targetName"_s);
        row("sort order", {u"--sort"_s, u"size:up"_s}, u"\"up\"; possible: desc"_s);
        row("case for sizes", {u"--sort"_s, u"size:case"_s}, u"\"case\"; possible: desc"_s);
        row("order given twice", {u"--sort"_s, u"size:desc:desc"_s}, u"\"desc\" is given twice"_s);
        row("two orders", {u"--sort=size"_s, u"--sort=error"_s}, u"--sort is given twice"_s);
        row("two lists", {u"--files-from=a"_s, u"--files-from=b"_s},
            u"--files-from is given twice"_s);
        row("NUL without a list", {u"-0"_s}, u"--files-from"_s);
        row("order before files are read", {u"--recipe=/no.json"_s, u"--sort=bogus"_s}, u"bogus"_s);
        row("misspelt table", {u"--rule"_s, u"CSVTag file=/no.csv"_s}, u"check the spelling"_s);
        row("colour", {u"--color"_s, u"yes"_s}, u"\"yes\"; possible: auto, always, never"_s);
        row("progress", {u"--progress=on"_s}, u"\"on\"; possible: auto, always, never"_s);
        row("option", {u"--rules"_s}, u"--rules; possible: --rule, --preset"_s);
    }

    void usageErrorsNameTheWord()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, mentioned);
        CliFixture cli;
        QCOMPARE(cli.run(QStringList{u"preview"_s} + arguments + QStringList{u"."_s}), 2);
        QVERIFY2(cli.err().contains(mentioned), qPrintable(cli.err()));
        QVERIFY(cli.err().contains(u"tavrin-cli preview --help"_s));
        QCOMPARE(cli.out(), QString());
        QCOMPARE(cli.run(QStringList{u"preview"_s, u"--json"_s} + arguments + QStringList{u"."_s}),
                 2);
        QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(2));
        QVERIFY(cli.json()[u"error"_s][u"text"_s].toString().contains(mentioned));
    }

    void wrongPatternsAreNamedOnce_data()
    {
        const Table<QString, QString> row("options", "mentioned");
        row("pattern", u"--rule 'RegExTag match=\"(\" replace=x'",
            u"pattern \"(\", replacement \"x\": A");
        row("empty", u"--rule 'RegExTag match= replace=x'", u"The pattern is empty.");
        row("replacement", u"--rule 'RegExTag match=a replace=$9'", u"replacement \"$9\": The");
        row("extension", u"--rule Original --extension 'handlingMethod=4 regEx=('",
            u"extension, pattern \"(\"");
    }

    void wrongPatternsAreNamedOnce()
    {
        QFETCH(QString, options);
        QFETCH(QString, mentioned);
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"b.txt"_s});
        cli.runLine(u"preview --quiet BATCH "_s + options);
        QCOMPARE(cli.err().count(mentioned), 1);
    }

    void nothingIsReadBeforeTheRecipeIsUnderstood()
    {
        CliFixture cli;
        QCOMPARE(
            cli.runLine(
                u"preview --recipe /none.json --preset none --rule 'CSVTag file=/none.csv' --rule Typo /none"_s),
            2);
        QVERIFY2(cli.err().contains(u"Typo"_s), qPrintable(cli.err()));
        QVERIFY2(!cli.err().contains(u"none"_s), qPrintable(cli.err()));
        const QString recipe =
            cli.tree.file(u"r.json"_s, R"({"rules":[{"kind":"Counter","start":1}]})");
        QCOMPARE(cli.run({u"preview"_s, u"--rule"_s, u"CSVTag file=/none.csv"_s, u"--recipe"_s,
                          recipe, u"/none"_s}),
                 2);
        QVERIFY2(cli.err().contains(u"\"start\""_s), qPrintable(cli.err()));
        QVERIFY2(!cli.err().contains(u"none"_s), qPrintable(cli.err()));
    }

    void firstLineComesBeforeTheLastFile()
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
            QVERIFY2(cli.err().contains(u"interrupted"_s), qPrintable(cli.err()));
            const QJsonObject last = form == u"--jsonl"_s ? cli.jsonLines().last() : cli.json();
            QCOMPARE(last[u"interrupted"_s].toBool(), form.startsWith(u"--json"_s));
        }
    }

    void refusedMoveIsMarkedButCountsNothing()
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

    void batchProblemsAreShownOnce()
    {
        CliFixture cli;
        cli.batch({u"a"_s, u"b"_s});
        QCOMPARE(cli.run({u"preview"_s, u"--rule"_s, u"Text theText="_s, u"--rule"_s, kCounter,
                          cli.batchPath()}),
                 0);
        QCOMPARE(cli.out(), u"a -> 1\nb -> 2\nwarning: Text constant is empty (2 times)\n"
                            "2 files, 0 missing, 2 warnings, 0 critical problems\n"_s);
    }

    void colours_data()
    {
        const Table<bool, QString, QString, bool> row("terminal", "noColour", "option", "coloured");
        row("terminal", true, u"", u"auto", true);
        row("file", false, u"", u"auto", false);
        row("NO_COLOR", true, u"1", u"auto", false);
        row("always wins", false, u"1", u"always", true);
        row("never", true, u"", u"never", false);
    }

    void colours()
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

    void brokenOutput_data()
    {
        const Table<int, QString> row("error", "message");
        row("reader left", EPIPE, u"");
        row("disk full", ENOSPC, u"tavrin-cli: cannot write to standard output: ");
    }

    void brokenOutput()
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

    void previewTouchesNothing()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"sub/b.txt"_s});
        const QStringList before = cli.tree.list();
        QCOMPARE(cli.run({u"preview"_s, u"--rule"_s, kCounter, cli.batchPath()}), 0);
        QCOMPARE(cli.tree.list(), before);
    }

private:
    QString asText(const QStringList &options)
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        cli.tree.file(u"recipe.json"_s, R"({"rules":[{"kind":"Text","theText":"r"}]})");
        QStringList arguments{u"preview"_s};
        for (const QString &option : options)
            arguments.append(option == u"recipe.json"_s ? cli.tree.path(option) : option);
        cli.runLine(u"presets save P --rule 'Text theText=p'"_s);
        cli.run(arguments + QStringList{cli.batchPath()});
        return cli.out().section(u'\n', 0, 0).section(u" -> "_s, 1);
    }
};

QTEST_GUILESS_MAIN(TestPreview)
#include "tst_preview.moc"
