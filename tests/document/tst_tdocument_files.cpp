// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentDrag.h"
#include "support/DocumentFixture.h"
#include "support/Table.h"

#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// Too many for a drop to be over while a test looks away.
constexpr int kManyFiles = 20'000;

using Action = std::function<void(DocumentFixture &)>;

void rename(const TemporaryTree &tree, const QString &from, const QString &to)
{
    QCOMPARE(std::rename(qPrintable(tree.path(from)), qPrintable(tree.path(to))), 0);
}

/// What a table that follows the signals shows; empty once it differs from the document.
class Follower : public QObject
{
public:
    explicit Follower(TDocument &document)
        : m_document(document)
    {
        using D = TDocument;
        connect(&document, &D::filesAboutToBeInserted, this,
                [this](qsizetype first, qsizetype last) {
                    m_rows.insert(m_rows.begin() + first,
                                  static_cast<std::size_t>(last - first + 1), {});
                    m_first = first;
                });
        connect(&document, &D::filesInserted, this, [this] {
            for (std::size_t row = 0; row < m_rows.size(); ++row)
                if (!m_rows[row])
                    m_rows[row] = m_document.sourceObjectArray()[row];
        });
        connect(&document, &D::filesAboutToBeRemoved, this,
                [this](qsizetype first, qsizetype last) {
                    m_rows.erase(m_rows.begin() + first, m_rows.begin() + last + 1);
                });
        connect(&document, &D::filesReordered, this, [this](const std::vector<qsizetype> &newRows) {
            TFileList rows(m_rows.size());
            for (std::size_t old = 0; old < newRows.size(); ++old)
                rows[static_cast<std::size_t>(newRows[old])] = m_rows[old];
            m_rows = rows;
        });
        connect(&document, &D::filesReplaced, this,
                [this] { m_rows = m_document.sourceObjectArray(); });
    }
    bool agrees() const { return m_rows == m_document.sourceObjectArray(); }

private:
    TDocument &m_document;
    TFileList m_rows;
    qsizetype m_first = 0;
};

} // namespace

class TestTDocumentFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newDocument();
    void drops_data();
    void drops();
    void whatCannotBeAdded_data();
    void whatCannotBeAdded();
    void dropsOfTheSameFile_data();
    void dropsOfTheSameFile();
    void dropStatuses();
    void pasteboards();
    void edits_data();
    void edits();
    void sorts_data();
    void sorts();
    void search_data();
    void search();
    void editsDuringADrop();
    void undoDuringADrop();
    void namedOperations();
};

void TestTDocumentFiles::newDocument()
{
    const DocumentFixture fixture;
    TDocument &document = *fixture.document;
    QCOMPARE(fixture.host.title, u"Tavrin 10"_s);
    QCOMPARE(fixture.host.status, u"Idle. Files: 0"_s);
    QVERIFY(document.myUUID().startsWith("Doc"_L1));
    QVERIFY(document.liveUpdate() && document.colorCode() && !document.readyToGo());
    QCOMPARE(document.theOptions(), TOptions());
    QVERIFY(!document.errorLog());
    QStringList reasons;
    for (const auto &impossible : {std::function([&] { document.dataOfType({}); }),
                                   std::function([&] { document.readFromData({}, {}); })}) {
        try {
            impossible();
        } catch (const TUnimplementedMethod &raised) {
            reasons += QString::fromUtf8(raised.what());
        }
    }
    QCOMPARE(reasons, (QStringList{u"dataOfType:error: is unimplemented"_s,
                                   u"readFromData:ofType:error: is unimplemented"_s}));
}

void TestTDocumentFiles::drops_data()
{
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("second");
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("names");
    const QStringList abc{u"f/a.x"_s, u"f/b.x"_s, u"f/c.x"_s};
    const QStringList all{u"a.x"_s, u"b.x"_s, u"c.x"_s};
    QTest::newRow("nothing") << QStringList() << QStringList() << 0 << QStringList();
    QTest::newRow("a folder") << QStringList{u"f"_s} << QStringList() << 0 << all;
    QTest::newRow("the same folder twice")
        << QStringList{u"f"_s, u"f"_s} << QStringList{u"f"_s} << 0 << all;
    QTest::newRow("a folder and a file in it") << QStringList{u"f/b.x"_s, u"f"_s} << QStringList()
                                               << 0 << QStringList{u"b.x"_s, u"a.x"_s, u"c.x"_s};
    QTest::newRow("between rows, in drop order")
        << abc << QStringList{u"g/2"_s, u"g/1"_s} << 2
        << QStringList{u"a.x"_s, u"b.x"_s, u"2"_s, u"1"_s, u"c.x"_s};
    QTest::newRow("beyond the end")
        << QStringList{u"f/a.x"_s} << QStringList{u"g/1"_s} << 99 << QStringList{u"a.x"_s, u"1"_s};
    QTest::newRow("a missing file")
        << QStringList{u"f/no"_s, u"f/a.x"_s} << QStringList() << 0 << QStringList{u"a.x"_s};
    QTest::newRow("a loop of links")
        << QStringList{u"loop"_s} << QStringList() << 0 << QStringList{u"a"_s, u"self"_s};
    QTest::newRow("a device") << QStringList{u"/dev/null"_s} << QStringList() << 0
                              << QStringList{u"null"_s};
    QTest::newRow("an application and hidden files")
        << QStringList{u"h"_s, u"h/.named"_s} << QStringList() << 0
        << QStringList{u"T.app"_s, u".named"_s};
}

void TestTDocumentFiles::drops()
{
    QFETCH(const QStringList, first);
    QFETCH(const QStringList, second);
    QFETCH(const int, row);
    DocumentFixture fixture;
    for (const auto &name : {u"f/a.x"_s, u"f/b.x"_s, u"f/c.x"_s, u"g/1"_s, u"g/2"_s, u"loop/a"_s,
                             u"h/.named"_s, u"h/.other"_s, u"h/T.app/inside"_s})
        fixture.tree.file(name);
    fixture.tree.link(u".."_s, u"loop/self"_s);
    const Follower follower(*fixture.document);
    QVERIFY(fixture.drop(first));
    QVERIFY(fixture.drop(second, row));
    QTEST(fixture.names(), "names");
    QVERIFY(follower.agrees());
    QCOMPARE(fixture.host.status, u"Idle. Files: %1"_s.arg(fixture.names().size()));
    fixture.document->undoStack().undo();
    fixture.document->undoStack().undo();
    QVERIFY(fixture.names().isEmpty() && follower.agrees());
    fixture.document->undoStack().redo();
    fixture.document->undoStack().redo();
    QTEST(fixture.names(), "names");
    QCOMPARE(fixture.document->undoStack().undoText(), u"Add Files"_s);
}

void TestTDocumentFiles::whatCannotBeAdded_data()
{
    const Table<int, int, QString> row("missing", "named", "end");
    row("nothing", 0, 0, QString());
    row("one of two", 1, 1, u"Check the spelling.||"_s);
    row("more than anybody reads", 20, 8, u"\n\n... and 12 more||"_s);
}

void TestTDocumentFiles::whatCannotBeAdded()
{
    QFETCH(const int, missing);
    QFETCH(const QString, end);
    DocumentFixture fixture;
    QStringList names{fixture.tree.file(u"there.x"_s)};
    for (int i = 0; i < missing; ++i)
        names += u"gone\n%1"_s.arg(i);
    QVERIFY(fixture.drop(names));
    QCOMPARE(fixture.names(), QStringList(u"there.x"_s));
    const QString told =
        fixture.host.callsOf(u"sheet: Not everything could be added|"_s).join(u'#');
    QTEST(static_cast<int>(told.count(u"/gone\\x0A"_s)), "named");
    QVERIFY2(told.endsWith(end), qPrintable(told));
    QCOMPARE(told.isEmpty(), missing == 0);
}

void TestTDocumentFiles::dropsOfTheSameFile_data()
{
    QTest::addColumn<Action>("between");
    QTest::addColumn<QString>("second");
    QTest::addColumn<int>("count");
    const Action nothing = [](DocumentFixture &) {};
    QTest::newRow("hard link") << Action([](auto &f) { f.tree.hardLink(u"a"_s, u"b"_s); }) << u"b"_s
                               << 1;
    QTest::newRow("link to it") << Action([](auto &f) { f.tree.link(u"a"_s, u"b"_s); }) << u"b"_s
                                << 1;
    QTest::newRow("dangling link")
        << Action([](auto &f) { f.tree.link(u"no"_s, u"b"_s); }) << u"b"_s << 2;
    QTest::newRow("another file of the same path") << Action([](auto &f) {
        f.tree.file(u"new"_s);
        f.tree.remove(u"a"_s);
        rename(f.tree, u"new"_s, u"a"_s);
    }) << u"a"_s << 1;
    QTest::newRow("gone, and its inode used again") << Action([](auto &f) {
        f.tree.remove(u"a"_s);
        f.tree.file(u"b"_s);
    }) << u"b"_s << 2;
    QTest::newRow("moved aside for another file") << Action([](auto &f) {
        rename(f.tree, u"a"_s, u"b"_s);
        f.tree.file(u"a"_s);
    }) << u"b"_s << 2;
    QTest::newRow("renamed under another name")
        << Action([](auto &f) { rename(f.tree, u"a"_s, u"b"_s); }) << u"b"_s << 2;
}

void TestTDocumentFiles::dropsOfTheSameFile()
{
    QFETCH(const Action, between);
    QFETCH(const QString, second);
    DocumentFixture fixture;
    fixture.tree.file(u"a"_s);
    QVERIFY(fixture.drop({u"a"_s}));
    between(fixture);
    QVERIFY(fixture.drop({second}));
    QTEST(static_cast<int>(fixture.names().size()), "count");
}

void TestTDocumentFiles::dropStatuses()
{
    DocumentFixture fixture;
    fixture.makeFiles(u"f/%1"_s, 250);
    fixture.document->addRules({textRule(u"n"_s)}, 0);
    fixture.host.statuses.clear();
    fixture.host.calls.clear();
    QVERIFY(fixture.drop({u"f"_s}));
    const QStringList expected{u"Receiving drop..."_s,
                               u"preprocessing drop..."_s,
                               u"cleaning up drop..."_s,
                               u"cleaning up drop... (100/250)"_s,
                               u"cleaning up drop... (200/250)"_s,
                               u"Analysing drop..."_s,
                               u"Analysing drop... (100 of 250)"_s,
                               u"Analysing drop... (200 of 250)"_s,
                               u"gathering secondary file information"_s,
                               u"Performing test run"_s,
                               u"Idle. Files: 250"_s};
    QCOMPARE(fixture.host.statuses, expected);
    QCOMPARE(fixture.host.callsOf(u"busy"_s).size(), 1);
    QVERIFY(!fixture.host.busy);
    const TFolderAccessList &folders = fixture.document->theFoldersWeUse();
    QCOMPARE(folders.folders().size(), 1U);
    QVERIFY(folders.URLexists(fixture.urls({u"f"_s}).first()));
}

void TestTDocumentFiles::pasteboards()
{
    DocumentFixture fixture;
    fixture.makeFiles(u"%1"_s, 3);
    const auto accept = [&fixture](const QString &type, const QByteArray &bytes) {
        QMimeData data;
        data.setData(type, bytes);
        return fixture.document->tableViewAcceptDrop(data, 0);
    };
    const QByteArray uris =
        "# files\r\nfile://" + fixture.tree.path(u"0000"_s).toUtf8() + "\r\nhttp://x/y\r\n";
    QVERIFY(accept(u"text/uri-list"_s, uris));
    QVERIFY(fixture.settle());
    QVERIFY(!accept(u"text/uri-list"_s, "http://x/y"));
    QVERIFY(!accept(u"text/plain"_s, "x"));
    QVERIFY(!accept(u"com.zel.tavrin-fileObjects"_s, "x"));
    QCOMPARE(fixture.names(), QStringList{u"0000"_s});
    QVERIFY(fixture.drop({u"0001"_s, u"0002"_s}));
    const auto foreign = TDocumentDrag::dataForFileRows({2}, u"Doc-other"_s);
    QVERIFY(!fixture.document->tableViewAcceptDrop(*foreign, 0));
    const auto own = TDocumentDrag::dataForFileRows({2}, fixture.document->myUUID());
    QVERIFY(fixture.document->tableViewAcceptDrop(*own, 0));
    QCOMPARE(fixture.names(), (QStringList{u"0002"_s, u"0000"_s, u"0001"_s}));
    for (const char *damaged : {"1,x", "-1", ",", "99999999999999999999"}) {
        QMimeData data;
        data.setData(TDocumentDrag::indexesType(), damaged);
        QVERIFY(TDocumentDrag::rows(data).empty());
    }
}

void TestTDocumentFiles::edits_data()
{
    QTest::addColumn<Action>("edit");
    QTest::addColumn<QString>("undoName");
    QTest::addColumn<QString>("order");
    const auto move = [](std::vector<qsizetype> rows, qsizetype before) {
        return Action([=](DocumentFixture &f) { f.document->moveRows(rows, before); });
    };
    const auto remove = [](std::vector<qsizetype> rows) {
        return Action([=](DocumentFixture &f) { f.document->removeFiles(rows); });
    };
    QTest::newRow("move down") << move({0, 2}, 4) << u"Move Files"_s << u"13024"_s;
    QTest::newRow("move up") << move({3, 4}, 1) << u"Move Files"_s << u"03412"_s;
    QTest::newRow("move beyond the end") << move({1}, 99) << u"Move Files"_s << u"02341"_s;
    QTest::newRow("move onto itself") << move({1, 2}, 2) << u"Move Files"_s << u"01234"_s;
    QTest::newRow("remove one") << remove({2}) << u"Remove Files"_s << u"0134"_s;
    QTest::newRow("remove several") << remove({0, 1, 4}) << u"Remove Files"_s << u"23"_s;
    QTest::newRow("remove all") << remove({0, 1, 2, 3, 4}) << u"Remove Files"_s << QString();
    QTest::newRow("remove nothing") << remove({}) << u"Add Files"_s << u"01234"_s;
    QTest::newRow("remove what is not there") << remove({-1, 7}) << u"Add Files"_s << u"01234"_s;
}

void TestTDocumentFiles::edits()
{
    QFETCH(const Action, edit);
    QFETCH(const QString, undoName);
    DocumentFixture fixture;
    const QStringList files = fixture.makeFiles(u"%1"_s, 5);
    const Follower follower(*fixture.document);
    QVERIFY(fixture.drop(files));
    fixture.host.selection = {1};
    const auto order = [&fixture] {
        QString digits;
        for (const QString &name : fixture.names())
            digits += name.back();
        return digits;
    };
    edit(fixture);
    QTEST(order(), "order");
    QVERIFY(follower.agrees());
    QCOMPARE(fixture.document->undoStack().undoText(), undoName);
    if (undoName == "Remove Files"_L1)
        QVERIFY(fixture.host.selection.empty());
    QVERIFY(fixture.settle());
    if (undoName == "Add Files"_L1)
        return;
    fixture.document->undoStack().undo();
    QCOMPARE(order(), u"01234"_s);
    fixture.document->undoStack().redo();
    QTEST(order(), "order");
    QVERIFY(follower.agrees());
}

void TestTDocumentFiles::sorts_data()
{
    QTest::addColumn<int>("item");
    QTest::addColumn<QString>("column");
    QTest::addColumn<bool>("ascending");
    QTest::addColumn<QString>("order");
    // By name B, a, C; by size a, C, B; by date C, B, a. Targets are b, C, A in the order B, a, C.
    const std::array menu{"aBC", "BCa", "CBa", "aCB", "CBa", "aBC", "CBa",
                          "aBC", "CBa", "aBC", "aCB", "BCa", "BaC", "CBa"};
    for (std::size_t i = 0; i < menu.size(); ++i)
        QTest::addRow("item %zu", i + 1)
            << static_cast<int>(i + 1) << QString() << true << QString::fromLatin1(menu[i]);
    const auto column = [](const char *key, bool ascending, const char *order) {
        QTest::addRow("%s %d", key, ascending)
            << 0 << QString::fromLatin1(key) << ascending << QString::fromLatin1(order);
    };
    column("fileName", true, "BCa");
    column("fileName", false, "aCB");
    column("targetName", true, "CaB");
    column("creationDate", true, "CBa");
    column("modificationDate", false, "aBC");
    column("size", true, "aCB");
    column("parent", true, "aBC");
    column("errLevel", false, "CBa");
    column("errLevel", true, "BaC");
}

void TestTDocumentFiles::sorts()
{
    QFETCH(const int, item);
    QFETCH(const QString, column);
    QFETCH(const bool, ascending);
    DocumentFixture fixture;
    const std::array<std::tuple<const char *, const char *, time_t>, 3> files{
        {{"y/B", "333", 200}, {"x/a", "1", 300}, {"z/C", "22", 100}}};
    QStringList paths;
    for (const auto &[name, content, date] : files) {
        paths += fixture.tree.file(QString::fromLatin1(name), content);
        const std::array times{timespec{date, 0}, timespec{date, 0}};
        utimensat(AT_FDCWD, qPrintable(paths.back()), times.data(), 0);
    }
    QVERIFY(fixture.drop(paths));
    // The creation date is the birth time, which nobody can set; give all entries their own.
    const QStringList targets{u"b"_s, u"C"_s, u"A"_s};
    for (std::size_t i = 0; i < 3; ++i) {
        TFileObject &file = *fixture.document->sourceObjectArray()[i];
        TFileItem entry = file.item();
        entry.facts.creation = entry.facts.modification;
        file.assign(entry);
        file.setTargetName(targets[static_cast<qsizetype>(i)]);
        if (i == 2)
            file.logErrorType(2, u"bad"_s, nullptr);
    }
    fixture.host.calls.clear();
    if (item > 0)
        fixture.document->sortNow(item);
    else
        fixture.document->sortByColumn(column, ascending);
    QTEST(fixture.names().join(QString()), "order");
    QCOMPARE(fixture.document->undoStack().undoText(), u"Sort Files"_s);
    QCOMPARE(fixture.host.callsOf(u"reset sort menu"_s).size(), item > 0 ? 1 : 0);
    QCOMPARE(fixture.document->isAnalysing(), column != "errLevel"_L1);
    fixture.document->undoStack().undo();
    QCOMPARE(fixture.names().join(QString()), u"BaC"_s);
    QCOMPARE(fixture.document->isAnalysing(), column != "errLevel"_L1);
}

void TestTDocumentFiles::search_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<int>>("rows");
    QTest::newRow("name, any case") << u"ONE"_s << QList<int>{0};
    QTest::newRow("new name") << u"new"_s << QList<int>{0, 1};
    QTest::newRow("extensions are not looked at") << u"jpg"_s << QList<int>();
    QTest::newRow("empty") << QString() << QList<int>();
}

void TestTDocumentFiles::search()
{
    QFETCH(const QString, text);
    QFETCH(const QList<int>, rows);
    DocumentFixture fixture;
    QVERIFY(fixture.useRules({textRule(u"New"_s)}));
    QVERIFY(fixture.drop({fixture.tree.file(u"One.jpg"_s), fixture.tree.file(u"two.jpg"_s)}));
    fixture.host.calls.clear();
    fixture.host.selection = {0, 1};
    fixture.document->doSearch(text);
    QCOMPARE(QList<int>(fixture.host.selection.begin(), fixture.host.selection.end()), rows);
    QCOMPARE(fixture.host.calls,
             text.isEmpty() ? QStringList() : QStringList{u"focus file table"_s});
}

void TestTDocumentFiles::editsDuringADrop()
{
    DocumentFixture fixture;
    fixture.makeFiles(u"f/%1"_s, kManyFiles);
    fixture.makeFiles(u"g/%1x"_s, 2);
    TDocument &document = *fixture.document;
    QVERIFY(fixture.drop({u"g"_s}));
    document.addFiles(fixture.urls({u"f"_s}), 1);
    document.addFiles(fixture.urls({u"g"_s, u"f"_s}), 0);
    QVERIFY(fixture.pumpUntil([&] { return document.sourceObjectArray().size() > 100; }));
    document.removeFiles({0});    // "0000x", which stood before the drop's row
    document.removeFiles({3, 4}); // among the dropped ones
    const bool stillReceiving = document.isReceivingDrop();
    QVERIFY(fixture.settle());
    QVERIFY(stillReceiving);
    // The second drop brings back what was removed, in front.
    QCOMPARE(fixture.names().first(4), (QStringList{u"0000x"_s, u"0003"_s, u"0004"_s, u"0000"_s}));
    QCOMPARE(fixture.names().size(), kManyFiles + 2);
    QCOMPARE(fixture.names().back(), u"0001x"_s);
    QCOMPARE(fixture.host.status, u"Idle. Files: %1"_s.arg(kManyFiles + 2));
}

void TestTDocumentFiles::undoDuringADrop()
{
    DocumentFixture fixture;
    fixture.makeFiles(u"f/%1"_s, kManyFiles);
    TDocument &document = *fixture.document;
    document.addFiles(fixture.urls({u"f"_s}), 0);
    QVERIFY(fixture.pumpUntil([&] { return document.sourceObjectArray().size() > 100; }));
    QVERIFY(document.isReceivingDrop());
    document.undoStack().undo();
    QVERIFY(!document.isReceivingDrop());
    QVERIFY(fixture.settle());
    QVERIFY(fixture.names().isEmpty());
    QVERIFY(!fixture.host.busy);
}

void TestTDocumentFiles::namedOperations()
{
    DocumentFixture fixture;
    fixture.makeFiles(u"%1"_s, 2);
    fixture.tree.link(u"0000"_s, u"link"_s);
    QVERIFY(fixture.drop({u"0000"_s, u"0001"_s}));
    const TFileList &files = fixture.document->sourceObjectArray();
    const TFileURLs urls = fixture.urls({u"0000"_s, u"link"_s, u"0000"_s});
    QVERIFY(TDocument::isPathInArray(fixture.tree.path(u"link"_s), urls));
    QVERIFY(!TDocument::isPathInArray(fixture.tree.path(u"LINK"_s), urls));
    QCOMPARE(fixture.document->removeDupesFromArray(urls), urls.first(2));
    QVERIFY(!TDocument::isURLUniqueIn(urls[1], files));
    QVERIFY(TDocument::isURLUniqueIn(fixture.urls({u"other"_s}).first(), files));
    fixture.document->removeDupesFromArray(TFileURLs(200, urls.first()));
    QVERIFY(fixture.host.statuses.contains(u"cleaning up drop... (200/200)"_s));
    QVERIFY(!TDocument::hasProcessedFiles(files));
    files.front()->setHasBeenProcessed(true);
    QVERIFY(TDocument::hasProcessedFiles(files));
    QCOMPARE(fixture.names(TDocument::stripProcessed(files)), QStringList{u"0001"_s});
    QVERIFY(fixture.drop({u"0000"_s}, 1));
    QCOMPARE(fixture.names(), (QStringList{u"0000"_s, u"0001"_s}));
}

QTEST_GUILESS_MAIN(TestTDocumentFiles)
#include "tst_tdocument_files.moc"
