// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/easyfile.h"
#include "settings/logging.h"
#include "support/FaultyFileManager.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QRegularExpression>

#include <cerrno>

using namespace Qt::StringLiterals;
using Call = FaultyFileManager::Call;
using Way = TMoveResult::Way;

class TestEasyfile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void moves_data()
    {
        const Table<QString, QString, Way, int, QStringList> row("from", "to", "way", "error",
                                                                 "after");
        const auto list = [](const QString &text) { return text.split(u' '); };
        row("free name", u"a", u"z", Way::Guarded, 0, list(u"b d/ d/e dangling z"_s));
        row("taken name", u"a", u"b", Way::Failed, EEXIST, {});
        row("taken by a folder", u"a", u"d", Way::Failed, EEXIST, {});
        row("taken by a dangling link", u"a", u"dangling", Way::Failed, EEXIST, {});
        row("itself", u"a", u"a", Way::Itself, 0, {});
        row("missing", u"x", u"z", Way::Failed, ENOENT, {});
        row("missing itself", u"x", u"x", Way::Failed, ENOENT, {});
        row("a link moves itself", u"dangling", u"z", Way::Guarded, 0, list(u"a b d/ d/e z"_s));
        row("a folder", u"d", u"z", Way::Guarded, 0, list(u"a b dangling z/ z/e"_s));
        row("raw bytes", u"a", u"\xDCE4", Way::Guarded, 0, list(u"b d/ d/e dangling \xDCE4"_s));
    }

    void moves()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QStringList, after);
        TemporaryTree tree;
        tree.file(u"a"_s, "A");
        tree.file(u"b"_s, "B");
        tree.file(u"d/e"_s, "E");
        tree.link(u"nowhere"_s, u"dangling"_s);
        const QStringList before = tree.list();
        DiskFileManager disk;
        const TMoveResult result = FileMover(disk).move(TFolder(tree.path()), from, to);
        QTEST(result.way, "way");
        QTEST(result.error, "error");
        QCOMPARE(result.text.isEmpty(), result.ok());
        QVERIFY(!result.text.contains(tree.path()));
        QCOMPARE(tree.list(), after.isEmpty() ? before : after);
    }

    void refusedNames_data()
    {
        const Table<QString> row("name");
        row("empty", u"");
        row("dot", u".");
        row("dots", u"..");
        row("other folder", u"../a");
        row("slash", u"a/b");
        row("NUL", u"z\0");
        row("256 bytes", QString(256, u'a'));
        row("256 bytes of umlauts", QString(128, QChar(0xE4)));
        row("258 bytes of emoji", u"ab"_s + u"\U0001F600"_s.repeated(64));
    }

    void refusedNames()
    {
        QFETCH(QString, name);
        TemporaryTree tree;
        tree.file(u"d/a"_s);
        tree.file(u"d/z"_s);
        tree.file(u"b"_s);
        const QStringList before = tree.list();
        DiskFileManager disk;
        FileMover mover(disk);
        const TFolder folder(tree.path(u"d"_s));
        const TMoveResult result = mover.move(folder, u"a"_s, name);
        QCOMPARE(result.way, Way::Failed);
        QCOMPARE(result.error, 0);
        QCOMPARE(result.text, reasonToRefuseName(name));
        QCOMPARE(mover.move(folder, name, u"new"_s).text, reasonToRefuseName(name));
        QCOMPARE(tree.list(), before);
    }

    void theLongestNameIsPossible()
    {
        TemporaryTree tree;
        tree.file(u"a"_s);
        const QString name = u"\u20AC"_s.repeated(85); // 255 bytes
        DiskFileManager disk;
        QCOMPARE(FileMover(disk).move(TFolder(tree.path()), u"a"_s, name).way, Way::Guarded);
        QCOMPARE(tree.list(), QStringList{name});
    }

    void fallbacks_data()
    {
        // renameError: of the guarded rename
        const Table<QString, QString, int, int, Way, int> row("from", "to", "renameError",
                                                              "linkError", "way", "error");
        row("link, no flags", u"a", u"z", EINVAL, 0, Way::Linked, 0);
        row("link, no call", u"a", u"z", ENOSYS, 0, Way::Linked, 0);
        row("link, not supported", u"a", u"z", ENOTSUP, 0, Way::Linked, 0);
        row("link of a link", u"l", u"z", EINVAL, 0, Way::Linked, 0);
        row("link, taken", u"a", u"b", EINVAL, 0, Way::Failed, EEXIST);
        row("link, taken by a dangling link", u"a", u"l", EINVAL, 0, Way::Failed, EEXIST);
        row("no links", u"a", u"z", EINVAL, EPERM, Way::Unguarded, 0);
        row("no links, taken", u"a", u"b", EINVAL, EPERM, Way::Failed, EEXIST);
        row("no links, taken by a dangling link", u"a", u"l", EINVAL, ENOTSUP, Way::Failed, EEXIST);
        row("folder", u"d", u"z", EINVAL, 0, Way::Unguarded, 0);
        row("folder, taken by an empty one", u"d", u"empty", EINVAL, 0, Way::Failed, EEXIST);
        row("missing", u"x", u"z", EINVAL, 0, Way::Failed, ENOENT);
        row("disk full", u"a", u"z", ENOSPC, 0, Way::Failed, ENOSPC);
        row("no permission", u"a", u"z", EACCES, 0, Way::Failed, EACCES);
        row("link, disk full", u"a", u"z", EINVAL, ENOSPC, Way::Failed, ENOSPC);
    }

    void fallbacks()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(int, renameError);
        QFETCH(int, linkError);
        TemporaryTree tree;
        tree.file(u"a"_s, "A");
        tree.file(u"b"_s, "B");
        tree.file(u"d/e"_s, "E");
        tree.folder(u"empty"_s);
        tree.link(u"nowhere"_s, u"l"_s);
        QStringList expected = tree.list();
        FaultyFileManager disk;
        disk.fail(Call::RenameNoReplace, renameError);
        if (linkError != 0)
            disk.fail(Call::Link, linkError);
        const TMoveResult result = FileMover(disk).move(TFolder(tree.path()), from, to);
        QTEST(result.way, "way");
        QTEST(result.error, "error");
        if (result.ok()) {
            expected.replaceInStrings(QRegularExpression(u'^' + from + u"(?=/|$)"_s), to);
            expected.sort();
        }
        QCOMPARE(tree.list(), expected);
        QCOMPARE(tree.content(u"b"_s), "B");
    }

    void targetAppearsDuringAFallback_data()
    {
        const Table<bool> row("canLink");
        row("before the link", true);
        row("after the link failed", false);
    }

    void targetAppearsDuringAFallback()
    {
        QFETCH(bool, canLink);
        TemporaryTree tree;
        tree.file(u"a"_s, "A");
        FaultyFileManager disk;
        disk.fail(Call::RenameNoReplace, EINVAL);
        if (!canLink)
            disk.fail(Call::Link, EPERM);
        disk.before(Call::Link, [&tree] { tree.file(u"z"_s, "other"); });
        const TMoveResult result = FileMover(disk).move(TFolder(tree.path()), u"a"_s, u"z"_s);
        QCOMPARE(result.error, EEXIST);
        QCOMPARE(tree.content(u"a"_s), "A");
        QCOMPARE(tree.content(u"z"_s), "other");
    }

    void aLinkThatCannotBeFinishedIsTakenBack()
    {
        TemporaryTree tree;
        tree.file(u"a"_s, "A");
        FaultyFileManager disk;
        disk.fail(Call::RenameNoReplace, EINVAL);
        disk.fail(Call::Unlink, EACCES, FaultyFileManager::kAlways, "a");
        FileMover mover(disk);
        const TFolder folder(tree.path());
        const TMoveResult result = mover.move(folder, u"a"_s, u"z"_s);
        QCOMPARE(result.error, EACCES);
        QCOMPARE(result.text, textForErrno(EACCES));
        QCOMPARE(tree.list(), QStringList{u"a"_s});

        disk.fail(Call::Unlink, EIO);
        QVERIFY(mover.move(folder, u"a"_s, u"z"_s).text.contains("both"_L1));
    }

    void unguardedMovesAreLoggedOnceAFolder()
    {
        TemporaryTree tree;
        for (const char16_t *name : {u"a/1", u"a/2", u"b/1"})
            tree.file(QString::fromUtf16(name));
        QStringList lines;
        setLogSink([&lines](const QString &line) { lines.append(line); });
        FaultyFileManager disk;
        disk.fail(Call::RenameNoReplace, EINVAL);
        disk.fail(Call::Link, EPERM);
        FileMover mover(disk);
        mover.move(TFolder(tree.path(u"a"_s)), u"1"_s, u"3"_s);
        mover.move(TFolder(tree.path(u"b"_s)), u"1"_s, u"3"_s);
        mover.move(TFolder(tree.path(u"a"_s)), u"2"_s, u"4"_s);
        setLogSink({});
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines[0].endsWith(tree.path(u"a"_s)));
        QVERIFY(lines[1].endsWith(tree.path(u"b"_s)));
    }

    void onlyTheSpellingChanges()
    {
        TemporaryTree tree;
        tree.file(u"photo"_s, "P");
        tree.file(u"other"_s, "O");
        FaultyFileManager disk;
        disk.ignoreCase();
        FileMover mover(disk);
        const TFolder folder(tree.path());
        QCOMPARE(mover.move(folder, u"other"_s, u"PHOTO"_s).error, EEXIST);
        QVERIFY(mover.move(folder, u"photo"_s, u"PHOTO"_s).ok());
        QCOMPARE(tree.list(), (QStringList{u"PHOTO"_s, u"other"_s}));
        QCOMPARE(tree.content(u"PHOTO"_s), "P");
    }

    void aSpellingThatCannotChangeIsTakenBack()
    {
        TemporaryTree tree;
        tree.file(u"photo"_s, "P");
        FaultyFileManager disk;
        disk.ignoreCase();
        disk.before(Call::RenameNoReplace, [&disk] {
            // The first step succeeds; the second one finds the disk full.
            disk.before(Call::RenameNoReplace,
                        [&disk] { disk.fail(Call::RenameNoReplace, ENOSPC, 1); });
        });
        const TMoveResult result =
            FileMover(disk).move(TFolder(tree.path()), u"photo"_s, u"PHOTO"_s);
        QCOMPARE(result.error, ENOSPC);
        QCOMPARE(result.text, textForErrno(ENOSPC));
        QCOMPARE(tree.list(), QStringList{u"photo"_s});
    }

    void aHardLinkedTwinIsTaken()
    {
        for (const bool hasGuard : {true, false}) {
            TemporaryTree tree;
            tree.file(u"a"_s, "A");
            tree.hardLink(u"a"_s, u"b"_s);
            FaultyFileManager disk;
            if (!hasGuard)
                disk.fail(Call::RenameNoReplace, EINVAL);
            QCOMPARE(FileMover(disk).move(TFolder(tree.path()), u"a"_s, u"b"_s).error, EEXIST);
            QCOMPARE(tree.list(), (QStringList{u"a"_s, u"b"_s}));
            QCOMPARE(disk.count(Call::RenameNoReplace), 1); // and nothing was moved aside
        }
    }

    void foldersStayOpenUpToALimit()
    {
        TemporaryTree tree;
        FaultyFileManager disk;
        const int many = static_cast<int>(FileMover::kMostOpenFolders) + 10;
        {
            FileMover mover(disk);
            for (int i = 0; i < many; ++i) {
                const QString name = QString::number(i);
                tree.file(name + u"/a"_s);
                const TFolder folder(tree.path(name));
                QVERIFY(mover.move(folder, u"a"_s, u"b"_s).ok());
                // The first folder is in use all the time, and so never closed.
                QVERIFY(mover.exists(TFolder(tree.path(u"0"_s)), u"b"_s));
            }
            QCOMPARE(disk.count(Call::OpenFolder), many);
            QCOMPARE(disk.openFolders(), static_cast<int>(FileMover::kMostOpenFolders));
            QVERIFY(mover.exists(TFolder(tree.path(u"1"_s)), u"b"_s));
            QCOMPARE(disk.count(Call::OpenFolder), many + 1);

            disk.fail(Call::OpenFolder, EMFILE, 1);
            QVERIFY(mover.exists(TFolder(tree.path()), u"1"_s));
            QCOMPARE(disk.openFolders(), 1);
        }
        QCOMPARE(disk.openFolders(), 0);
    }

    void aFolderThatIsMovedMeanwhileIsStillTheSame()
    {
        TemporaryTree tree;
        tree.file(u"d/a"_s);
        tree.file(u"d/b"_s);
        DiskFileManager disk;
        FileMover mover(disk);
        const TFolder folder(tree.path(u"d"_s));
        QVERIFY(mover.move(folder, u"a"_s, u"1"_s).ok());
        QVERIFY(mover.move(TFolder(tree.path()), u"d"_s, u"e"_s).ok());
        QVERIFY(mover.move(folder, u"b"_s, u"2"_s).ok());
        QCOMPARE(tree.list(), (QStringList{u"e/"_s, u"e/1"_s, u"e/2"_s}));
    }

    void textsNameWhatToDo()
    {
        QVERIFY(textForErrno(EACCES).contains("permission"_L1));
        QVERIFY(textForErrno(ENOSPC).contains("Free some space"_L1));
        QVERIFY(textForErrno(EEXIST).contains("taken"_L1));
        QCOMPARE(textForErrno(ECHILD), u"The system says: No child processes."_s);
        QCOMPARE(textForErrno(99999), u"The system reports error 99999."_s);
    }
};

QTEST_GUILESS_MAIN(TestEasyfile)
#include "tst_easyfile.moc"
