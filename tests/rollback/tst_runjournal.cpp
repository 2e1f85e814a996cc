// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileSizeLimit.h"
#include "JournalledMoves.h"
#include "commonprocs/ByteNames.h"
#include "commonprocs/LastingInodes.h"
#include "rollback/JournalContents.h"
#include "rollback/RunJournal.h"
#include "support/FaultyFileManager.h"
#include "support/ManualClock.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QFile>

#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using Call = FaultyFileManager::Call;

namespace {

struct JournalFixture
{
    TemporaryTree tree;
    FaultyFileManager disk;
    ManualClock clock{TDate::fromSeconds(1'751'551'509)};

    QString logs() const { return tree.path(u"Logs"_s); }
    std::unique_ptr<RunJournal> make()
    {
        auto journal = RunJournal::create(logs(), clock, disk);
        return journal ? std::move(journal).value() : nullptr;
    }

    JournalContents contents(const RunJournal &journal) const
    {
        QFile file(journal.path());
        file.open(QIODevice::ReadOnly);
        auto read = JournalContents::read(file);
        return read ? std::move(read).value() : JournalContents();
    }

    QStringList running() const { return tree.list(u"Logs/.running"_s); }
};

} // namespace

class TestRunJournal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void planIsOnDiskBeforeTheFirstMove()
    {
        JournalFixture f;
        f.tree.file(u"b/one.txt"_s, "12345");
        const QByteArray raw = f.tree.rawFile("a/raw\xFF");
        f.tree.file(u"b/two.txt"_s);
        const auto journal = f.make();
        std::vector<TFileItem> items{fileItem(f.tree.path(u"b/one.txt"_s)),
                                     justInode(fileItem(ByteNames::fromBytes(raw))),
                                     fileItem(f.tree.path(u"b/two.txt"_s))};
        for (const TFileItem &item : items)
            journal->addFile(item);
        QCOMPARE(f.running().size(), 1);
        QVERIFY(!f.running().front().endsWith(u".journal"_s)); // recovery must not see half a plan
        f.disk.reset();
        QVERIFY(journal->syncPlan());
        QCOMPARE(f.disk.count(Call::Sync), 1);
        QVERIFY(journal->path().endsWith(u".plan"_s)); // nor that of a run that nobody agreed to
        QVERIFY(journal->begin());
        QCOMPARE(f.disk.count(Call::Sync), 2); // the file, then its folder
        QVERIFY(journal->path().endsWith(u".journal"_s));

        const JournalContents contents = f.contents(*journal);
        QCOMPARE(contents.folders().size(), std::size_t{2});
        QCOMPARE(contents.folders()[0], f.tree.path(u"b"_s).toUtf8());
        QCOMPARE(contents.time(), f.clock.now());
        QCOMPARE(contents.files().size(), items.size());
        for (std::size_t i = 0; i < items.size(); ++i) {
            const JournalContents::File &file = contents.files()[i];
            const TFileFacts &facts = items[i].facts;
            QCOMPARE(contents.folders()[file.folder] + '/' + contents.text(file.name).toByteArray(),
                     items[i].url.fileSystemPath());
            QCOMPARE(file.inode, facts.inode);
            QCOMPARE(file.device, facts.device);
            QCOMPARE(file.hasInodeOnly, !facts.areWhole);
            QCOMPARE(file.size, facts.size);
            QCOMPARE(file.links, facts.links);
            QCOMPARE(file.modification, facts.modification);
            QCOMPARE(file.birth.isSet(), facts.hasBirthTime);
            if (facts.hasBirthTime)
                QCOMPARE(file.birth, facts.creation);
        }
    }

    void isPrivateAndLocked_data()
    {
        const Table<bool> row("begun");
        row("while the user is asked", false);
        row("during the run", true);
    }

    void isPrivateAndLocked()
    {
        QFETCH(bool, begun);
        JournalFixture f;
        f.tree.file(u"a"_s);
        const auto journal = f.make();
        journal->addFile(fileItem(f.tree.path(u"a"_s)));
        QVERIFY(journal->syncPlan());
        QVERIFY(!begun || journal->begin());
        struct stat status = {};
        ::stat(qPrintable(journal->path()), &status);
        QCOMPARE(status.st_mode & 0777U, 0600U);
        ::stat(qPrintable(f.tree.path(u"Logs/.running"_s)), &status);
        QCOMPARE(status.st_mode & 0777U, 0700U);
        QFile other(journal->path());
        QVERIFY(other.open(QIODevice::ReadOnly));
        QCOMPARE(::flock(other.handle(), LOCK_EX | LOCK_NB), -1);
        QVERIFY(recoverInterruptedRuns(f.logs(), f.disk, f.clock).empty());
        QVERIFY(QFile::exists(journal->path()));
    }

    void movesAreWrittenButNeverSynced()
    {
        JournalFixture f;
        std::vector<TestMove> moves;
        for (int i = 0; i < 5000; ++i)
            moves.push_back({f.tree.file(u"f/%1"_s.arg(i)).mid(f.tree.path().size() + 1),
                             u"a longer new name %1"_s.arg(i)});
        const auto journal = f.make();
        JournalledMoves run(*journal, f.disk);
        f.disk.reset();
        run.beforeStep = [&](JournalledMoves::Step step, qsizetype) {
            if (step == JournalledMoves::Step::Done)
                QVERIFY(f.contents(*journal).files()[0].evidence ==
                        JournalContents::Evidence::Move);
        };
        QVERIFY(run.run(f.tree, moves));
        QCOMPARE(f.disk.count(Call::Sync), 2);
        journal->finish();
        QCOMPARE(journal->problem(), QString());
        QCOMPARE(f.disk.count(Call::Sync), 2);

        QVERIFY(journal->path().endsWith(u".finished"_s));
        const JournalContents contents = f.contents(*journal);
        QVERIFY(contents.isFinished());
        QCOMPARE(contents.text(contents.files()[4999].newName),
                 QByteArrayView("a longer new name 4999"));
        QCOMPARE(contents.end(), QFile(journal->path()).size()); // the reserved space is given back
    }

    void intentsWhereInodesDoNotTell_data()
    {
        const Table<QString, bool> row("item", "needed");
        row("file", u"file", false);
        row("folder", u"folder", false);
        row("link", u"link", false);
        row("one of two links", u"hard", true);
        row("not there", u"missing", true);
    }

    void intentsWhereInodesDoNotTell()
    {
        QFETCH(QString, item);
        JournalFixture f;
        f.tree.file(u"file"_s);
        f.tree.folder(u"folder/inner"_s);
        f.tree.link(u"file"_s, u"link"_s);
        f.tree.file(u"hard"_s);
        f.tree.hardLink(u"hard"_s, u"other"_s);
        const auto journal = f.make();
        journal->addFile(fileItem(f.tree.path(item)));
        QTEST(journal->needsIntent(0), "needed");
    }

    void fileSystemsThatKeepInodes_data()
    {
        const Table<quint64, bool> row("magic", "keeps");
        row("ext4", EXT4_SUPER_MAGIC, true);
        row("xfs", XFS_SUPER_MAGIC, true);
        row("btrfs", BTRFS_SUPER_MAGIC, true);
        row("vfat", MSDOS_SUPER_MAGIC, false);
        row("exfat", EXFAT_SUPER_MAGIC, false);
        row("fuse", FUSE_SUPER_MAGIC, false);
        row("overlay", OVERLAYFS_SUPER_MAGIC, false);
        row("nfs", NFS_SUPER_MAGIC, false);
        row("cifs", CIFS_SUPER_MAGIC, false);
        row("9p", V9FS_MAGIC, false);
        row("never heard of", 0x12345678, false);
    }

    void fileSystemsThatKeepInodes()
    {
        QFETCH(quint64, magic);
        QTEST(fileSystemKeepsInodes(magic), "keeps");
    }

    void itemsWithoutAName()
    {
        JournalFixture f;
        f.tree.file(u"a"_s);
        const auto journal = f.make();
        journal->addFile(fileItem(u"/"_s));
        journal->addFile(fileItem(f.tree.path(u"a"_s)));
        QVERIFY(journal->syncPlan());
        const JournalContents contents = f.contents(*journal);
        QCOMPARE(contents.files().size(), std::size_t{2});
        QCOMPARE(contents.text(contents.files()[1].name), QByteArrayView("a"));
    }

    void failingSyncStopsTheRun_data()
    {
        const Table<int> row("succeeding");
        row("of the plan", 0);
        row("of the folder", 1);
    }

    void failingSyncStopsTheRun()
    {
        QFETCH(int, succeeding);
        JournalFixture f;
        f.tree.file(u"a"_s);
        auto journal = f.make();
        journal->addFile(fileItem(f.tree.path(u"a"_s)));
        f.disk.reset();
        // An errno of 0 is a call that does nothing and succeeds.
        f.disk.fail(Call::Sync, 0, succeeding);
        f.disk.fail(Call::Sync, EIO, 1);
        QCOMPARE(journal->syncPlan(), succeeding == 1);
        QVERIFY(!journal->begin());
        QVERIFY2(journal->problem().contains(textForErrno(EIO)), qPrintable(journal->problem()));
        QVERIFY(!journal->syncIntents());
        QCOMPARE(f.disk.count(Call::Sync), succeeding + 1);
        journal.reset();
        QCOMPARE(f.running(), QStringList());
    }

    void fullDiskStopsTheRun_data()
    {
        const Table<qint64> row("limit");
        row("not even the header", 10);
        row("in the plan", 70'000);
        row("no room for the moves", 250'000);
    }

    void fullDiskStopsTheRun()
    {
        QFETCH(qint64, limit);
        JournalFixture f;
        const TFileItem item = fileItem(f.tree.file(u"some file name"_s));
        auto journal = f.make();
        f.disk.reset();
        {
            const FileSizeLimit full(static_cast<rlim_t>(limit));
            for (int i = 0; i < 8000; ++i)
                journal->addFile(item);
            QVERIFY(!journal->syncPlan());
        }

        QVERIFY2(journal->problem().contains(textForErrno(EFBIG)), qPrintable(journal->problem()));
        QCOMPARE(f.disk.count(Call::Sync), 0);
        journal.reset();
        QCOMPARE(f.running(), QStringList());
    }

    void fullDiskDuringTheRun()
    {
        JournalFixture f;
        const TFileItem item = fileItem(f.tree.file(u"x"_s));
        const auto journal = f.make();
        for (int i = 0; i < 1000; ++i)
            journal->addFile(item);
        QVERIFY(journal->syncPlan());
        const FileSizeLimit full(static_cast<rlim_t>(QFile(journal->path()).size()));
        for (int i = 0; i < 1000; ++i)
            journal->recordMove(i, QByteArray(250, 'n'));
        QVERIFY2(journal->problem().contains(textForErrno(EFBIG)), qPrintable(journal->problem()));
        QVERIFY(!journal->syncIntents());
    }

    void failedIntentSyncIsNotTriedAgain()
    {
        JournalFixture f;
        f.tree.file(u"a"_s);
        f.tree.hardLink(u"a"_s, u"b"_s);
        const auto journal = f.make();
        JournalledMoves run(*journal, f.disk);
        run.beforeStep = [&](JournalledMoves::Step step, qsizetype) {
            if (step == JournalledMoves::Step::Intents)
                f.disk.fail(Call::Sync, EIO, 1);
        };
        QVERIFY(!run.run(f.tree, {{u"a"_s, u"c"_s}, {u"b"_s, u"d"_s}}));
        const int syncs = f.disk.count(Call::Sync);
        QVERIFY(!journal->syncIntents());
        QCOMPARE(f.disk.count(Call::Sync), syncs);
        QVERIFY(journal->problem().contains(textForErrno(EIO)));
        QVERIFY(f.tree.exists(u"a"_s));
        QVERIFY(f.tree.exists(u"b"_s));
    }

    void foldersThatCannotBe()
    {
        JournalFixture f;
        f.tree.file(u"Logs"_s);
        const auto journal = RunJournal::create(f.logs(), f.clock, f.disk);
        QVERIFY(!journal);
        QVERIFY2(journal.message().contains(f.logs()), qPrintable(journal.message()));
    }

    void leavesNothingWithoutMoves_data()
    {
        const Table<bool> row("begun");
        row("not agreed to", false);
        row("stopped before its first move", true);
    }

    void leavesNothingWithoutMoves()
    {
        QFETCH(bool, begun);
        JournalFixture f;
        f.tree.file(u"a"_s);
        f.make();
        QCOMPARE(f.running(), QStringList());
        auto journal = f.make();
        journal->addFile(fileItem(f.tree.path(u"a"_s)));
        QVERIFY(journal->syncPlan());
        QVERIFY(!begun || journal->begin());
        journal.reset();
        QCOMPARE(f.running(), QStringList());
    }

    void planThatIsGone()
    {
        JournalFixture f;
        f.tree.file(u"a"_s);
        const auto journal = f.make();
        journal->addFile(fileItem(f.tree.path(u"a"_s)));
        QVERIFY(journal->syncPlan());
        QVERIFY(QFile::remove(journal->path()));
        QVERIFY(!journal->begin());
        QVERIFY2(journal->problem().contains(textForErrno(ENOENT)), qPrintable(journal->problem()));
    }

    void keepsTheLastFifty()
    {
        JournalFixture f;
        QStringList made;
        for (int i = 0; i < 53; ++i) {
            f.tree.file(u"f/%1"_s.arg(i));
            const auto journal = f.make();
            JournalledMoves run(*journal, f.disk);
            QVERIFY(run.run(f.tree, {{u"f/%1"_s.arg(i), u"n%1"_s.arg(i)}}));
            journal->finish();
            made += journal->path().section(u'/', -1);
            // Ages of their own, whatever the grain of the file system's times.
            const timespec times[2] = {{1000 + i, 0}, {1000 + i, 0}};
            ::utimensat(AT_FDCWD, qPrintable(journal->path()), times, 0);
        }
        QStringList kept = made.mid(3);
        kept.sort();
        QCOMPARE(f.running(), kept);
    }
};

QTEST_GUILESS_MAIN(TestRunJournal)

#include "tst_runjournal.moc"
