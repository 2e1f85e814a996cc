// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ShellWords.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestShellWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void split_data();
    void split();
    void openQuoteIsAFailure_data();
    void openQuoteIsAFailure();
    void quotedTextComesBack_data();
    void quotedTextComesBack();
};

void TestShellWords::split_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("words");
    QTest::newRow("nothing") << u""_s << QStringList{};
    QTest::newRow("blanks only") << u" \t\n "_s << QStringList{};
    QTest::newRow("words") << u" Text  theText=a\tb "_s
                           << QStringList{u"Text"_s, u"theText=a"_s, u"b"_s};
    QTest::newRow("double quotes")
        << u"theText=\"Holiday \""_s << QStringList{u"theText=Holiday "_s};
    QTest::newRow("quotes within a word") << u"a\"b c\"'d e'f"_s << QStringList{u"ab cd ef"_s};
    QTest::newRow("empty word") << u"a '' \"\""_s << QStringList{u"a"_s, u""_s, u""_s};
    QTest::newRow("pattern in double quotes")
        << uR"(match="\s+\.\"\\\$1")"_s << QStringList{uR"(match=\s+\."\$1)"_s};
    QTest::newRow("pattern in single quotes")
        << uR"(match='\s"\\')"_s << QStringList{uR"(match=\s"\\)"_s};
    QTest::newRow("backslash outside quotes")
        << uR"(a\ b \" \\)"_s << QStringList{u"a b"_s, u"\""_s, u"\\"_s};
    QTest::newRow("backslash at the end") << uR"(a\)"_s << QStringList{u"a\\"_s};
    QTest::newRow("nothing is expanded")
        << u"$HOME *.txt ~"_s << QStringList{u"$HOME"_s, u"*.txt"_s, u"~"_s};
}

void TestShellWords::split()
{
    QFETCH(QString, text);
    const auto words = splitShellWords(text);
    QVERIFY2(words, qPrintable(words.message()));
    QTEST(words.value(), "words");
}

void TestShellWords::openQuoteIsAFailure_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("single") << u"a 'b"_s;
    QTest::newRow("double") << u"a\""_s;
    QTest::newRow("escaped end") << uR"("a\")"_s;
}

void TestShellWords::openQuoteIsAFailure()
{
    QFETCH(QString, text);
    const auto words = splitShellWords(text);
    QVERIFY(!words);
    QVERIFY2(words.message().contains(text), qPrintable(words.message()));
}

void TestShellWords::quotedTextComesBack_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("quoted");
    QTest::newRow("plain") << u"a/b-c.txt"_s << u"a/b-c.txt"_s;
    QTest::newRow("empty") << u""_s << u"''"_s;
    QTest::newRow("blank") << u"a b"_s << u"'a b'"_s;
    QTest::newRow("quote") << u"it's"_s << uR"('it'\''s')"_s;
    QTest::newRow("everything") << u"\\ \" $x `y` \n(*)"_s << u"'\\ \" $x `y` \n(*)'"_s;
}

void TestShellWords::quotedTextComesBack()
{
    QFETCH(QString, text);
    QTEST(shellQuoted(text), "quoted");
    QCOMPARE(splitShellWords(shellQuoted(text)).value(), QStringList{text});
}

QTEST_GUILESS_MAIN(TestShellWords)
#include "tst_shellwords.moc"
