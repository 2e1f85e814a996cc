// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliFixture.h"
#include "support/FaultyFileManager.h"
#include "support/Table.h"

#include <QJsonArray>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QStringList kCounter{u"--rule"_s, u"Text theText=n"_s, u"--rule"_s, u"Counter"_s};

QStringList renameArguments(const QStringList &more)
{
    return QStringList{u"rename"_s, u"--yes"_s} + more;
}

} // namespace

class TestRename : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void renamesAndCanBeUndone()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"b.txt"_s});
        QCOMPARE(cli.run(renameArguments(kCounter) + QStringList{cli.batchPath()}), 0);
        QCOMPARE(cli.names(), QStringList({u"n1.txt"_s, u"n2.txt"_s}));
        QVERIFY2(cli.out().startsWith(
                     u"a.txt -> n1.txt\nb.txt -> n2.txt\n2 files renamed, 0 failed, 0 unchanged, 0 "
                     "missing, 0 warnings, 0 critical problems\nto undo: tavrin-cli rollback '"_s),
                 qPrintable(cli.out()));
        QVERIFY(cli.out().contains(cli.onlyLog()));
        QCOMPARE(cli.err(), QString());
        QCOMPARE(cli.run({u"rollback"_s, u"--yes"_s, cli.onlyLog()}), 0);
        QCOMPARE(cli.names(), QStringList({u"a.txt"_s, u"b.txt"_s}));
    }

    void jsonDocument()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"b.txt"_s});
        cli.tree.rawFile("batch/c\xff.txt");
        const QStringList rule{u"--rule"_s, u"Text theText=\" x \""_s};
        QCOMPARE(cli.run(renameArguments({u"--json"_s}) + rule +
                         QStringList{cli.batchPath(), u"none"_s}),
                 1);
        const QJsonObject document = cli.json();
        QCOMPARE(document.keys(), QStringList({u"criticals"_s, u"errors"_s, u"failed"_s, u"files"_s,
                                               u"missing"_s, u"renamed"_s, u"rollbackLog"_s,
                                               u"textLog"_s, u"unchanged"_s, u"warnings"_s}));
        const QJsonObject second{
            {u"path"_s, cli.tree.path(u"batch/b.txt"_s)},
            {u"fileName"_s, u"b"_s},
            {u"extension"_s, u"txt"_s},
            {u"targetName"_s, u" x "_s},
            {u"targetExtension"_s, u""_s},
            {u"finalName"_s, u"x-1.txt"_s},
            {u"errLevel"_s, 1},
            {u"errors"_s,
             QJsonArray{QJsonObject{{u"level"_s, 1},
                                    {u"text"_s, u"'x' is not unique. Modified to 'x-1'"_s}}}},
            {u"target"_s, cli.tree.path(u"batch/x-1.txt"_s)},
            {u"renamed"_s, true}};
        QCOMPARE(document[u"files"_s][1].toObject(), second);
        // The batch's problems are the analysis', the counts those of the run.
        QCOMPARE(document[u"errors"_s].toArray().size(), 2);
        QVERIFY(document[u"errors"_s][0][u"text"_s].toString().startsWith(u"Duplicate: \" x \""_s));
        QCOMPARE(document[u"renamed"_s], QJsonValue(3));
        QCOMPARE(document[u"warnings"_s], QJsonValue(2));
        QCOMPARE(document[u"missing"_s], QJsonValue(1));
        QCOMPARE(document[u"rollbackLog"_s].toString(), cli.onlyLog());
        const QString textLog = document[u"textLog"_s].toString();
        QVERIFY2(textLog.startsWith(u"Job started at "_s), qPrintable(textLog));
        QVERIFY(textLog.contains(u"renamed %1/a.txt to %1/x.txt\n"_s.arg(cli.batchPath())));
        QVERIFY(cli.outBytes().contains(R"(/batch/c\udcff.txt to )"));
    }

    void failedMovesAreReported()
    {
        CliFixture cli;
        cli.batch({u"a"_s, u"b"_s, u"n1"_s});
        const QStringList files{cli.tree.path(u"batch/a"_s), cli.tree.path(u"batch/b"_s)};
        // A taken name without extension is not noticed beforehand; the move fails and overwrites
        // nothing.
        QCOMPARE(cli.run(renameArguments({u"--json"_s}) + kCounter + files), 1);
        QCOMPARE(cli.names(), QStringList({u"a"_s, u"n1"_s, u"n2"_s}));
        const QJsonObject first = cli.json()[u"files"_s][0].toObject();
        QCOMPARE(first[u"renamed"_s], QJsonValue(false));
        QCOMPARE(first[u"target"_s].toString(), files[0]);
        QCOMPARE(first[u"finalName"_s], QJsonValue(u"n1"_s));
        QVERIFY(!first[u"failure"_s].toString().isEmpty());
        QCOMPARE(cli.json()[u"failed"_s], QJsonValue(1));
        QCOMPARE(cli.json()[u"criticals"_s], QJsonValue(1));
        cli.runLine(u"rollback --last --yes"_s);
        QCOMPARE(cli.run(renameArguments(kCounter) + files), 1);
        QVERIFY2(cli.out().startsWith(u"a -> n1\n    critical: "_s), qPrintable(cli.out()));
    }

    void unchangedFilesAreNoFailure()
    {
        CliFixture cli;
        cli.batch({u"n1.txt"_s, u"z.txt"_s});
        const QStringList arguments = renameArguments({u"--json"_s, u"--keep-unchanged"_s}) +
                                      kCounter + QStringList{cli.batchPath()};
        QCOMPARE(cli.run(arguments), 0);
        QCOMPARE(cli.names(), QStringList({u"n1.txt"_s, u"n2.txt"_s}));
        QCOMPARE(cli.json()[u"unchanged"_s], QJsonValue(1));
        QCOMPARE(cli.json()[u"renamed"_s], QJsonValue(1));
        QCOMPARE(cli.json()[u"files"_s][0][u"renamed"_s], QJsonValue(false));
        QCOMPARE(cli.json()[u"files"_s][0][u"target"_s].toString(),
                 cli.tree.path(u"batch/n1.txt"_s));
        QCOMPARE(cli.run(arguments), 0);
        QCOMPARE(cli.json()[u"unchanged"_s], QJsonValue(2));
    }

    void refusalPrintsThePreview_data()
    {
        const Table<QStringList, QString> row("recipe", "message");
        row("no rules", {}, u"No Rules: You need to define some 'Rules'");
        row("empty names", {u"--rule"_s, u"Text theText=' '"_s},
            u"Too Dangerous To Start: I simulated a full renaming run and "
            "encountered 2 critical errors.");
        row("critical duplicates", {u"--rule"_s, u"Text theText=x"_s, u"--duplicates-critical"_s},
            u"encountered 1 critical errors.");
    }

    void refusalPrintsThePreview()
    {
        QFETCH(QStringList, recipe);
        QFETCH(QString, message);
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"b.txt"_s});
        const QStringList arguments = recipe + QStringList{cli.batchPath()};
        QCOMPARE(cli.run(renameArguments({u"--json"_s}) + arguments), 3);
        QVERIFY2(cli.err().contains(message), qPrintable(cli.err()));
        const QByteArray refusal = cli.outBytes();
        QCOMPARE(cli.json()[u"refused"_s], QJsonValue(true));
        QVERIFY(!cli.json().contains(u"renamed"_s));
        QCOMPARE(cli.run(QStringList{u"preview"_s, u"--json"_s} + arguments), 3);
        QCOMPARE(refusal, cli.outBytes());
        QCOMPARE(cli.run(renameArguments(arguments)), 3);
        QVERIFY(cli.out().contains(u"    critical: "_s));
        QCOMPARE(cli.names(), QStringList({u"a.txt"_s, u"b.txt"_s}));
        QVERIFY(cli.onlyLog().isEmpty());
    }

    void question_data()
    {
        const Table<bool, QList<QByteArray>, int> row("terminal", "answers", "status");
        row("yes", true, QList<QByteArray>{"yes"}, 0);
        row("y", true, QList<QByteArray>{" Y "}, 0);
        row("no", true, QList<QByteArray>{"n"}, 4);
        row("just enter", true, QList<QByteArray>{""}, 4);
        row("end of input", true, QList<QByteArray>{}, 4);
        row("nobody there", false, QList<QByteArray>{"y"}, 4);
    }

    void question()
    {
        QFETCH(bool, terminal);
        QFETCH(QList<QByteArray>, answers);
        QFETCH(int, status);
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        cli.terminal.there = terminal;
        cli.terminal.answers = answers;
        QCOMPARE(cli.run(QStringList{u"rename"_s, u"--json"_s} + kCounter +
                         QStringList{cli.batchPath()}),
                 status);
        QCOMPARE(cli.names(), QStringList{status == 0 ? u"n1.txt"_s : u"a.txt"_s});
        QCOMPARE(cli.err().contains(
                     u"This is not a Drill!\nYou are about to live rename 1 files. Are you "
                     "sure? [y/N] "_s),
                 terminal);
        if (status != 0) {
            QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(4));
            QVERIFY(cli.onlyLog().isEmpty());
        }
    }

    void questionCountsWarnings()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s});
        cli.terminal.there = true;
        QCOMPARE(cli.runLine(u"rename --rule 'Text theText=x' BATCH"_s), 4);
        QVERIFY2(cli.err().contains(
                     u"Really? This is NOT a Drill!\nYou are about to live rename 3 files, "
                     "while a simulated run turned up 2 (probably) minor issues."_s),
                 qPrintable(cli.err()));
    }

    void standardInputTakenByAList()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        cli.terminal.there = true;
        cli.terminal.answers = {"y"};
        QCOMPARE(cli.run(QStringList{u"rename"_s, u"--files-from"_s, u"-"_s} + kCounter), 4);
        QVERIFY(cli.err().contains(u"--yes"_s));
    }

    void nothingToRename()
    {
        CliFixture cli;
        QCOMPARE(cli.run(renameArguments({u"--json"_s}) + kCounter + QStringList{cli.batchPath()}),
                 1);
        QCOMPARE(cli.json()[u"renamed"_s], QJsonValue(0));
        QCOMPARE(cli.json().value(u"rollbackLog"_s), QJsonValue(QJsonValue::Null));
        QVERIFY(cli.onlyLog().isEmpty());
    }

    void interruptedRunTellsHowToUndo()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s});
        FaultyFileManager disk;
        disk.before(FaultyFileManager::Call::RenameNoReplace, [&cli] { cli.interrupted = true; });
        cli.fileManager = &disk;
        QCOMPARE(cli.run(renameArguments({u"--jsonl"_s}) + kCounter + QStringList{cli.batchPath()}),
                 130);
        // The file in hand was finished, the others were not touched.
        QCOMPARE(cli.names(), QStringList({u"b.txt"_s, u"c.txt"_s, u"n1.txt"_s}));
        QVERIFY2(cli.err().contains(u"interrupted after renaming 1 of 3 files; to undo: tavrin-cli "
                                    "rollback '%1'"_s.arg(cli.onlyLog())),
                 qPrintable(cli.err()));
        QCOMPARE(cli.jsonLines().size(), 2);
        QCOMPARE(cli.jsonLines().last()[u"rollbackLog"_s].toString(), cli.onlyLog());
        cli.interrupted = false;
        QCOMPARE(cli.runLine(u"rollback --last --yes"_s), 0);
        QCOMPARE(cli.names(), QStringList({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s}));
    }

    void interruptedBeforeTheFirstMove()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        cli.interrupted = true;
        QCOMPARE(cli.run(renameArguments({u"--json"_s}) + kCounter + QStringList{cli.batchPath()}),
                 130);
        QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(130));
        QCOMPARE(cli.names(), QStringList{u"a.txt"_s});
    }

    void recordForUndoingIsRequired_data()
    {
        const Table<bool, int> row("noUndo", "syncs");
        constexpr int kNoFolder = -1;
        row("no folder", false, kNoFolder);
        row("no folder, --no-undo", true, kNoFolder);
        row("no plan", false, 0);
        row("no plan, --no-undo", true, 0);
        row("no beginning", false, 1);
        row("no beginning, --no-undo", true, 1);
    }

    void recordForUndoingIsRequired()
    {
        QFETCH(bool, noUndo);
        QFETCH(int, syncs);
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        FaultyFileManager disk;
        cli.fileManager = &disk;
        if (syncs < 0) {
            // A file where the data folder would be: no folder can be made below it.
            qputenv("XDG_DATA_HOME", cli.tree.file(u"occupied"_s).toUtf8());
        } else {
            disk.fail(FaultyFileManager::Call::Sync, 0, syncs); // these succeed
            disk.fail(FaultyFileManager::Call::Sync, EIO);
        }
        const QStringList arguments =
            renameArguments({u"--json"_s}) + kCounter + QStringList{cli.batchPath()};
        QCOMPARE(cli.run(noUndo ? arguments + QStringList{u"--no-undo"_s} : arguments),
                 noUndo ? 0 : 4);
        QVERIFY2(cli.err().contains(noUndo ? u"this run cannot be undone. "_s
                                           : u"this run could not be undone. "_s),
                 qPrintable(cli.err()));
        QCOMPARE(cli.names(), QStringList{noUndo ? u"n1.txt"_s : u"a.txt"_s});
        QCOMPARE(cli.json().value(u"rollbackLog"_s).isNull(), noUndo);
    }

    void firstStatusThatApplies_data()
    {
        const Table<QStringList, int> row("arguments", "status");
        row("no record before critical problems", {u"--yes"_s, u"--rule"_s, u"Text theText="_s}, 4);
        row("no record before no rules", {u"--yes"_s}, 4);
        row("unreadable list before no answer",
            {u"--rule"_s, u"Counter"_s, u"--files-from"_s, u"/none"_s}, 2);
    }

    void firstStatusThatApplies()
    {
        QFETCH(QStringList, arguments);
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        qputenv("XDG_DATA_HOME", cli.tree.file(u"occupied"_s).toUtf8());
        QTEST(cli.run(QStringList{u"rename"_s, cli.batchPath()} + arguments), "status");
    }

    void listOnInputNeedsYes()
    {
        CliFixture cli;
        cli.terminal.there = true;
        QCOMPARE(cli.runLine(u"rename --rule Counter --files-from -"_s), 4);
        QVERIFY2(cli.err().contains(u"standard input is the list"_s), qPrintable(cli.err()));
    }

    void questionTellsThatNothingCanBeUndone()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        cli.terminal.there = true;
        qputenv("XDG_DATA_HOME", cli.tree.file(u"occupied"_s).toUtf8());
        QCOMPARE(cli.run(QStringList{u"rename"_s, u"--no-undo"_s} + kCounter +
                         QStringList{cli.batchPath()}),
                 4);
        QVERIFY2(cli.err().contains(u"Are you sure?\nThis run could not be undone. [y/N] "_s),
                 qPrintable(cli.err()));
    }

    void quietRunPrintsOnlyProblems()
    {
        CliFixture cli;
        cli.batch({u"a"_s, u"b"_s, u"n1"_s});
        QCOMPARE(cli.run(renameArguments({u"-q"_s}) + kCounter +
                         QStringList{cli.tree.path(u"batch/a"_s), cli.tree.path(u"batch/b"_s)}),
                 1);
        QCOMPARE(cli.out(), QString());
        QCOMPARE(cli.err().count(u'\n'), 1);
        QVERIFY(cli.err().startsWith(cli.tree.path(u"batch/a"_s) + u": critical: "_s));
    }
};

QTEST_GUILESS_MAIN(TestRename)
#include "tst_rename.moc"
