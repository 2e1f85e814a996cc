// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/StringAdditions.h"
#include "support/Table.h"

#include <limits>

using namespace Qt::StringLiterals;

class TestStringAdditions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void romanNumerals_data()
    {
        const Table<qint64, QString> row("value", "text");
        row("zero", 0, u"");
        row("negative", -4, u"");
        row("4", 4, u"iv");
        row("444", 444, u"cdxliv");
        row("1994", 1994, u"mcmxciv");
        row("3888", 3888, u"mmmdccclxxxviii");
        row("no upper limit", 6009, u"mmmmmmix");
    }

    void romanNumerals()
    {
        QFETCH(qint64, value);
        QTEST(romanNumeralsFromInt(value), "text");
    }

    void aGiantRomanNumeralStaysInMemory()
    {
        const QString text = romanNumeralsFromInt(std::numeric_limits<qint64>::max());
        QVERIFY(text.startsWith(QString(300, u'm')));
        QVERIFY(text.size() < 2 * kMaxPadding);
        QVERIFY(text.endsWith("dcccvii"_L1));
    }

    void cutting_data()
    {
        const Table<QString, qint64, QString, QString> row("text", "n", "head", "rest");
        row("none", u"abc", 0, u"", u"abc");
        row("some", u"abc", 1, u"a", u"bc");
        row("all", u"abc", 3, u"abc", u"");
        row("beyond", u"abc", 4, u"abc", u"");
        row("beside a pair", u"a\U0001F4F7", 1, u"a", u"\U0001F4F7");
        // The lower half of this one looks like the byte F7.
        row("within a pair", u"a\U0001F4F7z", 2, u"a\uFFFD", u"\uFFFDz");
        row("beside a byte", u"\xDCF7z", 1, u"\xDCF7", u"z");
    }

    void cutting()
    {
        QFETCH(QString, text);
        QFETCH(qint64, n);
        QString head = text;
        limitLength(head, n);
        QTEST(head, "head");
        QCOMPARE(stringByDroppingLastNCharactes(text, text.size() - n), head);
        QTEST(stringByDroppingFistNCharactes(text, n), "rest");
    }

    void blankBeforeUpperCase_data()
    {
        const Table<QString, QString> row("text", "expected");
        row("camel", u"myHolidayPhoto", u"my Holiday Photo");
        row("capitals", u"ABCdef", u"ABCdef");
        row("digit before capital", u"photo1A", u"photo1A");
        row("capital at the end", u"photoA", u"photo A");
        row("blank between", u"my Photo", u"my Photo");
        row("umlauts", u"grüneÄpfel", u"grüne Äpfel");
        row("empty", u"", u"");
        // "ß" makes the upper form one unit longer ("SSTRASSE"), so every later unit is compared
        // with its left neighbour's capital: the second "A" stands where the form has the first
        // one.
        row("shifted upper form", u"ßbA", u"ßbA");
        row("shifted into a match", u"ßxXX", u"ßx XX");
        // "İ" makes the lower form one unit longer.
        row("longer lower form", u"İaB", u"İa B");
    }

    void blankBeforeUpperCase()
    {
        QFETCH(QString, text);
        QTEST(insertBlankbeforeUpperCaseTransition(text), "expected");
    }

    void firstPathComponent_data()
    {
        const Table<QString, QString, QString> row("path", "dropped", "removed");
        row("absolute", u"/a/b/c", u"/b/c", u"b/c");
        row("relative", u"a/b/c", u"b/c", u"b/c");
        row("one component", u"/a", u"/", u"");
        row("one relative component", u"a", u"", u"");
        row("root", u"/", u"/", u"");
        row("empty", u"", u"", u"");
        row("doubled separators", u"//a//b", u"/b", u"b");
    }

    void firstPathComponent()
    {
        QFETCH(QString, path);
        QTEST(stringByDroppingFirstPathComponent(path), "dropped");
        QTEST(stringByRemovingFirstPathComponent(path), "removed");
    }

    void replacing_data()
    {
        Table<QString, QString, QString, QString>("text", "needle", "ignoringCase", "exactly");
        const auto row = [](const char *name, const QString &text, const QString &needle,
                            const QString &ignoringCase, const QString &exactly) {
            QTest::newRow(name) << text << needle << ignoringCase << exactly;
        };
        row("every one", u"abAB-ab"_s, u"ab"_s, u"##-#"_s, u"#AB-#"_s);
        row("not overlapping", u"aaaaa"_s, u"aa"_s, u"##a"_s, u"##a"_s);
        row("retry after a partial match", u"aab"_s, u"ab"_s, u"a#"_s, u"a#"_s);
        row("no pattern", u"a.b*"_s, u"."_s, u"a#b*"_s, u"a#b*"_s);
        row("empty needle", u"abc"_s, u""_s, u"abc"_s, u"abc"_s);
        row("not there", u"abc"_s, u"abcd"_s, u"abc"_s, u"abc"_s);
        row("umlauts fold", u"ÄRGER ärger"_s, u"ärg"_s, u"#ER #er"_s, u"ÄRGER #er"_s);
        row("sharp s is not ss", u"Straße STRASSE"_s, u"ss"_s, u"Straße STRA#E"_s,
            u"Straße STRASSE"_s);
        row("all sigmas are one", u"ΣΑΣσς"_s, u"σ"_s, u"#Α###"_s, u"ΣΑΣ#ς"_s);
        row("beyond the first plane", u"\U00010400-\U00010428"_s, u"\U00010428"_s, u"#-#"_s,
            u"\U00010400-#"_s);
        row("a pair is not found by its half", u"\U0001F600"_s, u"\xDE00"_s, u"\U0001F600"_s,
            u"\xD83D#"_s);
    }

    void replacing()
    {
        QFETCH(QString, text);
        QFETCH(QString, needle);
        QFETCH(QString, ignoringCase);
        QFETCH(QString, exactly);
        QCOMPARE(stringByReplacing(text, needle, u"#"_s, false), ignoringCase);
        QCOMPARE(stringByReplacing(text, needle, u"#"_s, true), exactly);
        QCOMPARE(containsString(text, needle, false), ignoringCase != text || needle.isEmpty());
        QCOMPARE(containsString(text, needle, true), exactly != text || needle.isEmpty());
    }

    void caseConversion_data()
    {
        const Table<QString, QString, QString> row("text", "upper", "lower");
        row("plain", u"Photo_1", u"PHOTO_1", u"photo_1");
        row("sharp s", u"Straße", u"STRASSE", u"straße");
        row("ligature", u"ﬁn", u"FIN", u"ﬁn");
        row("apostrophe n", u"ŉ", u"ʼN", u"ŉ");
        row("final sigma", u"ΟΔΟΣ", u"ΟΔΟΣ", u"οδος");
        row("dotted capital i", u"İi", u"İI", u"i\u0307i");
        row("half a pair", u"ä\xDC80", u"Ä\xDC80", u"ä\xDC80");
    }

    void caseConversion()
    {
        QFETCH(QString, text);
        QTEST(upperCased(text), "upper");
        QTEST(lowerCased(text), "lower");
    }

    void padding_data()
    {
        const Table<qint64, qsizetype, qsizetype> row("width", "length", "missing");
        row("shorter", 5, 2, 3);
        row("as long", 5, 5, 0);
        row("longer", 5, 9, 0);
        row("negative width", std::numeric_limits<qint64>::min(), 9, 0);
        row("wild width", std::numeric_limits<qint64>::max(), 0, kMaxPadding);
    }

    void padding()
    {
        QFETCH(qint64, width);
        QFETCH(qsizetype, length);
        QTEST(missingPadding(width, length), "missing");
        QString characters;
        for (qint64 index = -1; index <= 5; ++index)
            characters += paddingCharacter(index);
        QCOMPARE(characters, u"x0 *-_x"_s);
    }
};

QTEST_GUILESS_MAIN(TestStringAdditions)
#include "tst_stringadditions.moc"
