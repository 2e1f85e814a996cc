// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliFixture.h"
#include "commonprocs/ByteNames.h"
#include "rollback/RunJournal.h"
#include "support/FaultyFileManager.h"
#include "support/Table.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>

#include <cstdio>
#include <fcntl.h>
#include <future>

using namespace Qt::StringLiterals;

namespace {

/// Leaves what a run leaves that was killed after its only move.
void leaveJournal(CliFixture &cli)
{
    const QString logs = cli.tree.folder(u"data/Tavrin/Logs"_s);
    const QString path = cli.tree.file(u"batch/a.txt"_s);
    TFileItem item{TFileURL::fileURLWithPath(path), {}};
    TFileStatus status;
    QCOMPARE(cli.disk.status(AT_FDCWD, item.url.fileSystemPath(), false, status), 0);
    item.facts = TFileFacts::fromStatus(status);
    auto journal = RunJournal::create(logs, cli.clock, cli.disk);
    QVERIFY2(journal, qPrintable(journal.message()));
    journal.value()->addFile(item);
    QVERIFY(journal.value()->syncPlan() && journal.value()->begin());
    QCOMPARE(::rename(path.toUtf8().constData(),
                      cli.tree.path(u"batch/moved.txt"_s).toUtf8().constData()),
             0);
    journal.value()->recordMove(0, "moved.txt");
}

} // namespace

class TestRollbackVerb : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkOnlyShows()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"b.txt"_s});
        rename(cli, u"n"_s);
        QCOMPARE(cli.runLine(u"rollback --last --check"_s), 0);
        QCOMPARE(cli.out(), u"n1.txt -> a.txt\nn2.txt -> b.txt\n2 of 2 files can be restored\n"_s);
        cli.tree.remove(u"batch/n2.txt"_s);
        cli.batch({u"b.txt"_s});
        QCOMPARE(cli.runLine(u"rollback --last --check --json"_s), 1);
        const QJsonArray records = cli.json()[u"records"_s].toArray();
        QCOMPARE(records[0][u"status"_s], QJsonValue(1));
        QCOMPARE(records[0][u"restored"_s], QJsonValue(QJsonValue::Null));
        QCOMPARE(records[1][u"status"_s], QJsonValue(-1));
        QCOMPARE(records[1][u"errors"_s][0][u"text"_s].toString(),
                 u"I was unable to find the renamed file n2.txt"_s);
        QCOMPARE(cli.names(), QStringList({u"b.txt"_s, u"n1.txt"_s}));
    }

    void jsonDocument()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        rename(cli, u"n"_s);
        cli.batch({u"a.txt"_s});
        QCOMPARE(cli.runLine(u"rollback --last --yes --json"_s), 0);
        const QJsonObject record{{u"original"_s, cli.tree.path(u"batch/a.txt"_s)},
                                 {u"renamed"_s, cli.tree.path(u"batch/n1.txt"_s)},
                                 {u"restored"_s, cli.tree.path(u"batch/a-1.txt"_s)},
                                 {u"status"_s, 100},
                                 {u"errors"_s, QJsonArray()}};
        QCOMPARE(cli.json(), QJsonObject({{u"log"_s, cli.onlyLog()},
                                          {u"records"_s, QJsonArray{record}},
                                          {u"restored"_s, 1},
                                          {u"failed"_s, 0},
                                          {u"skipped"_s, 0}}));
        QCOMPARE(cli.run({u"rollback"_s, cli.onlyLog(), u"--check"_s, u"--jsonl"_s}), 1);
        QCOMPARE(cli.jsonLines().size(), 2);
        QCOMPARE(cli.jsonLines()[1][u"skipped"_s], QJsonValue(1));
    }

    void skippedRecordsAreStatusOne()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"b.txt"_s});
        rename(cli, u"n"_s);
        cli.tree.remove(u"batch/n2.txt"_s);
        QCOMPARE(cli.runLine(u"rollback --last --yes"_s), 1);
        QCOMPARE(cli.out(),
                 u"n1.txt -> a.txt\nn2.txt -> b.txt\n    critical: Skipped rolling back this "
                 "file\n1 restored, 0 failed, 1 skipped\n"_s);
        QCOMPARE(cli.names(), QStringList{u"a.txt"_s});
    }

    void lastTakesTheNewestLogWithSomethingToUndo()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        rename(cli, u"first"_s);
        rename(cli, u"second"_s);
        QCOMPARE(cli.runLine(u"rollback --last --yes"_s), 0);
        QCOMPARE(cli.names(), QStringList{u"first1.txt"_s});
        QCOMPARE(cli.runLine(u"rollback --last --yes"_s), 0);
        QCOMPARE(cli.names(), QStringList{u"a.txt"_s});
        QCOMPARE(cli.runLine(u"rollback --last --yes --json"_s), 1);
        QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(1));
    }

    void logByItsName()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        rename(cli, u"n"_s);
        QCOMPARE(cli.runLine(u"logs --json"_s), 0);
        const QString name = cli.json()[u"array"_s][0][u"name"_s].toString();
        QCOMPARE(name, u"Rename Batch Run - 2025-07-03, 14.05.09 (rollback data)"_s);
        QCOMPARE(cli.run({u"rollback"_s, u"--yes"_s, name}), 0);
        QCOMPARE(cli.names(), QStringList{u"a.txt"_s});
    }

    void reverseRestoresChains()
    {
        CliFixture cli;
        cli.batch({u"1.txt"_s, u"2.txt"_s});
        QCOMPARE(
            cli.runLine(
                u"rename --yes --sort fileName:desc --rule 'Counter startValue=3 increment=-1' BATCH"_s),
            0);
        QCOMPARE(cli.names(), QStringList({u"2.txt"_s, u"3.txt"_s}));
        QCOMPARE(cli.runLine(u"rollback --last --check"_s), 0);
        QVERIFY2(cli.err().contains(u"--reverse"_s), qPrintable(cli.err()));
        QCOMPARE(cli.runLine(u"rollback --last --yes --reverse"_s), 0);
        QVERIFY(!cli.err().contains(u"--reverse"_s));
        QCOMPARE(cli.names(), QStringList({u"1.txt"_s, u"2.txt"_s}));
    }

    void statuses_data()
    {
        const Table<QStringList, int> row("arguments", "status");
        row("neither log nor --last", {}, 2);
        row("log and --last", {u"--last"_s, u"LOG"_s}, 2);
        row("two logs", {u"LOG"_s, u"LOG"_s}, 2);
        row("no such log", {u"--yes"_s, u"/none.renameLog"_s}, 2);
        row("corrupt log", {u"--yes"_s, u"BROKEN"_s}, 2);
        row("nobody there", {u"LOG"_s}, 4);
        row("check needs nobody", {u"--check"_s, u"LOG"_s}, 0);
    }

    void statuses()
    {
        QFETCH(QStringList, arguments);
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        rename(cli, u"n"_s);
        const QString broken = cli.tree.file(u"broken.renameLog"_s, "bplist00 and nothing else");
        arguments.replaceInStrings(u"LOG"_s, cli.onlyLog());
        arguments.replaceInStrings(u"BROKEN"_s, broken);
        QTEST(cli.run(QStringList{u"rollback"_s} + arguments), "status");
        QCOMPARE(cli.names(), QStringList{u"n1.txt"_s});
        if (arguments.contains(broken))
            QVERIFY2(cli.err().contains(broken), qPrintable(cli.err()));
    }

    void questionNamesTheLog()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        rename(cli, u"n"_s);
        cli.terminal.there = true;
        cli.terminal.answers = {"n", "y"};
        QCOMPARE(cli.runLine(u"rollback --last"_s), 4);
        QVERIFY2(cli.err().contains(u"1 of 1 file in %1"_s.arg(cli.onlyLog())),
                 qPrintable(cli.err()));
        QCOMPARE(cli.runLine(u"rollback --last"_s), 0);
        QCOMPARE(cli.names(), QStringList{u"a.txt"_s});
    }

    void noNameForgesALineOfTheQuestion()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        rename(cli, u"n"_s);
        const QByteArray log =
            cli.tree.rawFile("bad\xff\nline.renameLog",
                             cli.tree.content(cli.onlyLog().mid(cli.tree.path().size() + 1)));
        cli.terminal.there = true;
        QCOMPARE(cli.run({u"rollback"_s, ByteNames::fromBytes(log)}), 4);
        QVERIFY2(cli.err().contains(u"bad\\xFF\\x0Aline.renameLog can be restored. Undo? [y/N]"_s),
                 qPrintable(cli.err()));
    }

    void logAsItWasDisplayed()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        rename(cli, u"n"_s);
        QVERIFY(QFile::rename(cli.onlyLog(),
                              cli.tree.path(u"data/Tavrin/Logs/two\nlines.renameLog"_s)));
        QCOMPARE(cli.runLine(u"logs"_s), 0);
        const QString path = cli.out().trimmed().mid(cli.out().indexOf(u'/'));
        QVERIFY2(path.endsWith(u"two\\x0Alines.renameLog"_s), qPrintable(path));
        QCOMPARE(cli.run({u"rollback"_s, u"--yes"_s, path}), 0);
        QCOMPARE(cli.names(), QStringList{u"a.txt"_s});
    }

    void misspeltLogPointsToTheList()
    {
        CliFixture cli;
        QCOMPARE(cli.runLine(u"rollback nope"_s), 2);
        QVERIFY2(cli.err().contains(u"nope: there is no such file"_s) &&
                     cli.err().contains(u"tavrin-cli logs"_s),
                 qPrintable(cli.err()));
    }

    void interruptedCheck()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s});
        rename(cli, u"n"_s);
        cli.interrupted = true;
        QCOMPARE(cli.runLine(u"rollback --last --check --json"_s), 130);
        QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(130));
    }

    void interruptedKeepsTheRest()
    {
        CliFixture cli;
        cli.batch({u"a.txt"_s, u"b.txt"_s});
        rename(cli, u"n"_s);
        cli.interrupted = true;
        QCOMPARE(cli.runLine(u"rollback --last --yes"_s), 130);
        QCOMPARE(cli.names(), QStringList({u"n1.txt"_s, u"n2.txt"_s}));
        cli.interrupted = false;
        QCOMPARE(cli.runLine(u"rollback --last --yes"_s), 0);
    }

    void logsAreListedNewestFirst()
    {
        CliFixture cli;
        QCOMPARE(cli.runLine(u"logs --json"_s), 0);
        QCOMPARE(cli.outBytes(), QByteArray("[\n]\n"));
        cli.batch({u"a.txt"_s, u"b.txt"_s});
        rename(cli, u"first"_s);
        rename(cli, u"second"_s);
        cli.tree.file(u"data/Tavrin/Logs/broken.renameLog"_s, "rubbish");
        QCOMPARE(cli.runLine(u"logs --json"_s), 0);
        const QJsonArray logs = cli.json()[u"array"_s].toArray();
        QCOMPARE(logs.size(), 3);
        QCOMPARE(logs[0][u"name"_s], QJsonValue(u"broken"_s));
        QCOMPARE(logs[0][u"files"_s], QJsonValue(-1));
        QCOMPARE(logs[1][u"files"_s], QJsonValue(2));
        QVERIFY(logs[1][u"path"_s].toString() > logs[2][u"path"_s].toString());
        QVERIFY(QDateTime::fromString(logs[1][u"date"_s].toString(), Qt::ISODate).isValid());
        QCOMPARE(cli.runLine(u"logs"_s), 0);
        QCOMPARE(cli.out().count(u'\n'), 3);
    }

    void logsThatCannotBeListed()
    {
        CliFixture cli;
        FaultyFileManager disk;
        cli.fileManager = &disk;
        const QString logs = cli.tree.folder(u"data/Tavrin/Logs"_s);
        for (const QString &line : {u"logs"_s, u"rollback --last"_s}) {
            disk.fail(FaultyFileManager::Call::OpenFolder, EACCES, FaultyFileManager::kAlways,
                      logs.toUtf8());
            QCOMPARE(cli.runLine(line), 1);
            QVERIFY2(cli.err().contains(logs), qPrintable(cli.err()));
        }
    }

    void interruptedRunsAreRecoveredFirst_data()
    {
        const Table<QStringList> row("arguments");
        row("rename", {u"rename"_s, u"--yes"_s, u"--rule"_s, u"Counter"_s, u"BATCH"_s});
        row("rollback", {u"rollback"_s, u"--last"_s, u"--yes"_s});
        row("recover", {u"recover"_s});
    }

    void interruptedRunsAreRecoveredFirst()
    {
        QFETCH(QStringList, arguments);
        CliFixture cli;
        leaveJournal(cli);
        arguments.replaceInStrings(u"BATCH"_s, cli.batchPath());
        QCOMPARE(cli.run(arguments), 0);
        QVERIFY2(cli.err().contains(u"a run over 1 file was interrupted after renaming 1; to undo: "
                                    "tavrin-cli rollback '"_s),
                 qPrintable(cli.err()));
        QCOMPARE(cli.names().first(), arguments.contains(u"rollback"_s) ? u"a.txt"_s
                                      : arguments.contains(u"rename"_s) ? u"1.txt"_s
                                                                        : u"moved.txt"_s);
    }

    void recoveryThatWaitsCanBeStopped()
    {
        CliFixture cli;
        leaveJournal(cli);
        FaultyFileManager disk;
        std::promise<void> answers;
        disk.before(
            FaultyFileManager::Call::OpenFolder, [&] { answers.get_future().wait(); },
            cli.batchPath().toUtf8());
        cli.fileManager = &disk;
        cli.interrupted = true;
        QCOMPARE(cli.run({u"rename"_s, u"--yes"_s, u"--rule"_s, u"Counter"_s, cli.batchPath()}),
                 130);
        QCOMPARE(cli.err(),
                 u"tavrin-cli: waiting for the folder \"%1\" of an interrupted run, which "
                 "does not answer\ntavrin-cli: interrupted; nothing was renamed\n"_s.arg(
                     cli.batchPath()));
        answers.set_value();
        QVERIFY(QTest::qWaitFor([&] { // the thread that was left alone is done with the disk
            return !cli.tree.list(u"data/Tavrin/Logs/.running"_s)
                        .filter(u".finished"_s)
                        .isEmpty() &&
                   disk.openFolders() == 0;
        }));
        QCOMPARE(cli.names(), QStringList{u"moved.txt"_s});
    }

    void recoverPrintsTheNewLogs()
    {
        CliFixture cli;
        leaveJournal(cli);
        QCOMPARE(cli.runLine(u"recover --json"_s), 0);
        QCOMPARE(cli.json()[u"array"_s].toArray(),
                 QJsonArray({QJsonObject{
                     {u"rollbackLog"_s, cli.onlyLog()}, {u"files"_s, 1}, {u"renamed"_s, 1}}}));
        QCOMPARE(cli.runLine(u"recover --json"_s), 0);
        QCOMPARE(cli.json()[u"array"_s].toArray(), QJsonArray());
    }

private:
    static void rename(CliFixture &cli, const QString &text)
    {
        const int status = cli.run({u"rename"_s, u"--yes"_s, u"--rule"_s, u"Text theText="_s + text,
                                    u"--rule"_s, u"Counter"_s, cli.batchPath()});
        QCOMPARE(status, 0);
        // Logs are named after the second in which their run ended.
        cli.clock.set({cli.clock.now().nanos + TDate::kNanosPerSecond});
    }
};

QTEST_GUILESS_MAIN(TestRollbackVerb)
#include "tst_rollbackverb.moc"
