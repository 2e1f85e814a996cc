// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/easyfile.h"
#include "settings/logging.h"
#include "support/FaultyFileManager.h"
#include "support/TemporaryTree.h"

#include <QRegularExpression>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;
using Call = FaultyFileManager::Call;
using Way = TMoveResult::Way;

namespace {

/// A disk on which two spellings of a name are one directory entry, as on a memory card.
class CaseBlindDisk : public FaultyFileManager
{
public:
    int status(int folder, const QByteArray &name, bool followLink, TFileStatus &out) override
    {
        const int error = FaultyFileManager::status(folder, name, followLink, out);
        return error == ENOENT ? FaultyFileManager::status(folder, name.toLower(), followLink, out)
                               : error;
    }
    int renameNoReplace(int folder, const QByteArray &from, const QByteArray &to) override
    {
        TFileStatus ignored;
        return status(folder, to, false, ignored) == 0
                   ? EEXIST
                   : FaultyFileManager::renameNoReplace(folder, from, to);
    }
};

} // namespace

class TestEasyfile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void moves_data();
    void moves();
    void refusedNames_data();
    void refusedNames();
    void theLongestNameIsPossible();
    void fallbacks_data();
    void fallbacks();
    void targetAppearsDuringAFallback_data();
    void targetAppearsDuringAFallback();
    void aLinkThatCannotBeFinishedIsTakenBack();
    void unguardedMovesAreLoggedOnceAFolder();
    void onlyTheSpellingChanges();
    void aSpellingThatCannotChangeIsTakenBack();
    void aHardLinkedTwinIsTaken();
    void foldersStayOpenUpToALimit();
    void aFolderThatIsMovedMeanwhileIsStillTheSame();
    void textsNameWhatToDo();
};

void TestEasyfile::moves_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<Way>("way");
    QTest::addColumn<int>("error");
    QTest::addColumn<QStringList>("after");
    const auto list = [](const QString &text) { return text.split(u' '); };
    QTest::newRow("free name") << u"a"_s << u"z"_s << Way::Guarded << 0
                               << list(u"b d/ d/e dangling z"_s);
    QTest::newRow("taken name") << u"a"_s << u"b"_s << Way::Failed << EEXIST << QStringList();
    QTest::newRow("taken by a folder")
        << u"a"_s << u"d"_s << Way::Failed << EEXIST << QStringList();
    QTest::newRow("taken by a dangling link")
        << u"a"_s << u"dangling"_s << Way::Failed << EEXIST << QStringList();
    QTest::newRow("itself") << u"a"_s << u"a"_s << Way::Itself << 0 << QStringList();
    QTest::newRow("missing") << u"x"_s << u"z"_s << Way::Failed << ENOENT << QStringList();
    QTest::newRow("missing itself") << u"x"_s << u"x"_s << Way::Failed << ENOENT << QStringList();
    QTest::newRow("a link moves itself")
        << u"dangling"_s << u"z"_s << Way::Guarded << 0 << list(u"a b d/ d/e z"_s);
    QTest::newRow("a folder") << u"d"_s << u"z"_s << Way::Guarded << 0
                              << list(u"a b dangling z/ z/e"_s);
    QTest::newRow("raw bytes") << u"a"_s << u"\xDCE4"_s << Way::Guarded << 0
                               << list(u"b d/ d/e dangling \xDCE4"_s);
}

void TestEasyfile::moves()
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

void TestEasyfile::refusedNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("dot") << u"."_s;
    QTest::newRow("dots") << u".."_s;
    QTest::newRow("other folder") << u"../a"_s;
    QTest::newRow("slash") << u"a/b"_s;
    QTest::newRow("NUL") << u"z\0"_s;
    QTest::newRow("256 bytes") << QString(256, u'a');
    QTest::newRow("256 bytes of umlauts") << QString(128, QChar(0xE4));
    QTest::newRow("258 bytes of emoji") << u"ab"_s + u"\U0001F600"_s.repeated(64);
}

void TestEasyfile::refusedNames()
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

void TestEasyfile::theLongestNameIsPossible()
{
    TemporaryTree tree;
    tree.file(u"a"_s);
    const QString name = u"\u20AC"_s.repeated(85); // 255 bytes
    DiskFileManager disk;
    QCOMPARE(FileMover(disk).move(TFolder(tree.path()), u"a"_s, name).way, Way::Guarded);
    QCOMPARE(tree.list(), QStringList{name});
}

void TestEasyfile::fallbacks_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<int>("renameError"); ///< of the guarded rename
    QTest::addColumn<int>("linkError");
    QTest::addColumn<Way>("way");
    QTest::addColumn<int>("error");
    QTest::newRow("link, no flags") << u"a"_s << u"z"_s << EINVAL << 0 << Way::Linked << 0;
    QTest::newRow("link, no call") << u"a"_s << u"z"_s << ENOSYS << 0 << Way::Linked << 0;
    QTest::newRow("link, not supported") << u"a"_s << u"z"_s << ENOTSUP << 0 << Way::Linked << 0;
    QTest::newRow("link of a link") << u"l"_s << u"z"_s << EINVAL << 0 << Way::Linked << 0;
    QTest::newRow("link, taken") << u"a"_s << u"b"_s << EINVAL << 0 << Way::Failed << EEXIST;
    QTest::newRow("link, taken by a dangling link")
        << u"a"_s << u"l"_s << EINVAL << 0 << Way::Failed << EEXIST;
    QTest::newRow("no links") << u"a"_s << u"z"_s << EINVAL << EPERM << Way::Unguarded << 0;
    QTest::newRow("no links, taken")
        << u"a"_s << u"b"_s << EINVAL << EPERM << Way::Failed << EEXIST;
    QTest::newRow("no links, taken by a dangling link")
        << u"a"_s << u"l"_s << EINVAL << ENOTSUP << Way::Failed << EEXIST;
    QTest::newRow("folder") << u"d"_s << u"z"_s << EINVAL << 0 << Way::Unguarded << 0;
    QTest::newRow("folder, taken by an empty one")
        << u"d"_s << u"empty"_s << EINVAL << 0 << Way::Failed << EEXIST;
    QTest::newRow("missing") << u"x"_s << u"z"_s << EINVAL << 0 << Way::Failed << ENOENT;
    QTest::newRow("disk full") << u"a"_s << u"z"_s << ENOSPC << 0 << Way::Failed << ENOSPC;
    QTest::newRow("no permission") << u"a"_s << u"z"_s << EACCES << 0 << Way::Failed << EACCES;
    QTest::newRow("link, disk full")
        << u"a"_s << u"z"_s << EINVAL << ENOSPC << Way::Failed << ENOSPC;
}

void TestEasyfile::fallbacks()
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

void TestEasyfile::targetAppearsDuringAFallback_data()
{
    QTest::addColumn<bool>("canLink");
    QTest::newRow("before the link") << true;
    QTest::newRow("after the link failed") << false;
}

void TestEasyfile::targetAppearsDuringAFallback()
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

void TestEasyfile::aLinkThatCannotBeFinishedIsTakenBack()
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

void TestEasyfile::unguardedMovesAreLoggedOnceAFolder()
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

void TestEasyfile::onlyTheSpellingChanges()
{
    TemporaryTree tree;
    tree.file(u"photo"_s, "P");
    tree.file(u"other"_s, "O");
    CaseBlindDisk disk;
    FileMover mover(disk);
    const TFolder folder(tree.path());
    QCOMPARE(mover.move(folder, u"other"_s, u"PHOTO"_s).error, EEXIST);
    QVERIFY(mover.move(folder, u"photo"_s, u"PHOTO"_s).ok());
    QCOMPARE(tree.list(), (QStringList{u"PHOTO"_s, u"other"_s}));
    QCOMPARE(tree.content(u"PHOTO"_s), "P");
}

void TestEasyfile::aSpellingThatCannotChangeIsTakenBack()
{
    TemporaryTree tree;
    tree.file(u"photo"_s, "P");
    CaseBlindDisk disk;
    disk.before(Call::RenameNoReplace, [&disk] {
        // The first step succeeds; the second one finds the disk full.
        disk.before(Call::RenameNoReplace,
                    [&disk] { disk.fail(Call::RenameNoReplace, ENOSPC, 1); });
    });
    const TMoveResult result = FileMover(disk).move(TFolder(tree.path()), u"photo"_s, u"PHOTO"_s);
    QCOMPARE(result.error, ENOSPC);
    QCOMPARE(result.text, textForErrno(ENOSPC));
    QCOMPARE(tree.list(), QStringList{u"photo"_s});
}

void TestEasyfile::aHardLinkedTwinIsTaken()
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

void TestEasyfile::foldersStayOpenUpToALimit()
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

void TestEasyfile::aFolderThatIsMovedMeanwhileIsStillTheSame()
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

void TestEasyfile::textsNameWhatToDo()
{
    QVERIFY(textForErrno(EACCES).contains("permission"_L1));
    QVERIFY(textForErrno(ENOSPC).contains("Free some space"_L1));
    QVERIFY(textForErrno(EEXIST).contains("taken"_L1));
    QCOMPARE(textForErrno(ECHILD), u"The system says: No child processes."_s);
    QCOMPARE(textForErrno(99999), u"The system reports error 99999."_s);
}

QTEST_GUILESS_MAIN(TestEasyfile)
#include "tst_easyfile.moc"
