// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileSizeLimit.h"
#include "JournalledMoves.h"
#include "commonprocs/ByteNames.h"
#include "rollback/JournalContents.h"
#include "rollback/RecoveryMatcher.h"
#include "rollback/RollbackLog.h"
#include "support/FaultyFileManager.h"
#include "support/ManualClock.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QFile>

using namespace Qt::StringLiterals;
using Meanwhile = std::function<void(const TemporaryTree &)>;

Q_DECLARE_METATYPE(Meanwhile)

namespace {

/// Milliseconds that the birth of a file may be behind the clock.
constexpr int kTickOfFileTimes = 12;
const TDate kJuly = TDate::fromSeconds(1'751'551'509); // 2025-07-03 14:05:09 UTC

/// A disk that says less, or something else, about its files.
class OtherDisk : public DiskFileManager
{
public:
    bool keepsBirth = true;
    quint64 device = 0; ///< instead of the true one

    int status(int folder, const QByteArray &name, bool followLink, TFileStatus &out) override
    {
        const int error = DiskFileManager::status(folder, name, followLink, out);
        if (!keepsBirth)
            out.birth = TDate();
        if (device != 0)
            out.device = device;
        return error;
    }
};

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

void overwrite(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
}

/// Runs that stop in the middle, and what is found afterwards.
struct Interrupted
{
    TemporaryTree tree;
    DiskFileManager disk;
    ManualClock clock{kJuly};

    QString logs() const { return tree.path(u"Logs"_s); }

    /// Moves the first `done` of the files "old>new" and stops. Records that were still in memory
    /// are lost with the process; the plan and synced intents are not.
    QString interrupt(const QStringList &moves, qsizetype done, bool recordsKept,
                      bool knowsInodesOnly = false)
    {
        auto made = RunJournal::create(logs(), clock, disk);
        std::unique_ptr<RunJournal> journal = std::move(made).value();
        std::vector<TestMove> list;
        for (const QString &move : moves)
            list.push_back({move.section(u'>', 0, 0), move.section(u'>', 1)});
        struct Stop
        {
        };
        QByteArray kept;
        JournalledMoves run(*journal, disk);
        run.knowsInodesOnly = knowsInodesOnly;
        run.beforeStep = [&](JournalledMoves::Step step, qsizetype index) {
            if (step != JournalledMoves::Step::Move && step != JournalledMoves::Step::Done)
                return;
            if (index == 0 && kept.isNull())
                kept = bytesOf(journal->path());
            if (index == done)
                throw Stop();
        };
        try {
            run.run(tree, list);
        } catch (const Stop &) {
            const QString path = journal->path();
            const QByteArray name = path.toUtf8();
            overwrite(path + u"x"_s, kept);
            journal.reset();
            if (!recordsKept || !QFile::exists(path))
                QFile::remove(path);
            if (!QFile::exists(path))
                QFile::rename(path + u"x"_s, path);
            QFile::remove(path + u"x"_s);
            return path;
        }
        return {};
    }
    std::vector<RecoveredRun> recover() { return recoverInterruptedRuns(logs(), disk, clock); }
    /// "old>new" for renamed files, "old!new" for those that are unknown.
    QStringList logged(const QString &log) const
    {
        QStringList lines;
        const auto read = readRollbackLog(log);
        if (!read)
            return {read.message()};
        for (const TRenameTRX &record : read.value())
            lines += record.originalURL.path().mid(tree.path().size() + 1) +
                     (record.renameComplete ? u'>' : u'!') + record.renamedURL.lastPathComponent();
        return lines;
    }

    QStringList running() const { return tree.list(u"Logs/.running"_s); }
};

} // namespace

class TestRecovery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatTheRunDid_data()
    {
        const Table<QStringList, QStringList, int, bool, Meanwhile, QStringList> row(
            "files", "moves", "done", "recordsKept", "meanwhile", "log");
        using L = QStringList;
        constexpr bool kKept = true;
        constexpr bool kLost = false;
        const Meanwhile nothing = [](const TemporaryTree &) {};
        const L ab{u"f/a"_s, u"f/b"_s};
        const L abMoves{u"f/a>x"_s, u"f/b>y"_s};
        const L linked{u"f/a"_s, u"f/a=b"_s};

        row("nothing moved", ab, abMoves, 0, kLost, nothing, L{});
        row("all moved, records lost", ab, abMoves, 2, kLost, nothing, L{u"f/a>x"_s, u"f/b>y"_s});
        row("one moved, record lost", ab, abMoves, 1, kLost, nothing, L{u"f/a>x"_s});
        row("one moved, record kept", ab, abMoves, 1, kKept, nothing, L{u"f/a>x"_s});
        row("chain", L{u"f/1"_s, u"f/2"_s, u"f/3"_s}, L{u"f/3>4"_s, u"f/2>3"_s, u"f/1>2"_s}, 2,
            kLost, nothing, L{u"f/3>4"_s, u"f/2>3"_s});
        row("folders and links are items too", L{u"f/d/inside"_s, u"f/l@nowhere"_s},
            L{u"f/d>e"_s, u"f/l>m"_s}, 2, kLost, nothing, L{u"f/d>e"_s, u"f/l>m"_s});
        row("same names in two folders", L{u"f/a"_s, u"g/a"_s}, L{u"f/a>x"_s, u"g/a>x"_s}, 1, kLost,
            nothing, L{u"f/a>x"_s});
        row("raw and long names",
            L{ByteNames::fromBytes("f/\xFF\xFE"), u"f/"_s + QString(255, u'o')},
            L{ByteNames::fromBytes("f/\xFF\xFE>\xFD"), u"f/"_s + QString(255, u'o') + u">y"_s}, 2,
            kLost, nothing,
            L{ByteNames::fromBytes("f/\xFF\xFE>\xFD"), u"f/"_s + QString(255, u'o') + u">y"_s});

        row("moved on by hand", ab, abMoves, 2, kKept, Meanwhile([](const TemporaryTree &t) {
                QFile::rename(t.path(u"f/x"_s), t.path(u"f/z"_s));
            }),
            L{u"f/a>z"_s, u"f/b>y"_s});
        row("moved back by hand", ab, abMoves, 2, kKept, Meanwhile([](const TemporaryTree &t) {
                QFile::rename(t.path(u"f/x"_s), t.path(u"f/a"_s));
            }),
            L{u"f/b>y"_s});
        row("deleted, record lost", ab, abMoves, 2, kLost,
            Meanwhile([](const TemporaryTree &t) { t.remove(u"f/x"_s); }),
            L{u"f/a!"_s, u"f/b>y"_s});
        row("deleted, record kept", ab, abMoves, 2, kKept,
            Meanwhile([](const TemporaryTree &t) { t.remove(u"f/x"_s); }),
            L{u"f/a>x"_s, u"f/b>y"_s});
        row("deleted, its inode given to another", ab, abMoves, 2, kLost,
            Meanwhile([](const TemporaryTree &t) {
                t.remove(u"f/x"_s);
                t.file(u"f/other"_s);
            }),
            L{u"f/a!"_s, u"f/b>y"_s});
        row("untouched, its inode given to another", ab, abMoves, 1, kLost,
            Meanwhile([](const TemporaryTree &t) {
                t.remove(u"f/b"_s);
                t.file(u"f/y"_s);
            }),
            L{u"f/a>x"_s, u"f/b!"_s});
        row("replaced under its new name, record kept", ab, abMoves, 2, kKept,
            Meanwhile([](const TemporaryTree &t) {
                t.file(u"f/tmp"_s, "edited");
                t.remove(u"f/x"_s);
                QFile::rename(t.path(u"f/tmp"_s), t.path(u"f/x"_s));
            }),
            L{u"f/a>x"_s, u"f/b>y"_s});
        row("replaced under its old name before its turn", ab, abMoves, 1, kLost,
            Meanwhile([](const TemporaryTree &t) {
                t.file(u"f/tmp"_s, "edited");
                t.remove(u"f/b"_s);
                QFile::rename(t.path(u"f/tmp"_s), t.path(u"f/b"_s));
            }),
            L{u"f/a>x"_s});
        row("old name taken by somebody else", ab, abMoves, 2, kLost,
            Meanwhile([](const TemporaryTree &t) { t.file(u"f/a"_s, "theirs"); }),
            L{u"f/a>x"_s, u"f/b>y"_s});
        row("backed up by links, record kept", ab, abMoves, 2, kKept,
            Meanwhile([](const TemporaryTree &t) { t.hardLink(u"f/x"_s, u"f/a backup"_s); }),
            L{u"f/a>x"_s, u"f/b>y"_s});

        row("links: all moved, records lost", linked, abMoves, 2, kLost, nothing,
            L{u"f/a>x"_s, u"f/b>y"_s});
        row("links: one moved, record lost", linked, abMoves, 1, kLost, nothing, L{u"f/a>x"_s});
        row("links: chain", linked, L{u"f/b>c"_s, u"f/a>b"_s}, 2, kLost, nothing,
            L{u"f/b>c"_s, u"f/a>b"_s});
        row("links: first part of a chain", linked, L{u"f/b>c"_s, u"f/a>b"_s}, 1, kLost, nothing,
            L{u"f/b>c"_s});
        row("links: caught between link and unlink", linked, abMoves, 0, kLost,
            Meanwhile([](const TemporaryTree &t) { t.hardLink(u"f/a"_s, u"f/x"_s); }), L{});
        const QString stopOver = QString::fromLatin1(stopOverName("x"));
        row("links: left where a change of case stops over", linked, abMoves, 0, kLost,
            Meanwhile([stopOver](const TemporaryTree &t) {
                QFile::rename(t.path(u"f/a"_s), t.path(u"f/"_s + stopOver));
            }),
            L{u"f/a>"_s + stopOver});
        row("links: target taken by another file", linked, abMoves, 0, kLost,
            Meanwhile([](const TemporaryTree &t) { t.file(u"f/x"_s, "theirs"); }), L{});
        row("links: deleted", linked, abMoves, 1, kLost,
            Meanwhile([](const TemporaryTree &t) { t.remove(u"f/x"_s); }), L{u"f/a!x"_s});
    }

    void tellsWhatTheRunDid()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, moves);
        QFETCH(int, done);
        QFETCH(bool, recordsKept);
        QFETCH(Meanwhile, meanwhile);
        QFETCH(QStringList, log);
        const bool areLinked = !files.filter(u"="_s).empty();
        // Of files with one name, a listing that tells their inodes is as good as their status.
        for (const bool knowsInodesOnly : {false, true}) {
            if (knowsInodesOnly && areLinked)
                continue;
            Interrupted f;
            for (const QString &file : files) { // name, link@target or f/existing=link
                if (file.contains(u'@'))
                    f.tree.link(file.section(u'@', 1), file.section(u'@', 0, 0));
                else if (file.contains(u'='))
                    f.tree.hardLink(file.section(u'=', 0, 0), u"f/"_s + file.section(u'=', 1));
                else
                    f.tree.file(file, ByteNames::toBytes(file));
            }

            if (knowsInodesOnly)
                f.clock.set(SystemClock().now());
            QVERIFY(!f.interrupt(moves, done, recordsKept, knowsInodesOnly).isEmpty());
            QTest::qSleep(kTickOfFileTimes); // else what is made next looks as old as the run
            meanwhile(f.tree);

            const std::vector<RecoveredRun> runs = f.recover();
            QCOMPARE(runs.size(), std::size_t{1});
            QCOMPARE(runs[0].problem, QString());
            QCOMPARE(runs[0].files, moves.size());
            QCOMPARE(runs[0].renamed, log.filter(u">"_s).size());
            QCOMPARE(runs[0].unknown, log.filter(u"!"_s).size());
            QCOMPARE(runs[0].rollbackLog.isEmpty(), log.isEmpty());
            if (!log.isEmpty()) {
                QCOMPARE(f.logged(runs[0].rollbackLog), log);
                QCOMPARE(runs[0].rollbackLog.section(u'/', -1), rollbackLogName(f.clock.now()));
            }
            QVERIFY(f.running().front().endsWith(u".finished"_s));
        }
    }

    void withoutBirthTimes_data()
    {
        const Table<bool, bool, QStringList> row("recordsKept", "edited", "log");
        row("size and date agree", false, false, {u"f/a>x"_s});
        row("edited since, record kept", true, true, {u"f/a>x"_s});
        row("edited since, record lost", false, true, {u"f/a!"_s});
    }

    void withoutBirthTimes()
    {
        QFETCH(bool, recordsKept);
        QFETCH(bool, edited);
        QFETCH(QStringList, log);
        Interrupted f;
        f.tree.file(u"f/a"_s);
        OtherDisk disk;
        disk.keepsBirth = false;
        // The plan is made without birth times by writing it anew.
        auto journal = std::move(RunJournal::create(f.logs(), f.clock, disk)).value();
        TFileItem item = fileItem(f.tree.path(u"f/a"_s));
        item.facts.hasBirthTime = false;
        item.facts.creation = item.facts.modification;
        journal->addFile(item);
        QVERIFY(journal->syncPlan() && journal->begin());
        const QString path = journal->path();
        const QByteArray plan = bytesOf(path);
        QVERIFY(QFile::rename(f.tree.path(u"f/a"_s), f.tree.path(u"f/x"_s)));
        journal->recordMove(0, "x");
        journal.reset();
        if (!recordsKept)
            overwrite(path, plan);
        if (edited)
            f.tree.file(u"f/x"_s, "longer");
        const auto runs = recoverInterruptedRuns(f.logs(), disk, f.clock);
        QCOMPARE(runs.size(), std::size_t{1});
        QCOMPARE(f.logged(runs[0].rollbackLog), log);
    }

    void spellings()
    {
        Interrupted f;
        FaultyFileManager disk;
        disk.ignoreCase();
        for (const QString &name : {u"N1"_s, u"N2"_s, u"aa"_s, u"Bb"_s}) {
            f.tree.file(u"f/"_s + name);
            f.tree.hardLink(u"f/"_s + name, u"f/link of "_s + name); // so that it is announced
        }
        const QStringList moves{u"f/N1>n0"_s, u"f/N2>n1"_s, u"f/aa>AA"_s, u"f/Bb>BB"_s};
        f.interrupt(moves, 3, false);
        const auto runs = recoverInterruptedRuns(f.logs(), disk, f.clock);
        QCOMPARE(runs.size(), std::size_t{1});
        QCOMPARE(f.logged(runs[0].rollbackLog), moves.first(3));
    }

    void devicesCountWithinOneBootOnly()
    {
        Interrupted f;
        f.tree.file(u"f/a"_s);
        const QString path = f.interrupt({u"f/a>x"_s}, 1, false);
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        const auto contents = JournalContents::read(file);
        QVERIFY(contents);
        OtherDisk disk;
        disk.device = 4711;
        for (const bool sameBoot : {false, true}) {
            RecoveryMatcher matcher(disk, contents.value(), sameBoot);
            matcher.match();
            QVERIFY(matcher.outcomes()[0].fate ==
                    (sameBoot ? RecoveryMatcher::Fate::Unknown : RecoveryMatcher::Fate::Renamed));
        }
    }

    void absentFoldersAreWaitedFor_data()
    {
        const Table<bool> row("mountPoint");
        row("no folder", false);
        row("an empty folder to mount on", true);
    }

    void absentFoldersAreWaitedFor()
    {
        QFETCH(bool, mountPoint);
        Interrupted f;
        const QString card = f.tree.folder(u"card"_s);
        const QString away = f.tree.path(u"away"_s);
        f.tree.file(u"card/a"_s);
        f.interrupt({u"card/a>x"_s}, 1, false);
        QVERIFY(QFile::rename(card, away));
        if (mountPoint)
            f.tree.folder(u"card"_s);
        for (int start = 0; start < 2; ++start) {
            const auto runs = f.recover();
            QCOMPARE(runs.size(), std::size_t{1});
            QVERIFY2(runs[0].problem.contains(card), qPrintable(runs[0].problem));
            QVERIFY(runs[0].rollbackLog.isEmpty());
        }
        if (mountPoint) // plugged in again
        {
            f.tree.remove(u"card"_s);
            QVERIFY(QFile::rename(away, card));
            QCOMPARE(f.logged(f.recover()[0].rollbackLog), QStringList{u"card/a>x"_s});
            return;
        }
        f.clock.set(TDate{kJuly.nanos + 31LL * 24 * 3600 * TDate::kNanosPerSecond});
        const auto runs = f.recover();
        QCOMPARE(runs[0].unknown, 1);
        QCOMPARE(f.logged(runs[0].rollbackLog), QStringList{u"card/a!"_s});
    }

    void logThatCannotBeWritten()
    {
        Interrupted f;
        f.tree.file(u"f/a"_s);
        f.interrupt({u"f/a>x"_s}, 1, false);
        const QStringList before = f.running();
        {
            const FileSizeLimit full(100);
            const auto runs = f.recover();
            QCOMPARE(runs.size(), std::size_t{1});
            QVERIFY2(runs[0].problem.contains(f.logs()), qPrintable(runs[0].problem));
        }

        QCOMPARE(f.running(), before);
        QCOMPARE(f.logged(f.recover()[0].rollbackLog), QStringList{u"f/a>x"_s});
    }

    void logsNeverShareAName()
    {
        Interrupted f;
        for (const QString &name : {u"a"_s, u"b"_s, u"c"_s}) {
            f.tree.file(u"f/"_s + name);
            f.interrupt({u"f/%1>x%1"_s.arg(name)}, 1, false);
        }
        QStringList logged;
        for (const RecoveredRun &run : f.recover())
            logged += f.logged(run.rollbackLog);
        logged.sort();
        QCOMPARE(logged, (QStringList{u"f/a>xa"_s, u"f/b>xb"_s, u"f/c>xc"_s}));
    }

    void unreadableJournalsAreSetAside()
    {
        Interrupted f;
        f.tree.file(u"f/a"_s);
        f.tree.file(u"f/b"_s);
        const QString damaged = f.interrupt({u"f/a>x"_s}, 1, false);
        f.interrupt({u"f/b>y"_s}, 1, false);
        QByteArray bytes = bytesOf(damaged);
        bytes[60] = static_cast<char>(bytes[60] ^ 4);
        overwrite(damaged, bytes);
        f.tree.folder(u"Logs/.running/0.journal"_s); // not even a file

        QStringList problems;
        QStringList logged;
        for (const RecoveredRun &run : f.recover()) {
            if (!run.problem.isEmpty())
                problems += run.problem;
            else
                logged += f.logged(run.rollbackLog);
        }

        QCOMPARE(logged, QStringList{u"f/b>y"_s});
        QCOMPARE(problems.size(), 1);
        QVERIFY2(problems[0].contains(damaged + u".unreadable"_s), qPrintable(problems[0]));
        QCOMPARE(bytesOf(damaged + u".unreadable"_s), bytes);
        QVERIFY(f.recover().empty());
    }

    void finishedJournalsAreOnlyKept()
    {
        Interrupted f;
        f.tree.file(u"f/a"_s);
        auto journal = std::move(RunJournal::create(f.logs(), f.clock, f.disk)).value();
        JournalledMoves run(*journal, f.disk);
        QVERIFY(run.run(f.tree, {{u"f/a"_s, u"x"_s}}));
        const QString path = journal->path();
        journal->finish();
        // As if the machine had stopped between the mark and the new name.
        QVERIFY(QFile::rename(journal->path(), path));
        journal.reset();
        QVERIFY(f.recover().empty());
        QCOMPARE(f.running().size(), 1);
        QVERIFY(f.running().front().endsWith(u".finished"_s));
    }

    void leftoversAreRemoved()
    {
        Interrupted f;
        f.tree.file(u"Logs/.running/dead.plan"_s, "x");
        f.tree.file(u"Logs/.running/dead.partial"_s, "x");
        f.tree.file(u"Logs/.running/old.finished"_s, "x");
        const auto living = RunJournal::create(f.logs(), f.clock, f.disk);
        const auto writer = RollbackLogWriter::create(f.logs());
        QVERIFY(f.recover().empty());
        QCOMPARE(f.running().size(), 3);
        QVERIFY(QFile::exists(living.value()->path()));
        QVERIFY(f.running().contains(u"old.finished"_s));
    }

    void plansWithoutARunAreNotRecovered()
    {
        // Killed at the question; what the user then renames himself is no move of a run.
        Interrupted f;
        auto journal = std::move(RunJournal::create(f.logs(), f.clock, f.disk)).value();
        journal->addFile(fileItem(f.tree.file(u"f/a"_s)));
        QVERIFY(journal->syncPlan());
        const QByteArray plan = bytesOf(journal->path());
        const QString path = journal->path();
        journal.reset();
        overwrite(path, plan);
        QVERIFY(QFile::rename(f.tree.path(u"f/a"_s), f.tree.path(u"f/mine"_s)));
        QVERIFY(f.recover().empty());
        QCOMPARE(f.running(), QStringList());
        QVERIFY(rollbackLogPaths(f.logs()).isEmpty());
    }

    void laterRunsKeepRecoveredLogs()
    {
        Interrupted f;
        f.tree.file(u"f/a"_s);
        f.interrupt({u"f/a>x"_s}, 1, false);
        const QString recovered = f.recover()[0].rollbackLog;
        const auto run = [&f](const QString &name) {
            auto writer = std::move(RollbackLogWriter::create(f.logs())).value();
            writer->append(TRenameTRX::TRXWithSource(TFileURL::fileURLWithPath(f.tree.path(name))));
            return writer->finish(f.clock.now()).value();
        };
        const QString first = run(u"1"_s);
        const QString second = run(u"2"_s);
        // Nor do they replace a log that had to leave its own second.
        f.clock.set(TDate{f.clock.now().nanos + TDate::kNanosPerSecond});
        const QString third = run(u"3"_s);
        QCOMPARE(f.logged(recovered), QStringList{u"f/a>x"_s});
        QCOMPARE(f.logged(first), QStringList{u"1!"_s});
        QCOMPARE(f.logged(second), QStringList{u"2!"_s});
        QCOMPARE(f.logged(third), QStringList{u"3!"_s});
        QCOMPARE(rollbackLogPaths(f.logs()).size(), 4);
    }

    void noLogsFolderNoWork()
    {
        Interrupted f;
        QVERIFY(f.recover().empty());
        QCOMPARE(f.tree.list(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestRecovery)

#include "tst_recovery.moc"
