// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ShellWords.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

class TestShellWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void split_data()
    {
        const Table<QString, QStringList> row("text", "words");
        row("nothing", u"", {});
        row("blanks only", u" \t\n ", {});
        row("words", u" Text  theText=a\tb ", {u"Text"_s, u"theText=a"_s, u"b"_s});
        row("double quotes", u"theText=\"Holiday \"", {u"theText=Holiday "_s});
        row("quotes within a word", u"a\"b c\"'d e'f", {u"ab cd ef"_s});
        row("empty word", u"a '' \"\"", {u"a"_s, u""_s, u""_s});
        row("pattern in double quotes", u"match=\"\\s+\\.\\\"\\\\\\$1\"",
            {u"match=\\s+\\.\"\\$1"_s});
        row("pattern in single quotes", u"match='\\s\"\\\\'", {u"match=\\s\"\\\\"_s});
        row("backslash outside quotes", u"a\\ b \\\" \\\\", {u"a b"_s, u"\""_s, u"\\"_s});
        row("backslash at the end", u"a\\", {u"a\\"_s});
        row("nothing is expanded", u"$HOME *.txt ~", {u"$HOME"_s, u"*.txt"_s, u"~"_s});
    }

    void split()
    {
        QFETCH(QString, text);
        const auto words = splitShellWords(text);
        QVERIFY2(words, qPrintable(words.message()));
        QTEST(words.value(), "words");
    }

    void openQuoteIsAFailure_data()
    {
        const Table<QString> row("text");
        row("single", u"a 'b");
        row("double", u"a\"");
        row("escaped end", u"\"a\\\"");
    }

    void openQuoteIsAFailure()
    {
        QFETCH(QString, text);
        const auto words = splitShellWords(text);
        QVERIFY(!words);
        QVERIFY2(words.message().contains(text), qPrintable(words.message()));
    }

    void quotedTextComesBack_data()
    {
        const Table<QString, QString> row("text", "quoted");
        row("plain", u"a/b-c.txt", u"a/b-c.txt");
        row("empty", u"", u"''");
        row("blank", u"a b", u"'a b'");
        row("quote", u"it's", u"'it'\\''s'");
        row("everything", u"\\ \" $x `y` \n(*)", u"'\\ \" $x `y` \n(*)'");
    }

    void quotedTextComesBack()
    {
        QFETCH(QString, text);
        QTEST(shellQuoted(text), "quoted");
        QCOMPARE(splitShellWords(shellQuoted(text)).value(), QStringList{text});
    }
};

QTEST_GUILESS_MAIN(TestShellWords)
#include "tst_shellwords.moc"
