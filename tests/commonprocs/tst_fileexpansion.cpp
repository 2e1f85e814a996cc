// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "commonprocs/FileExpansion.h"
#include "support/FaultyFileManager.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QDir>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using Call = FaultyFileManager::Call;

namespace {

QStringList found(const FileExpansion &expansion, const TemporaryTree &tree)
{
    QStringList paths;
    for (const TFileItem &item : expansion.files())
        paths.append(item.url.path().mid(tree.path().size() + 1));
    return paths;
}

QStringList words(const QString &text)
{
    return text.split(u' ', Qt::SkipEmptyParts);
}

} // namespace

class TestFileExpansion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void expands_data()
    {
        Table<QStringList, QStringList>("paths", "files");
        const QString all = u"B a.txt d/1 d/10 d/2 d/e/f l lf lloop x.app z\u00E4 z\xDCE4"_s;
        const auto row = [](const char *name, const QString &paths, const QString &files) {
            QTest::newRow(name) << paths.split(u' ') << words(files);
        };
        row("everything", u"."_s, all);
        row("order given", u"d/2 a.txt d/1"_s, u"d/2 a.txt d/1"_s);
        row("hidden file named", u".h"_s, u".h"_s);
        row("hidden folder named", u".hd"_s, u".hd/f"_s);
        row("twice", u"a.txt a.txt d d"_s, u"a.txt d/1 d/10 d/2 d/e/f"_s);
        row("file, then its folder", u"d/2 d"_s, u"d/2 d/1 d/10 d/e/f"_s);
        row("folder, then its file", u"d d/2 d/e/f"_s, u"d/1 d/10 d/2 d/e/f"_s);
        row("inner folder, then the outer", u"d/e d"_s, u"d/e/f d/1 d/10 d/2"_s);
        row("outer folder, then the inner", u"d d/e"_s, u"d/1 d/10 d/2 d/e/f"_s);
        row("folder, then its hidden file", u"d d/.i"_s, u"d/1 d/10 d/2 d/e/f d/.i"_s);
        row("link to a file", u"lf"_s, u"lf"_s);
        row("link to a folder is one item", u"l l/"_s, u"l"_s);
        row("through a link, another path", u"l/2 d"_s, u"l/2 d/1 d/10 d/2 d/e/f"_s);
        row("link in a circle", u"lloop"_s, u"lloop"_s);
        row("application", u"x.app"_s, u"x.app"_s);
        row("inside an application", u"x.app/Contents"_s, u"x.app/Contents/i"_s);
        row("application, then what is inside", u"x.app x.app/Contents/i"_s,
            u"x.app x.app/Contents/i"_s);
        row("raw bytes", u"z\xDCE4"_s, u"z\xDCE4"_s);
        row("empty folder", u"empty"_s, u""_s);
    }

    void expands()
    {
        QFETCH(QStringList, paths);
        TemporaryTree tree;
        for (const QString &name :
             words(u"a.txt B .h d/1 d/2 d/10 d/.i d/e/f .hd/f z\u00E4 z\xDCE4 "
                   "x.app/Contents/i"_s))
            tree.file(name);
        tree.folder(u"empty"_s);
        tree.link(u"d"_s, u"l"_s);
        tree.link(u"a.txt"_s, u"lf"_s);
        tree.link(u"lloop"_s, u"lloop"_s);
        DiskFileManager disk;
        FileExpansion expansion(disk);
        for (const QString &path : paths)
            expansion.add(tree.path() + u'/' + path);
        QTEST(found(expansion, tree), "files");
        QVERIFY(expansion.problems().empty());
    }

    void namesComeInTheOrderOfTheirBytes()
    {
        TemporaryTree tree;
        QStringList expected{u"short"_s, u"\u00E4"_s, u"\xDCE4"_s}; // C3 A4, then E4
        for (int i = 0; i < 50; ++i)
            expected.append(u"the same long beginning %1"_s.arg(i));
        for (const QString &name : expected)
            tree.file(name);
        std::ranges::sort(expected, {},
                          [](const QString &name) { return ByteNames::toBytes(name); });
        DiskFileManager disk;
        FileExpansion expansion(disk);
        expansion.add(tree.path());
        QCOMPARE(found(expansion, tree), expected);
    }

    void spellings_data()
    {
        const Table<QString, QString> row("path", "file");
        row("slashes", u"//d///f", u"d/f");
        row("slash after a file", u"d/f/", u"d/f");
        row("dot", u"./d/./f", u"d/f");
        row("dot keeps links", u"l/./f", u"l/f");
        row("dots", u"d/../d/f", u"d/f");
        row("dots behind a link lead where the link leads", u"l/../g", u"far/g");
        row("links behind the dots stay", u"d/../l/f", u"l/f");
        row("dot at the end opens a link", u"l/.", u"far/away/f");
        row("dots at the end", u"far/away/sub/..", u"far/away/f");
        row("names that begin with dots", u"..d/...f", u"..d/...f");
    }

    void spellings()
    {
        QFETCH(QString, path);
        TemporaryTree tree;
        for (const QString &name : words(u"d/f far/away/f far/g ..d/...f"_s))
            tree.file(name);
        tree.folder(u"far/away/sub"_s);
        tree.link(u"far/away"_s, u"l"_s);
        DiskFileManager disk;
        FileExpansion expansion(disk);
        expansion.add(tree.path() + u'/' + path);
        QFETCH(QString, file);
        QCOMPARE(found(expansion, tree), QStringList{file});
    }

    void relativePathsStandInTheCurrentFolder()
    {
        TemporaryTree tree;
        tree.file(u"d/f"_s);
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(tree.path(u"d"_s)));
        DiskFileManager disk;
        FileExpansion expansion(disk);
        for (const QString &path : {u"f"_s, u"."_s, u"../d/f"_s, u".."_s})
            expansion.add(path);
        QDir::setCurrent(before);
        QCOMPARE(found(expansion, tree), QStringList{u"d/f"_s});
    }

    void nothingStandsInARemovedFolder()
    {
        TemporaryTree tree;
        tree.file(u"d/f"_s);
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(tree.path(u"d"_s)));
        QVERIFY(QDir(tree.path(u"d"_s)).removeRecursively());
        DiskFileManager disk;
        FileExpansion expansion(disk);
        expansion.add(u"."_s);
        expansion.add(u"etc"_s);
        const bool isValid = TFileURL::fileURLWithPath(u"etc"_s).isValid();
        QDir::setCurrent(before);
        QVERIFY(expansion.files().empty() && !isValid);
        QCOMPARE(expansion.problems().size(), 2U);
    }

    void factsAreTheItemsOwn()
    {
        TemporaryTree tree;
        const QString path = tree.file(u"a"_s, "12345");
        tree.hardLink(u"a"_s, u"b"_s);
        tree.link(u"a"_s, u"l"_s);
        const timespec times[2] = {{1'000'000'000, 0}, {1'234'567'890, 500'000'000}};
        QCOMPARE(utimensat(AT_FDCWD, ByteNames::toBytes(path).constData(), times, 0), 0);
        struct stat status
        {
        };
        QCOMPARE(lstat(ByteNames::toBytes(path).constData(), &status), 0);
        DiskFileManager disk;
        FileExpansion expansion(disk);
        expansion.add(tree.path());
        QCOMPARE(found(expansion, tree), words(u"a b l"_s));
        const TFileFacts &file = expansion.files()[0].facts;
        const TFileFacts &twin = expansion.files()[1].facts;
        const TFileFacts &link = expansion.files()[2].facts;
        QCOMPARE(file.size, 5);
        QCOMPARE(file.modification, TDate::fromSeconds(1'234'567'890, 500'000'000));
        QCOMPARE(file.device, status.st_dev);
        QCOMPARE(file.inode, status.st_ino);
        QCOMPARE(file.links, 2U);
        QVERIFY(file.hasBirthTime ? file.creation > file.modification
                                  : file.creation == file.modification);
        QCOMPARE(twin.inode, file.inode);
        QVERIFY(link.inode != file.inode);
        QCOMPARE(link.kind, TFileStatus::Kind::Link);
        QCOMPARE(link.size, 1);
    }

    void identities_data()
    {
        const Table<QByteArray, bool, QStringList, int> row("fault", "inFuture", "whole", "asked");
        // Asked about: the path, the folder, and what has two names in it.
        row("inodes tell", "", false, {u"a"_s, u"b"_s, u"c"_s}, 5);
        row("birth times are not to be relied on", "", true,
            {u"a"_s, u"b"_s, u"c"_s, u"l"_s, u"x"_s}, 7);
        row("the folder cannot be asked", ".", false, {u"a"_s, u"b"_s, u"c"_s, u"l"_s, u"x"_s}, 7);
    }

    void identities()
    {
        QFETCH(QByteArray, fault);
        QFETCH(bool, inFuture);
        TemporaryTree tree;
        for (const QString &name : words(u"a c x"_s))
            tree.file(name, "12345");
        tree.hardLink(u"a"_s, u"b"_s);
        tree.hardLink(u"c"_s, u".twin of c"_s);
        tree.link(u"a"_s, u"l"_s);
        if (inFuture) {
            const timespec times[2] = {{4'000'000'000, 0}, {4'000'000'000, 0}};
            QCOMPARE(utimensat(AT_FDCWD, ByteNames::toBytes(tree.path()).constData(), times, 0), 0);
        }
        FaultyFileManager disk;
        if (!fault.isEmpty())
            disk.fail(Call::Status, EACCES, FaultyFileManager::kAlways, fault);
        FileExpansion expansion(disk, FileExpansion::Detail::Identity);
        expansion.add(tree.path());
        QCOMPARE(found(expansion, tree), words(u"a b c l x"_s));
        QStringList whole;
        for (const TFileItem &item : expansion.files()) {
            TFileStatus status;
            disk.status(AT_FDCWD, item.url.fileSystemPath(), false, status);
            QCOMPARE(item.facts.device, status.device);
            QCOMPARE(item.facts.inode, status.inode);
            QCOMPARE(item.facts.kind, status.kind);
            if (item.facts.areWhole)
                whole += item.url.lastPathComponent();
        }
        QTEST(whole, "whole");
        QTEST(disk.count(Call::Status) - 5, "asked");
    }

    void problemsLeaveTheOthersAlone_data()
    {
        const Table<QString, QString> row("path", "word");
        row("missing", u"missing", u"spelling");
        row("missing folder", u"missing/f", u"spelling");
        row("below a file", u"a/f", u"spelling");
        row("dots behind nothing", u"missing/../a", u"spelling");
        row("links in a circle", u"loop/a", u"circle");
        row("name too long", QString(256, u'x'), u"too long");
        row("path too long", u"x/"_s.repeated(3000), u"too long");
        row("NUL", u"a\0", u"spelling");
    }

    void problemsLeaveTheOthersAlone()
    {
        QFETCH(QString, path);
        QFETCH(QString, word);
        TemporaryTree tree;
        tree.file(u"a"_s);
        tree.link(u"loop"_s, u"loop"_s);
        DiskFileManager disk;
        FileExpansion expansion(disk);
        expansion.add(tree.path() + u'/' + path);
        expansion.add(tree.path(u"a"_s));
        QCOMPARE(found(expansion, tree), QStringList{u"a"_s});
        QCOMPARE(expansion.problems().size(), std::size_t{1});
        const FileExpansion::Problem &problem = expansion.problems().front();
        QCOMPARE(problem.path, QString(tree.path() + u'/' + path));
        QVERIFY2(problem.text.contains(word), qPrintable(problem.text));
        QVERIFY(!problem.text.contains(tree.path()));
    }

    void listingsThatTellNoKind()
    {
        class SilentDisk : public FaultyFileManager
        {
            int list(
                int folder,
                const std::function<void(const char *, TFileStatus::Kind, quint64)> &entry) override
            {
                return FaultyFileManager::list(
                    folder, [&entry](const char *name, TFileStatus::Kind, quint64 inode) {
                        entry(name, TFileStatus::Kind::Other, inode);
                    });
            }
        };
        TemporaryTree tree;
        for (const QString &name : words(u"a d/f x.bundle/i"_s))
            tree.file(name);
        tree.link(u"d"_s, u"l"_s);
        QCOMPARE(mkfifo(ByteNames::toBytes(tree.path(u"pipe"_s)).constData(), 0600), 0);
        SilentDisk disk;
        FileExpansion expansion(disk);
        expansion.add(tree.path());
        QCOMPARE(found(expansion, tree), words(u"a d/f l pipe x.bundle"_s));
        QCOMPARE(disk.count(Call::Status), 7); // one each, and the path that was named
    }

    void aFolderThatCannotBeReadIsPassedOver()
    {
        TemporaryTree tree;
        for (const QString &name : words(u"a closed/f d/f"_s))
            tree.file(name);
        FaultyFileManager disk;
        disk.fail(Call::List, EACCES, 1, ByteNames::toBytes(tree.path(u"closed"_s)));
        disk.fail(Call::Status, EIO, 1, "a");
        FileExpansion expansion(disk);
        expansion.add(tree.path());
        QCOMPARE(found(expansion, tree), QStringList{u"d/f"_s});
        QCOMPARE(expansion.problems().size(), std::size_t{2});
        QCOMPARE(expansion.problems()[1].path, tree.path(u"closed"_s));
        QVERIFY(expansion.problems()[1].text.contains("permission to read"_L1));
        // What could not be listed can still be named.
        expansion.add(tree.path(u"closed/f"_s));
        QCOMPARE(found(expansion, tree), words(u"d/f closed/f"_s));
        QCOMPARE(disk.openFolders(), 0);
    }

    void aFileThatGoesMeanwhileIsNoProblem()
    {
        TemporaryTree tree;
        for (const QString &name : words(u"a b c"_s))
            tree.file(name);
        FaultyFileManager disk;
        disk.before(
            Call::Status, [&tree] { tree.remove(u"b"_s); }, "b");
        FileExpansion expansion(disk);
        expansion.add(tree.path());
        QCOMPARE(found(expansion, tree), words(u"a c"_s));
        QVERIFY(expansion.problems().empty());
    }

    void deepTreesKeepFewFoldersOpen()
    {
        TemporaryTree tree;
        QString folder = u"d"_s;
        QStringList expected;
        for (int depth = 0; depth < 400; ++depth) {
            if (depth % 50 == 0) {
                expected.append(folder + u"/z"_s);
                tree.file(folder + u"/z"_s);
            }
            folder += u"/d"_s;
        }
        tree.file(folder + u"/f"_s);
        expected.prepend(folder + u"/f"_s);
        std::reverse(expected.begin() + 1, expected.end()); // "d" stands before "z"
        FaultyFileManager disk;
        int mostOpen = 0;
        FileExpansion expansion(disk);
        const auto look = [&] { mostOpen = std::max(mostOpen, disk.openFolders()); };
        disk.before(Call::Status, look, "f"); // at the very bottom
        expansion.add(tree.path());
        QCOMPARE(found(expansion, tree), expected);
        QVERIFY(expansion.problems().empty());
        QVERIFY(mostOpen > 1 && mostOpen <= 32);
        QCOMPARE(disk.openFolders(), 0);
    }

    void filesOfAFolderShareIt()
    {
        TemporaryTree tree;
        for (const QString &name : words(u"d/1 d/2 d/3 e/1"_s))
            tree.file(name);
        DiskFileManager disk;
        FileExpansion expansion(disk);
        for (const QString &name : words(u"d/1 e/1 d/2 d"_s))
            expansion.add(tree.path(name));
        QCOMPARE(found(expansion, tree), words(u"d/1 e/1 d/2 d/3"_s));
        const std::vector<TFileItem> &files = expansion.files();
        QCOMPARE(files[2].url.folder(), files[0].url.folder());
        QCOMPARE(files[3].url.folder(), files[0].url.folder());
    }

    void progressAndStop()
    {
        TemporaryTree tree;
        for (int i = 0; i < 2500; ++i)
            tree.file(QString::number(i));
        DiskFileManager disk;
        FileExpansion expansion(disk);
        std::stop_source stop;
        QList<qsizetype> steps;
        expansion.setProgress([&](qsizetype count) {
            steps.append(count);
            if (count == 2000)
                stop.request_stop();
        });
        expansion.add(tree.path(), stop.get_token());
        QCOMPARE(steps, (QList<qsizetype>{1000, 2000}));
        QCOMPARE(expansion.files().size(), std::size_t{2000});
    }
};

QTEST_GUILESS_MAIN(TestFileExpansion)
#include "tst_fileexpansion.moc"
