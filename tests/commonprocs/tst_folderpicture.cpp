// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/FolderPicture.h"
#include "commonprocs/URLListProcessing.h"
#include "support/FaultyFileManager.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QElapsedTimer>

#include <cerrno>
#include <random>

using namespace Qt::StringLiterals;
using Call = FaultyFileManager::Call;

namespace {

TFolderPtr folderOf(const TemporaryTree &tree, const QString &relative = {})
{
    return std::make_shared<const TFolder>(tree.path(relative));
}

/// What the disk itself says.
QString uniqueOnDisk(const TFolder &folder, const QString &base, const QString &extension)
{
    return createUniqueFileNameWithParentAndNameBase(TFileURL::fileURLWithPath(folder.path()), base,
                                                     extension)
        .value_or(QString());
}

} // namespace

class TestFolderPicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freeNames_data()
    {
        const Table<QString, QString, QString> row("base", "extension", "unique");
        row("free", u"z", u"txt", u"z");
        row("taken", u"a", u"txt", u"a-2");
        row("case counts", u"A", u"txt", u"A");
        row("a bare name goes unnoticed", u"bare", u"", u"bare");
        row("a dot at the end is noticed", u"dot", u"", u"dot-1");
        row("a dangling link", u"l", u"txt", u"l-1");
        row("a folder", u"d", u"x", u"d-1");
        row("raw bytes", u"\xDCE4", u"txt", u"\xDCE4-1");
        row("numbers with a zero in front are others", u"n", u"txt", u"n-1");
        row("the folder itself", u"", u"", u"-1");
        row("the parent folder", u".", u"", u".-1");
        row("in a folder below", u"d.x/i", u"txt", u"d.x/i-1");
        row("too long for the disk", QString(300, u'x'), u"txt", QString(300, u'x'));
        row("dots in the extension", u"t", u"tar.gz", u"t-1");
    }

    void freeNames()
    {
        QFETCH(QString, base);
        QFETCH(QString, extension);
        QFETCH(QString, unique);
        TemporaryTree tree;
        for (const QString &name : {u"a.txt"_s, u"a-1.txt"_s, u"bare"_s, u"dot."_s, u"d.x/i.txt"_s,
                                    u"\xDCE4.txt"_s, u"n.txt"_s, u"n-01.txt"_s, u"t.tar.gz"_s})
            tree.file(name);
        tree.link(u"nowhere"_s, u"l.txt"_s);
        const TFolderPtr folder = folderOf(tree);
        QCOMPARE(uniqueOnDisk(*folder, base, extension), unique);
        for (const int files : {1, 2}) {
            FaultyFileManager disk;
            FolderPicture picture(disk);
            picture.announce(folder, files);
            QCOMPARE(picture.uniqueBase(*folder, base, extension), unique);
            QCOMPARE(picture.exists(*folder, u"l.txt"_s), true);
            QCOMPARE(picture.exists(*folder, u"a"_s), false);
            QCOMPARE(disk.count(Call::List), files - 1); // one file is not worth it
        }
    }

    void answersEqualTheDisksThroughAnyMoves_data()
    {
        Table<int, int>("seed", "announced");
        for (const int seed : {1, 2, 3, 4}) {
            QTest::addRow("read whole %d", seed) << seed << 100;
            QTest::addRow("asked on the disk %d", seed) << seed << 1;
        }
    }

    void answersEqualTheDisksThroughAnyMoves()
    {
        QFETCH(int, seed);
        QFETCH(int, announced);
        std::mt19937 random(static_cast<unsigned>(seed));
        const auto oneOf = [&random](const QStringList &list) {
            return list.at(static_cast<qsizetype>(random() % static_cast<unsigned>(list.size())));
        };
        // Names whose dots and numbers can be read in more than one way.
        const QStringList bases{u"a"_s,     u"a-1"_s,     u"a-2"_s, u"a.b"_s,
                                u"a.b-1"_s, u"a.b-1.c"_s, u""_s};
        const QStringList extensions{u""_s, u"c"_s, u"b"_s, u"b-1.c"_s, u"c-1"_s};
        TemporaryTree tree;
        for (int i = 0; i < 40; ++i)
            tree.file(u"start-%1"_s.arg(i));
        const TFolderPtr folder = folderOf(tree);
        DiskFileManager disk;
        FileMover mover(disk);
        FolderPicture picture(disk);
        picture.announce(folder, announced);
        int moves = 0;
        for (int round = 0; round < 1500; ++round) {
            const QString base = oneOf(bases);
            const QString extension = oneOf(extensions);
            const QString unique = picture.uniqueBase(*folder, base, extension);
            QCOMPARE(unique, uniqueOnDisk(*folder, base, extension));
            const QString from = oneOf(tree.list());
            const QString to = extension.isEmpty() ? unique : unique + u'.' + extension;
            if (mover.move(*folder, from, to).ok()) {
                picture.moved(*folder, from, to);
                ++moves;
            }
            QVERIFY(picture.exists(*folder, from) == tree.exists(from));
        }
        QVERIFY(moves > 500);
    }

    void movesCountBeforeTheDiskHasThem_data()
    {
        const Table<int> row("announced");
        row("read whole", 2);
        row("asked on the disk", 1);
    }

    void movesCountBeforeTheDiskHasThem()
    {
        QFETCH(int, announced);
        TemporaryTree tree;
        tree.file(u"a.x"_s);
        tree.file(u"b.x"_s);
        const TFolderPtr folder = folderOf(tree);
        DiskFileManager disk;
        FolderPicture picture(disk);
        picture.announce(folder, announced);
        QCOMPARE(picture.uniqueBase(*folder, u"b"_s, u"x"_s), u"b-1"_s);
        picture.moved(*folder, u"a.x"_s, u"b-1.x"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"b"_s, u"x"_s), u"b-2"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"a"_s, u"x"_s), u"a"_s);
        picture.moved(*folder, u"b.x"_s, u"a.x"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"b"_s, u"x"_s), u"b"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"a"_s, u"x"_s), u"a-1"_s);
        picture.moved(*folder, u"a.x"_s, u"a.x"_s);
        QVERIFY(picture.exists(*folder, u"a.x"_s));
    }

    void oneReadServesAFolder()
    {
        TemporaryTree tree;
        for (int i = 0; i < 100; ++i)
            tree.file(u"f%1.x"_s.arg(i));
        FaultyFileManager disk;
        FolderPicture picture(disk);
        for (int i = 0; i < 100; ++i)
            picture.announce(folderOf(tree)); // everybody's own object for the same folder
        const TFolderPtr folder = folderOf(tree);
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(picture.uniqueBase(*folder, u"n"_s, u"x"_s),
                     i == 0 ? u"n"_s : u"n-%1"_s.arg(i));
            picture.moved(*folder, u"f%1.x"_s.arg(i), i == 0 ? u"n.x"_s : u"n-%1.x"_s.arg(i));
        }
        QCOMPARE(disk.count(Call::List), 1);
        QVERIFY(disk.count(Call::Status) <= 3);
    }

    void aLinkedFolderIsTheSameFolder()
    {
        TemporaryTree tree;
        tree.file(u"real/a.x"_s);
        tree.file(u"real/b.x"_s);
        tree.link(u"real"_s, u"other"_s);
        DiskFileManager disk;
        FolderPicture picture(disk);
        const TFolderPtr real = folderOf(tree, u"real"_s);
        const TFolderPtr other = folderOf(tree, u"other"_s);
        picture.announce(real);
        picture.announce(folderOf(tree));
        picture.announce(other);
        QCOMPARE(picture.uniqueBase(*other, u"c"_s, u"x"_s), u"c"_s);
        picture.moved(*real, u"a.x"_s, u"c.x"_s);
        QCOMPARE(picture.uniqueBase(*other, u"c"_s, u"x"_s), u"c-1"_s);
    }

    void caseBlindFoldersAreAskedOnTheDisk()
    {
        TemporaryTree tree;
        tree.file(u"a.x"_s);
        tree.file(u"b.x"_s);
        tree.file(u"Q.X"_s);
        const TFolderPtr folder = folderOf(tree);
        FaultyFileManager disk;
        disk.ignoreCase();
        FolderPicture picture(disk);
        picture.announce(folder, 2);
        QCOMPARE(picture.uniqueBase(*folder, u"A"_s, u"X"_s), u"A-1"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"q"_s, u"x"_s), u"q-1"_s);
        picture.moved(*folder, u"b.x"_s, u"A-1.X"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"a"_s, u"x"_s), u"a-2"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"B"_s, u"x"_s), u"B"_s);
        picture.moved(*folder, u"a.x"_s, u"A.X"_s);
        QVERIFY(picture.exists(*folder, u"a.x"_s));
    }

    void foldersThatCannotBeListedAreAskedOnTheDisk()
    {
        TemporaryTree tree;
        tree.file(u"a.x"_s);
        FaultyFileManager disk;
        disk.fail(Call::List, EACCES);
        FolderPicture picture(disk);
        const TFolderPtr folder = folderOf(tree);
        picture.announce(folder, 5);
        QCOMPARE(picture.uniqueBase(*folder, u"a"_s, u"x"_s), u"a-1"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"b"_s, u"x"_s), u"b"_s);
        QCOMPARE(disk.count(Call::List), 1);
    }

    void otherFoldersNamesAreNotRemembered()
    {
        TemporaryTree tree;
        tree.file(u"d/i.x"_s);
        DiskFileManager disk;
        FolderPicture picture(disk);
        const TFolderPtr folder = folderOf(tree);
        picture.announce(folder, 2);
        picture.taken(*folder, u"n.x"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"n"_s, u"x"_s), u"n-1"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"d/i"_s, u"x"_s), u"d/i-1"_s);
        tree.remove(u"d/i.x"_s);
        QCOMPARE(picture.uniqueBase(*folder, u"d/i"_s, u"x"_s), u"d/i"_s);
    }

    void freedNumbersDoNotStartTheCountAgain()
    {
        // Each round frees the lowest number and then needs two: the freed one, and one at the far
        // end.
        TemporaryTree tree;
        const TFolderPtr folder = folderOf(tree);
        DiskFileManager disk;
        FolderPicture picture(disk);
        picture.announce(folder, 2);
        constexpr int kNames = 30'000;
        picture.taken(*folder, u"n.x"_s);
        for (int i = 1; i < kNames; ++i)
            picture.taken(*folder, u"n-%1.x"_s.arg(i));
        QElapsedTimer timer;
        timer.start();
        const QString freed = u"n-1.x"_s;
        for (int i = 0; i < kNames; ++i) {
            picture.moved(*folder, freed, u"away-%1"_s.arg(i));
            QCOMPARE(picture.uniqueBase(*folder, u"n"_s, u"x"_s), u"n-1"_s);
            picture.moved(*folder, u"p%1"_s.arg(i), freed);
            const QString unique = picture.uniqueBase(*folder, u"n"_s, u"x"_s);
            QCOMPARE(unique, u"n-%1"_s.arg(kNames + i));
            picture.moved(*folder, u"q%1"_s.arg(i), unique + u".x"_s);
        }
        // Counting from the start every time would be a billion tests.
        QVERIFY(timer.elapsed() < 20'000);
    }

    void changeability()
    {
        TemporaryTree tree;
        FaultyFileManager disk;
        FolderPicture picture(disk);
        QCOMPARE(picture.errorOfChanging(*folderOf(tree)), 0);
        QCOMPARE(picture.errorOfChanging(*folderOf(tree, u"missing"_s)), ENOENT);
        const TFolderPtr closed = folderOf(tree, u"closed"_s);
        disk.fail(Call::Access, EACCES, FaultyFileManager::kAlways, closed->bytes());
        tree.folder(u"closed"_s);
        QCOMPARE(picture.errorOfChanging(*closed), EACCES);
        QCOMPARE(picture.errorOfChanging(*closed), EACCES);
        QCOMPARE(disk.count(Call::Access), 3);
    }
};

QTEST_GUILESS_MAIN(TestFolderPicture)
#include "tst_folderpicture.moc"
