// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "rollback/RollbackLog.h"
#include "rollback/RollbackRun.h"
#include "support/FaultyFileManager.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

using namespace Qt::StringLiterals;
using Call = FaultyFileManager::Call;

namespace {

/// "old>new" is a completed rename, "old!new" one that did not complete.
std::vector<TRenameTRX> records(const TemporaryTree &tree, const QStringList &moves)
{
    std::vector<TRenameTRX> result;
    for (const QString &move : moves) {
        const bool completed = move.contains(u'>');
        const QStringList names = move.split(completed ? u'>' : u'!');
        TRenameTRX record =
            TRenameTRX::TRXWithSource(TFileURL::fileURLWithPath(tree.path(names[0])));
        record.renamedURL = TFileURL::fileURLWithPath(tree.path(names[1]));
        record.renameComplete = completed;
        record.errorLog.addErrorOfType(1, u"left by the rename"_s);
        result.push_back(record);
    }
    return result;
}

/// "status: text | text" of every record, paths without the tree's own.
QStringList told(const TemporaryTree &tree, const RollbackRun &run)
{
    QStringList result;
    for (const TRenameTRX &record : run.transactions()) {
        QStringList texts;
        for (const TErrorTypes &error : record.errorLog)
            texts += u"%1 %2"_s.arg(error.errClass).arg(error.errDesc.toString());
        result += QString::number(record.renamedExistsWithStatus) + u": "_s +
                  texts.join(u" | "_s).remove(tree.path() + u'/');
    }
    return result;
}

const QString kSkipped = u"2 Skipped rolling back this file"_s;
const QString kExists = u"2 Rollback failed: "_s;

} // namespace

class TestRollbackRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bothPasses_data()
    {
        const Table<QStringList, QStringList, QStringList, QStringList, QStringList> row(
            "files", "log", "analysed", "done", "names");
        using L = QStringList;
        row("plain", L{u"n.txt"_s}, L{u"a.txt>n.txt"_s}, L{u"1: "_s}, L{u"100: "_s}, L{u"a.txt"_s});
        row("renamed file is gone", L{}, L{u"a.txt>n.txt"_s},
            L{u"0: 2 I was unable to find the renamed file n.txt"_s}, L{u"0: "_s + kSkipped}, L{});
        row("gone, and old name in use", L{u"a.txt"_s}, L{u"a.txt>n.txt"_s},
            L{u"-1: 2 I was unable to find the renamed file n.txt | "
              "1 The originally named file exists at a.txt, will use safe naming"_s},
            L{u"-1: "_s + kSkipped}, L{u"a.txt"_s});
        row("old name in use again", L{u"a.txt"_s, u"n.txt"_s}, L{u"a.txt>n.txt"_s}, L{u"1: "_s},
            L{u"100: "_s}, L{u"a-1.txt"_s, u"a.txt"_s});
        row("safe name in use too", L{u"a-1.txt"_s, u"a.txt"_s, u"n.txt"_s}, L{u"a.txt>n.txt"_s},
            L{u"1: "_s}, L{u"100: "_s}, L{u"a-1.txt"_s, u"a-2.txt"_s, u"a.txt"_s});
        row("never completed", L{u"n.txt"_s}, L{u"a.txt!n.txt"_s},
            L{u"0: 2 The rename from a.txt to n.txt did not complete successfully"_s},
            L{u"0: "_s + kSkipped}, L{u"n.txt"_s});
        row("never completed, still there", L{u"a.txt"_s}, L{u"a.txt!n.txt"_s},
            L{u"-1: 2 The rename from a.txt to n.txt did not complete successfully | "
              "1 The originally named file exists at a.txt, will use safe naming"_s},
            L{u"-1: "_s + kSkipped}, L{u"a.txt"_s});
        row("without extension the name with a dot is tested: free", L{u"a."_s, u"n"_s},
            L{u"a>n"_s}, L{u"1: "_s}, L{u"100: "_s}, L{u"a-1"_s, u"a."_s});
        row("without extension the bare name is not tested: the move fails", L{u"a"_s, u"n"_s},
            L{u"a>n"_s}, L{u"1: "_s}, L{u"-1000: "_s + kExists}, L{u"a"_s, u"n"_s});
        row("others go on", L{u"2.txt"_s, u"3.txt"_s},
            L{u"a.txt>1.txt"_s, u"b.txt>2.txt"_s, u"c.txt>3.txt"_s},
            L{u"0: 2 I was unable to find the renamed file 1.txt"_s, u"1: "_s, u"1: "_s},
            L{u"0: "_s + kSkipped, u"100: "_s, u"100: "_s}, L{u"b.txt"_s, u"c.txt"_s});
        row("folders", L{u"n/inside.txt"_s}, L{u"a>n"_s}, L{u"1: "_s}, L{u"100: "_s},
            L{u"a/"_s, u"a/inside.txt"_s});
    }

    void bothPasses()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, log);
        QFETCH(QStringList, analysed);
        QFETCH(QStringList, done);
        QFETCH(QStringList, names);
        const TemporaryTree tree;
        for (const QString &name : files)
            tree.file(name, name.toUtf8());
        DiskFileManager disk;
        RollbackRun run(disk, records(tree, log));
        run.processLog({});
        QCOMPARE(told(tree, run), analysed);
        run.performRollBack({}, false, false);
        const QStringList finally = told(tree, run);
        for (qsizetype i = 0; i < done.size(); ++i)
            QVERIFY2(done[i].endsWith(kExists) ? finally[i].startsWith(done[i])
                                               : finally[i] == done[i],
                     qPrintable(finally[i]));
        QCOMPARE(tree.list(), names);
    }

    void chains_data()
    {
        // forward: "name content" afterwards
        const Table<QStringList, bool, QStringList, QStringList> row("log", "recommended",
                                                                     "forward", "reverse");
        using L = QStringList;
        row("moved up", L{u"2.x>3.x"_s, u"1.x>2.x"_s}, true, L{u"1.x 1"_s, u"2-1.x 2"_s},
            L{u"1.x 1"_s, u"2.x 2"_s});
        row("moved down", L{u"1.x>0.x"_s, u"2.x>1.x"_s}, true, L{u"1-1.x 1"_s, u"2.x 2"_s},
            L{u"1.x 1"_s, u"2.x 2"_s});
        row("no chain", L{u"1.x>a.x"_s, u"2.x>b.x"_s}, false, L{u"1.x 1"_s, u"2.x 2"_s},
            L{u"1.x 1"_s, u"2.x 2"_s});
        row("onto itself", L{u"1.x>1.x"_s, u"2.x>b.x"_s}, false, L{u"1-1.x 1"_s, u"2.x 2"_s},
            L{u"1-1.x 1"_s, u"2.x 2"_s});
    }

    void chains()
    {
        QFETCH(QStringList, log);
        QFETCH(bool, recommended);
        for (const bool reverse : {false, true}) {
            const TemporaryTree tree;
            DiskFileManager disk;
            FileMover mover(disk);
            std::vector<TRenameTRX> transactions = records(tree, log);
            for (const QString &name : {u"1"_s, u"2"_s})
                tree.file(name + u".x"_s, name.toUtf8());
            for (const TRenameTRX &record : transactions)
                QVERIFY(mover
                            .move(*record.originalURL.folder(),
                                  record.originalURL.lastPathComponent(),
                                  record.renamedURL.lastPathComponent())
                            .ok());
            RollbackRun run(disk, std::move(transactions));
            QCOMPARE(run.recommendsReverse(), recommended);
            run.processLog({});
            run.performRollBack({}, false, reverse);
            QStringList found;
            for (const QString &name : tree.list())
                found += name + u' ' + QString::fromUtf8(tree.content(name));
            QFETCH(QStringList, forward);
            QTEST(found, reverse ? "reverse" : "forward");
        }
    }

    void progressComesEveryTenth_data()
    {
        const Table<int, QList<qsizetype>> row("count", "numbers");
        row("9", 9, QList<qsizetype>{});
        row("10", 10, QList<qsizetype>{10});
        row("25", 25, QList<qsizetype>{10, 20});
    }

    void progressComesEveryTenth()
    {
        QFETCH(int, count);
        QFETCH(QList<qsizetype>, numbers);
        const TemporaryTree tree;
        QStringList log;
        for (int i = 0; i < count; ++i)
            log += u"a%1>b%1"_s.arg(i);
        DiskFileManager disk;
        RollbackRun run(disk, records(tree, log));
        QList<qsizetype> seen;
        const auto note = [&](qsizetype number, qsizetype total) {
            QCOMPARE(total, count);
            seen += number;
        };
        run.processLog(note);
        QCOMPARE(seen, numbers);
        seen.clear();
        run.performRollBack(note, false, true);
        QCOMPARE(seen, numbers);
    }

    void abortLeavesTheRest()
    {
        const TemporaryTree tree;
        for (const QString &name : {u"1"_s, u"2"_s, u"3"_s})
            tree.file(name + u".x"_s);
        DiskFileManager disk;
        RollbackRun run(disk, records(tree, {u"a.x>1.x"_s, u"b.x>2.x"_s, u"c.x>3.x"_s}));
        std::atomic<bool> abort = true;
        run.processLog({}, &abort);
        QCOMPARE(told(tree, run), QStringList(3, u"0: 1 left by the rename"_s));
        run.processLog({});
        abort = false;
        run.performRollBack({}, abort, false, [&](qsizetype, const TFileURL &) { abort = true; });
        QCOMPARE(told(tree, run), (QStringList{u"100: "_s, u"1: "_s, u"1: "_s}));
        QCOMPARE(tree.list(), (QStringList{u"2.x"_s, u"3.x"_s, u"a.x"_s}));
    }

    void tellsWhereFilesWent()
    {
        const TemporaryTree tree;
        tree.file(u"n1.x"_s);
        tree.file(u"n3.x"_s);
        tree.file(u"c.x"_s);
        DiskFileManager disk;
        RollbackRun run(disk, records(tree, {u"a.x>n1.x"_s, u"b.x>n2.x"_s, u"c.x>n3.x"_s}));
        run.processLog({});
        QStringList restored;
        run.performRollBack({}, false, true, [&](qsizetype index, const TFileURL &url) {
            restored += u"%1 %2"_s.arg(index).arg(url.path());
        });
        QCOMPARE(restored,
                 (QStringList{u"2 "_s + tree.path(u"c-1.x"_s), u"0 "_s + tree.path(u"a.x"_s)}));
    }

    void manyFilesOfAFolderAreListed_data()
    {
        const Table<int, int, bool> row("records", "others", "listed");
        row("all of a folder", 300, 0, true);
        row("few", 20, 0, false);
        row("some of a large folder", 100, 20'000, false);
    }

    void manyFilesOfAFolderAreListed()
    {
        QFETCH(int, records);
        QFETCH(int, others);
        QFETCH(bool, listed);
        const TemporaryTree tree;
        QStringList log;
        for (int i = 0; i < records; ++i) {
            tree.file(u"n%1.x"_s.arg(i));
            log += u"a%1.x>n%1.x"_s.arg(i);
        }
        for (int i = 0; i < others; ++i)
            tree.file(u"a rather long name of another file %1"_s.arg(i));
        tree.remove(u"n7.x"_s);
        FaultyFileManager disk;
        RollbackRun run(disk, ::records(tree, log));
        run.processLog({});
        const QStringList lines = told(tree, run);
        QCOMPARE(lines.filter(u"unable to find"_s).size(), 1);
        QVERIFY(lines[7].contains(u"n7.x"_s));
        QCOMPARE(disk.count(Call::List), listed ? 1 : 0);
        QVERIFY(listed ? disk.count(Call::Status) < 5 : disk.count(Call::Status) >= records);
    }

    void nameTakenAtTheLastMoment()
    {
        const TemporaryTree tree;
        tree.file(u"n.x"_s, "mine");
        tree.file(u"m"_s, "mine");
        FaultyFileManager disk;
        RollbackRun run(disk, records(tree, {u"a.x>n.x"_s, u"b>m"_s}));
        run.processLog({});
        disk.before(
            Call::RenameNoReplace, [&] { tree.file(u"a.x"_s, "theirs"); }, "n.x");
        disk.before(
            Call::RenameNoReplace, [&] { tree.file(u"b"_s, "theirs"); }, "m");
        run.performRollBack({}, false, false);
        QCOMPARE(run.transactions()[0].renamedExistsWithStatus, RollbackRun::kRestored);
        QCOMPARE(run.transactions()[1].renamedExistsWithStatus, RollbackRun::kFailed);
        QCOMPARE(tree.content(u"a.x"_s), QByteArray("theirs"));
        QCOMPARE(tree.content(u"a-1.x"_s), QByteArray("mine"));
        QCOMPARE(tree.content(u"b"_s), QByteArray("theirs"));
        QCOMPARE(tree.content(u"m"_s), QByteArray("mine"));
    }

    void refusedMoves()
    {
        const TemporaryTree tree;
        tree.file(u"n.x"_s);
        tree.file(u"m.x"_s);
        FaultyFileManager disk;
        disk.fail(Call::RenameNoReplace, EACCES, 1);
        RollbackRun run(disk, records(tree, {u"a.x>n.x"_s, u"b.x>m.x"_s}));
        run.processLog({});
        run.performRollBack({}, false, false);
        QCOMPARE(told(tree, run),
                 (QStringList{u"-1000: 2 Rollback failed: "_s + textForErrno(EACCES), u"100: "_s}));
        QCOMPARE(tree.list(), (QStringList{u"b.x"_s, u"n.x"_s}));
    }

    void hostileRecordsMoveNothing_data()
    {
        const Table<QString, QString> row("original", "renamed");
        row("out of the folder", u"outside.x", u"in/n.x");
        row("into the folder", u"in/new.x", u"n.x");
        row("round about", u"in/../in/a.x", u"in/../in/n.x");
        row("own folder", u"in/./a.x", u"in/./n.x");
    }

    void hostileRecordsMoveNothing()
    {
        QFETCH(QString, original);
        QFETCH(QString, renamed);
        const TemporaryTree tree;
        tree.file(u"in/n.x"_s);
        tree.file(u"n.x"_s);
        const QStringList before = tree.list();
        DiskFileManager disk;
        RollbackRun run(disk, records(tree, {original + u'>' + renamed}));
        run.processLog({});
        QCOMPARE(run.transactions()[0].renamedExistsWithStatus, RollbackRun::kNothing);
        QVERIFY(run.transactions()[0].errorLog.entries().front().errDesc.toString().endsWith(
            u"did not complete successfully"_s));
        run.performRollBack({}, false, false);
        QCOMPARE(tree.list(), before);
    }

    void awkwardNames()
    {
        const TemporaryTree tree;
        const QString raw = ByteNames::fromBytes("raw\xFF.x");
        const QString full = QString(253, u'o') + u".x"_s;
        tree.file(u"1.x"_s);
        tree.file(u"2.x"_s);
        tree.link(u"nowhere"_s, u"3.x"_s);
        tree.link(u"nowhere"_s, u"taken.x"_s);
        tree.file(u"4.x"_s);
        tree.file(u".5"_s);
        DiskFileManager disk;
        auto writer = RollbackLogWriter::create(tree.path(u"Logs"_s));
        const QStringList log{raw + u">1.x"_s, full + u">2.x"_s, u"link.x>3.x"_s, u"taken.x>4.x"_s,
                              u"plain>.5"_s};
        for (const TRenameTRX &record : records(tree, log))
            writer.value()->append(record);
        const auto path = writer.value()->finish(TDate::fromSeconds(1));
        RollbackRun run(disk, readRollbackLog(path.value()).value());
        tree.remove(u"Logs"_s);
        run.processLog({});
        run.performRollBack({}, false, false);
        QStringList expected{raw, full, u"link.x"_s, u"taken-1.x"_s, u"taken.x"_s, u"plain"_s};
        expected.sort();
        QCOMPARE(tree.list(), expected);
    }

    void manyWithOneOldName()
    {
        constexpr int kCount = 3000;
        const TemporaryTree tree;
        QStringList log;
        for (int i = 0; i < kCount; ++i) {
            tree.file(u"n%1.x"_s.arg(i));
            log += u"same.x>n%1.x"_s.arg(i);
        }
        FaultyFileManager disk;
        RollbackRun run(disk, records(tree, log));
        run.processLog({});
        run.performRollBack({}, false, false);
        QVERIFY(tree.exists(u"same.x"_s));
        QVERIFY(tree.exists(u"same-%1.x"_s.arg(kCount - 1)));
        // One look at each record, not one at every candidate name.
        // One look at each record and one at the name in use, not one at every candidate.
        QVERIFY2(disk.count(Call::Status) < kCount + 10,
                 qPrintable(QString::number(disk.count(Call::Status))));
        QCOMPARE(disk.count(Call::RenameNoReplace), kCount + 1);
    }

    void rollingBackTwice()
    {
        const TemporaryTree tree;
        tree.file(u"n.x"_s);
        DiskFileManager disk;
        RollbackRun first(disk, records(tree, {u"a.x>n.x"_s}));
        first.processLog({});
        first.performRollBack({}, false, false);
        RollbackRun second(disk, first.transactions());
        second.processLog({});
        QCOMPARE(second.transactions()[0].renamedExistsWithStatus, RollbackRun::kOccupied);
        second.performRollBack({}, false, false);
        QCOMPARE(tree.list(), QStringList{u"a.x"_s});
    }
};

QTEST_GUILESS_MAIN(TestRollbackRun)

#include "tst_rollbackrun.moc"
