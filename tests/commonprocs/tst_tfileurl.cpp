// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/TFileURL.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestTFileURL : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paths_data();
    void paths();
    void relativePathsStandInTheCurrentFolder();
    void urls_data();
    void urls();
    void noFileUrls_data();
    void noFileUrls();
    void samePathIsEqualWhoeverMadeTheFolder();
    void extensions_data();
    void extensions();
};

void TestTFileURL::paths_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("components");
    QTest::newRow("usual") << u"/a/b.txt"_s << u"/a/b.txt"_s << u"/a"_s << u"b.txt"_s
                           << QStringList{u"/"_s, u"a"_s, u"b.txt"_s};
    QTest::newRow("root") << u"/"_s << u"/"_s << u"/"_s << u""_s << QStringList{u"/"_s};
    QTest::newRow("in the root") << u"/a"_s << u"/a"_s << u"/"_s << u"a"_s
                                 << QStringList{u"/"_s, u"a"_s};
    QTest::newRow("slashes") << u"//a///b//"_s << u"/a/b"_s << u"/a"_s << u"b"_s
                             << QStringList{u"/"_s, u"a"_s, u"b"_s};
    QTest::newRow("dots stay") << u"/a/./../b"_s << u"/a/./../b"_s << u"/a/./.."_s << u"b"_s
                               << QStringList{u"/"_s, u"a"_s, u"."_s, u".."_s, u"b"_s};
    QTest::newRow("raw byte") << u"/\xDCE4/\xDCFF"_s << u"/\xDCE4/\xDCFF"_s << u"/\xDCE4"_s
                              << u"\xDCFF"_s << QStringList{u"/"_s, u"\xDCE4"_s, u"\xDCFF"_s};
}

void TestTFileURL::paths()
{
    QFETCH(QString, given);
    const TFileURL url = TFileURL::fileURLWithPath(given);
    QTEST(url.path(), "path");
    QTEST(url.folder()->path(), "folder");
    QTEST(url.lastPathComponent(), "name");
    QTEST(url.pathComponents(), "components");
    QCOMPARE(url.deletingLastPathComponent().path(), url.folder()->path());
    QCOMPARE(url.appendingPathComponent(u"x y"_s).deletingLastPathComponent(), url);
    QCOMPARE(TFileURL::fromString(url.absoluteString()), url);
}

void TestTFileURL::relativePathsStandInTheCurrentFolder()
{
    const TFileURL url = TFileURL::fileURLWithPath(u"a/b"_s);
    QCOMPARE(url.path(), QDir::currentPath() + u"/a/b"_s);
}

void TestTFileURL::urls_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("written");
    QTest::newRow("usual") << u"file:///a/b%20c"_s << "/a/b c"_ba << u"file:///a/b%20c"_s;
    QTest::newRow("host") << u"FILE://localhost/a"_s << "/a"_ba << u"file:///a"_s;
    QTest::newRow("root") << u"file:///"_s << "/"_ba << u"file:///"_s;
    QTest::newRow("folder") << u"file:///a/b/"_s << "/a/b"_ba << u"file:///a/b"_s;
    QTest::newRow("raw byte") << u"file:///%e4"_s << "/\xE4"_ba << u"file:///%E4"_s;
}

void TestTFileURL::urls()
{
    QFETCH(QString, url);
    const TFileURL parsed = TFileURL::fromString(url);
    QTEST(parsed.fileSystemPath(), "path");
    QTEST(parsed.absoluteString(), "written");
}

void TestTFileURL::noFileUrls_data()
{
    QTest::addColumn<QString>("url");
    for (const char *const text : {"", "/a", "http://a/b", "file://otherhost/a", "file:a",
                                   "file:///a?b", "file:///a#b", "file:///a%0", "file:///a%00b"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void TestTFileURL::noFileUrls()
{
    QFETCH(QString, url);
    QVERIFY(!TFileURL::fromString(url).isValid());
}

void TestTFileURL::samePathIsEqualWhoeverMadeTheFolder()
{
    const TFileURL url = TFileURL::fileURLWithPath(u"/a/b"_s);
    QCOMPARE(TFileURL::fileURLWithPath(u"/a/b"_s), url);
    QVERIFY(TFileURL::fileURLWithPath(u"/a/B"_s) != url);
    QVERIFY(TFileURL::fileURLWithPath(u"/A/b"_s) != url);
    QVERIFY(TFileURL() != url);
    QCOMPARE(TFileURL(), TFileURL());
}

void TestTFileURL::extensions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("extension");
    QTest::newRow("usual") << u"a.txt"_s << u"a"_s << u"txt"_s;
    QTest::newRow("none") << u"a"_s << u"a"_s << u""_s;
    QTest::newRow("last one counts") << u"archive.tar.gz"_s << u"archive.tar"_s << u"gz"_s;
    QTest::newRow("leading dot") << u".bashrc"_s << u".bashrc"_s << u""_s;
    QTest::newRow("leading dot and extension") << u".a.txt"_s << u".a"_s << u"txt"_s;
    QTest::newRow("dot at the end") << u"a.txt."_s << u"a.txt."_s << u""_s;
    QTest::newRow("blanks") << u"Dr. No goes"_s << u"Dr"_s << u" No goes"_s;
    QTest::newRow("only dots") << u"..."_s << u"..."_s << u""_s;
    QTest::newRow("empty") << u""_s << u""_s << u""_s;
}

void TestTFileURL::extensions()
{
    QFETCH(QString, name);
    QTEST(removeExtensionFromFilename(name), "base");
    QTEST(getExtensionFromFileName(name), "extension");
}

QTEST_GUILESS_MAIN(TestTFileURL)
#include "tst_tfileurl.moc"
