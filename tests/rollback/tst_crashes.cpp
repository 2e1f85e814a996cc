// SPDX-License-Identifier: GPL-3.0-or-later
#include "JournalledMoves.h"
#include "rollback/RollbackLog.h"
#include "rollback/RollbackRun.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QRandomGenerator>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using Step = JournalledMoves::Step;

namespace {

constexpr int kFiles = 300;

QString numbered(int number)
{
    return u"%1.txt"_s.arg(number, 4, 10, QChar(u'0'));
}

/// A folder of files that each hold their own name, every third in a pair of links, and a batch in
/// which the second half forms one long chain: the last file moves on, the one before takes its
/// name, and so on.
struct CrashScene
{
    TemporaryTree tree;
    DiskFileManager disk;
    SystemClock clock;
    std::vector<TestMove> moves;
    bool linked;

    explicit CrashScene(bool withLinks)
        : linked(withLinks)
    {
        tree.folder(u"elsewhere"_s);
        for (int i = 0; i < kFiles; ++i) {
            tree.file(u"f/"_s + numbered(i), numbered(i).toUtf8());
            if (linked && i % 3 == 0)
                tree.hardLink(u"f/"_s + numbered(i), u"elsewhere/"_s + numbered(i));
        }
        for (int i = 0; i < kFiles / 2; ++i)
            moves.push_back({u"f/"_s + numbered(i), u"new "_s + numbered(i)});
        for (int i = kFiles - 1; i >= kFiles / 2; --i)
            moves.push_back({u"f/"_s + numbered(i), numbered(i + 1)});
    }

    QString logs() const { return tree.path(u"Logs"_s); }

    /// Runs in a process of its own until it is killed or kills itself in beforeStep.
    pid_t start(const std::function<void(Step, qsizetype)> &beforeStep)
    {
        const pid_t child = ::fork();
        if (child != 0)
            return child;
        auto journal = RunJournal::create(logs(), clock, disk);
        JournalledMoves run(*journal.value(), disk);
        run.beforeStep = beforeStep;
        const bool ok = run.run(tree, moves);
        journal.value()->finish();
        ::_exit(ok ? 0 : 1);
    }

    /// The content of every file under its first name; else what is wrong.
    QString whatIsNotAsBefore() const
    {
        const QStringList names = tree.list(u"f"_s);
        if (names.size() != kFiles)
            return u"%1 files"_s.arg(names.size());
        for (const QString &name : names)
            if (tree.content(u"f/"_s + name) != name.toUtf8())
                return name + u" holds "_s + QString::fromUtf8(tree.content(u"f/"_s + name));
        return {};
    }

    /// How many files do not stand under their first names.
    qsizetype moved() const
    {
        qsizetype count = 0;
        for (const QString &name : tree.list(u"f"_s))
            count += tree.content(u"f/"_s + name) != name.toUtf8() ? 1 : 0;
        return count;
    }

    /// What the next start does, and the user after it.
    QString recoverAndUndo()
    {
        const qsizetype expected = moved();
        qsizetype found = 0;
        for (const RecoveredRun &run : recoverInterruptedRuns(logs(), disk, clock)) {
            if (!run.problem.isEmpty() || run.unknown > 0)
                return u"%1 unknown: %2"_s.arg(run.unknown).arg(run.problem);
            found += run.renamed;
            if (run.rollbackLog.isEmpty())
                continue;
            auto records = readRollbackLog(run.rollbackLog);
            if (!records)
                return records.message();
            RollbackRun undo(disk, std::move(records).value());
            undo.processLog({});
            undo.performRollBack({}, false, true);
        }
        if (found != expected)
            return u"%1 files were moved and %2 found"_s.arg(expected).arg(found);
        return whatIsNotAsBefore();
    }
};

} // namespace

/// Processes that die in the middle of a run, at chosen and at random moments. Whatever the moment,
/// every file must come back under its old name.
class TestCrashes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void atEveryStep_data()
    {
        Table<bool, int, int, int>("linked", "step", "index", "moved");
        const auto row = [](const char *name, Step step, int index, int moved) {
            for (const bool linked : {false, true})
                QTest::addRow("%s%s", name, linked ? ", with links" : "")
                    << linked << static_cast<int>(step) << index << moved;
        };
        row("before the plan is synced", Step::Plan, 0, 0);
        row("before the first intents", Step::Intents, 0, 0);
        row("before the first move", Step::Move, 0, 0);
        row("between a move and its record", Step::Record, 0, 1);
        row("in the middle of a group", Step::Move, 100, 100);
        row("before the intents of a later group", Step::Intents, 192, 192);
        row("within the chain", Step::Record, 200, 201);
        row("before the journal is finished", Step::Done, kFiles, kFiles);
    }

    void atEveryStep()
    {
        QFETCH(bool, linked);
        QFETCH(int, step);
        QFETCH(int, index);
        QFETCH(int, moved);
        CrashScene scene(linked);
        const pid_t child = scene.start([&](Step at, qsizetype number) {
            if (static_cast<int>(at) == step && number == index)
                ::_exit(42);
        });
        int status = 0;
        ::waitpid(child, &status, 0);
        QCOMPARE(WEXITSTATUS(status), 42);
        QCOMPARE(scene.moved(), moved);
        QCOMPARE(scene.recoverAndUndo(), QString());
    }

    void atRandomMoments_data()
    {
        const Table<bool> row("linked");
        row("records in memory", false);
        row("with links", true);
    }

    void atRandomMoments()
    {
        QFETCH(bool, linked);
        constexpr int kRounds = 20;
        const quint32 seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        int interrupted = 0;
        for (int round = 0; round < kRounds; ++round) {
            CrashScene scene(linked);
            // Armed at a file and not by the clock alone: how long a run takes differs a lot from
            // machine to machine.
            const auto armedAt = static_cast<qsizetype>(random.bounded(kFiles));
            const useconds_t moment = 1 + random.bounded(300U);
            const pid_t child = scene.start([=](Step step, qsizetype index) {
                if (step == Step::Move && index == armedAt) {
                    std::signal(SIGALRM, SIG_DFL);
                    ::ualarm(moment, 0); // ends the process as it stands
                } else if (step == Step::Done) {
                    ::pause();
                }
            });
            int status = 0;
            ::waitpid(child, &status, 0);
            QVERIFY(WIFSIGNALED(status));
            const qsizetype moved = scene.moved();
            interrupted += moved > 0 && moved < kFiles ? 1 : 0;
            const QString wrong = scene.recoverAndUndo();
            QVERIFY2(wrong.isEmpty(),
                     qPrintable(u"seed %1, round %2: %3"_s.arg(seed).arg(round).arg(wrong)));
        }
        QVERIFY2(interrupted > 0, "no run was caught in the middle");
    }
};

QTEST_GUILESS_MAIN(TestCrashes)

#include "tst_crashes.moc"
