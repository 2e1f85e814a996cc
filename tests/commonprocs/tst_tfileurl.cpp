// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/TFileURL.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

class TestTFileURL : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paths_data()
    {
        const Table<QString, QString, QString, QString, QStringList> row("given", "path", "folder",
                                                                         "name", "components");
        row("usual", u"/a/b.txt", u"/a/b.txt", u"/a", u"b.txt", {u"/"_s, u"a"_s, u"b.txt"_s});
        row("root", u"/", u"/", u"/", u"", {u"/"_s});
        row("in the root", u"/a", u"/a", u"/", u"a", {u"/"_s, u"a"_s});
        row("slashes", u"//a///b//", u"/a/b", u"/a", u"b", {u"/"_s, u"a"_s, u"b"_s});
        row("dots stay", u"/a/./../b", u"/a/./../b", u"/a/./..", u"b",
            {u"/"_s, u"a"_s, u"."_s, u".."_s, u"b"_s});
        row("raw byte", u"/\xDCE4/\xDCFF", u"/\xDCE4/\xDCFF", u"/\xDCE4", u"\xDCFF",
            {u"/"_s, u"\xDCE4"_s, u"\xDCFF"_s});
    }

    void paths()
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

    void urls_data()
    {
        const Table<QString, QByteArray, QString> row("url", "path", "written");
        row("usual", u"file:///a/b%20c", "/a/b c"_ba, u"file:///a/b%20c");
        row("host", u"FILE://localhost/a", "/a"_ba, u"file:///a");
        row("root", u"file:///", "/"_ba, u"file:///");
        row("folder", u"file:///a/b/", "/a/b"_ba, u"file:///a/b");
        row("raw byte", u"file:///%e4", "/\xE4"_ba, u"file:///%E4");
    }

    void urls()
    {
        QFETCH(QString, url);
        const TFileURL parsed = TFileURL::fromString(url);
        QTEST(parsed.fileSystemPath(), "path");
        QTEST(parsed.absoluteString(), "written");
    }

    void noFileUrls_data()
    {
        const Table<QString> row("url");
        for (const char *const text :
             {"", "/a", "http://a/b", "file://otherhost/a", "file:a", "file:///a?b", "file:///a#b",
              "file:///a%0", "file:///a%00b"})
            row(text, QString::fromLatin1(text));
    }

    void noFileUrls()
    {
        QFETCH(QString, url);
        QVERIFY(!TFileURL::fromString(url).isValid());
    }

    void samePathIsEqualWhoeverMadeTheFolder()
    {
        const TFileURL url = TFileURL::fileURLWithPath(u"/a/b"_s);
        QCOMPARE(TFileURL::fileURLWithPath(u"/a/b"_s), url);
        QVERIFY(TFileURL::fileURLWithPath(u"/a/B"_s) != url);
        QVERIFY(TFileURL::fileURLWithPath(u"/A/b"_s) != url);
        QVERIFY(TFileURL() != url);
        QCOMPARE(TFileURL(), TFileURL());
    }

    void extensions_data()
    {
        const Table<QString, QString, QString> row("name", "base", "extension");
        row("usual", u"a.txt", u"a", u"txt");
        row("none", u"a", u"a", u"");
        row("last one counts", u"archive.tar.gz", u"archive.tar", u"gz");
        row("leading dot", u".bashrc", u".bashrc", u"");
        row("leading dot and extension", u".a.txt", u".a", u"txt");
        row("dot at the end", u"a.txt.", u"a.txt.", u"");
        row("blanks", u"Dr. No goes", u"Dr", u" No goes");
        row("only dots", u"...", u"...", u"");
        row("empty", u"", u"", u"");
    }

    void extensions()
    {
        QFETCH(QString, name);
        QTEST(removeExtensionFromFilename(name), "base");
        QTEST(getExtensionFromFileName(name), "extension");
    }
};

QTEST_GUILESS_MAIN(TestTFileURL)
#include "tst_tfileurl.moc"
