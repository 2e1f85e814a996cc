// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/StringAdditions.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class TestStringAdditions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void romanNumerals_data();
    void romanNumerals();
    void aGiantRomanNumeralStaysInMemory();
    void dropping_data();
    void dropping();
    void blankBeforeUpperCase_data();
    void blankBeforeUpperCase();
    void firstPathComponent_data();
    void firstPathComponent();
    void replacing_data();
    void replacing();
    void removingCharacters_data();
    void removingCharacters();
    void trimming_data();
    void trimming();
    void caseConversion_data();
    void caseConversion();
    void padding_data();
    void padding();
};

void TestStringAdditions::romanNumerals_data()
{
    QTest::addColumn<qint64>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << qint64{0} << u""_s;
    QTest::newRow("negative") << qint64{-4} << u""_s;
    QTest::newRow("1") << qint64{1} << u"i"_s;
    QTest::newRow("3") << qint64{3} << u"iii"_s;
    QTest::newRow("4") << qint64{4} << u"iv"_s;
    QTest::newRow("49") << qint64{49} << u"xlix"_s;
    QTest::newRow("444") << qint64{444} << u"cdxliv"_s;
    QTest::newRow("1994") << qint64{1994} << u"mcmxciv"_s;
    QTest::newRow("3888") << qint64{3888} << u"mmmdccclxxxviii"_s;
    QTest::newRow("no upper limit") << qint64{6009} << u"mmmmmmix"_s;
}

void TestStringAdditions::romanNumerals()
{
    QFETCH(qint64, value);
    QTEST(romanNumeralsFromInt(value), "text");
}

void TestStringAdditions::aGiantRomanNumeralStaysInMemory()
{
    const QString text = romanNumeralsFromInt(std::numeric_limits<qint64>::max());
    QVERIFY(text.startsWith(QString(300, u'm')));
    QVERIFY(text.size() < 2 * kMaxPadding);
    QVERIFY(text.endsWith("dcccvii"_L1));
}

void TestStringAdditions::dropping_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("count");
    QTest::addColumn<QString>("withoutFirst");
    QTest::addColumn<QString>("withoutLast");
    QTest::newRow("some") << u"Holiday"_s << qint64{3} << u"iday"_s << u"Holi"_s;
    QTest::newRow("none") << u"Holiday"_s << qint64{0} << u"Holiday"_s << u"Holiday"_s;
    QTest::newRow("negative") << u"Holiday"_s << qint64{-2} << u"Holiday"_s << u"Holiday"_s;
    QTest::newRow("all") << u"Holiday"_s << qint64{7} << u""_s << u""_s;
    QTest::newRow("more than all") << u"Holiday"_s << qint64{10} << u""_s << u""_s;
    QTest::newRow("far more") << u"Holiday"_s << std::numeric_limits<qint64>::max() << u""_s
                              << u""_s;
    QTest::newRow("half a pair") << u"a\U0001F600b"_s << qint64{2}
                                 << u"\xDE00"
                                    u"b"_s
                                 << u"a\xD83D"_s;
}

void TestStringAdditions::dropping()
{
    QFETCH(QString, text);
    QFETCH(qint64, count);
    QTEST(stringByDroppingFistNCharactes(text, count), "withoutFirst");
    QTEST(stringByDroppingLastNCharactes(text, count), "withoutLast");
}

void TestStringAdditions::blankBeforeUpperCase_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("camel") << u"myHolidayPhoto"_s << u"my Holiday Photo"_s;
    QTest::newRow("capitals") << u"ABCdef"_s << u"ABCdef"_s;
    QTest::newRow("digit before capital") << u"photo1A"_s << u"photo1A"_s;
    QTest::newRow("capital at the end") << u"photoA"_s << u"photo A"_s;
    QTest::newRow("blank between") << u"my Photo"_s << u"my Photo"_s;
    QTest::newRow("umlauts") << u"grüneÄpfel"_s << u"grüne Äpfel"_s;
    QTest::newRow("empty") << u""_s << u""_s;
    // "ß" makes the upper form one unit longer ("SSTRASSE"), so every later unit is compared with
    // its left neighbour's capital: the second "A" stands where the form has the first one.
    QTest::newRow("shifted upper form") << u"ßbA"_s << u"ßbA"_s;
    QTest::newRow("shifted into a match") << u"ßxXX"_s << u"ßx XX"_s;
    // "İ" makes the lower form one unit longer.
    QTest::newRow("longer lower form") << u"İaB"_s << u"İa B"_s;
}

void TestStringAdditions::blankBeforeUpperCase()
{
    QFETCH(QString, text);
    QTEST(insertBlankbeforeUpperCaseTransition(text), "expected");
}

void TestStringAdditions::firstPathComponent_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("dropped");
    QTest::addColumn<QString>("removed");
    QTest::newRow("absolute") << u"/a/b/c"_s << u"/b/c"_s << u"b/c"_s;
    QTest::newRow("relative") << u"a/b/c"_s << u"b/c"_s << u"b/c"_s;
    QTest::newRow("one component") << u"/a"_s << u"/"_s << u""_s;
    QTest::newRow("one relative component") << u"a"_s << u""_s << u""_s;
    QTest::newRow("root") << u"/"_s << u"/"_s << u""_s;
    QTest::newRow("empty") << u""_s << u""_s << u""_s;
    QTest::newRow("doubled separators") << u"//a//b"_s << u"/b"_s << u"b"_s;
}

void TestStringAdditions::firstPathComponent()
{
    QFETCH(QString, path);
    QTEST(stringByDroppingFirstPathComponent(path), "dropped");
    QTEST(stringByRemovingFirstPathComponent(path), "removed");
}

void TestStringAdditions::replacing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("needle");
    QTest::addColumn<QString>("ignoringCase");
    QTest::addColumn<QString>("exactly");
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
    row("sharp s is not ss", u"Straße STRASSE"_s, u"ss"_s, u"Straße STRA#E"_s, u"Straße STRASSE"_s);
    row("all sigmas are one", u"ΣΑΣσς"_s, u"σ"_s, u"#Α###"_s, u"ΣΑΣ#ς"_s);
    row("beyond the first plane", u"\U00010400-\U00010428"_s, u"\U00010428"_s, u"#-#"_s,
        u"\U00010400-#"_s);
    row("a pair is not found by its half", u"\U0001F600"_s, u"\xDE00"_s, u"\U0001F600"_s,
        u"\xD83D#"_s);
}

void TestStringAdditions::replacing()
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

void TestStringAdditions::removingCharacters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("characters");
    QTest::addColumn<QString>("expected");
    QTest::newRow("several") << u"a:b/c\\d:"_s << u":/\\"_s << u"abcd"_s;
    QTest::newRow("none there") << u"abc"_s << u":/\\"_s << u"abc"_s;
    QTest::newRow("no characters") << u"abc"_s << u""_s << u"abc"_s;
    QTest::newRow("all") << u"aaa"_s << u"a"_s << u""_s;
    QTest::newRow("pairs count as one")
        << u"\U0001F600-\U0001F601"_s << u"\U0001F600"_s << u"-\U0001F601"_s;
}

void TestStringAdditions::removingCharacters()
{
    QFETCH(QString, text);
    QFETCH(QString, characters);
    QTEST(stringByRemovingCharacters(text, characters), "expected");
}

void TestStringAdditions::trimming_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("both ends") << u" \t a b \r\n"_s << u"a b"_s;
    QTest::newRow("Unicode blanks") << u"\u00A0\u2003\u3000x\u2028\u0085\u202F"_s << u"x"_s;
    QTest::newRow("zero width stays") << u"\u200Bx\uFEFF"_s << u"\u200Bx\uFEFF"_s;
    QTest::newRow("blanks only") << u" \u00A0 "_s << u""_s;
}

void TestStringAdditions::trimming()
{
    QFETCH(QString, text);
    QTEST(stringByTrimmingWhitespace(text), "expected");
}

void TestStringAdditions::caseConversion_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("upper");
    QTest::addColumn<QString>("lower");
    QTest::newRow("plain") << u"Photo_1"_s << u"PHOTO_1"_s << u"photo_1"_s;
    QTest::newRow("sharp s") << u"Straße"_s << u"STRASSE"_s << u"straße"_s;
    QTest::newRow("ligature") << u"ﬁn"_s << u"FIN"_s << u"ﬁn"_s;
    QTest::newRow("apostrophe n") << u"ŉ"_s << u"ʼN"_s << u"ŉ"_s;
    QTest::newRow("final sigma") << u"ΟΔΟΣ"_s << u"ΟΔΟΣ"_s << u"οδος"_s;
    QTest::newRow("dotted capital i") << u"İi"_s << u"İI"_s << u"i\u0307i"_s;
    QTest::newRow("half a pair") << u"ä\xDC80"_s << u"Ä\xDC80"_s << u"ä\xDC80"_s;
}

void TestStringAdditions::caseConversion()
{
    QFETCH(QString, text);
    QTEST(upperCased(text), "upper");
    QTEST(lowerCased(text), "lower");
}

void TestStringAdditions::padding_data()
{
    QTest::addColumn<qint64>("width");
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<qsizetype>("missing");
    QTest::newRow("shorter") << qint64{5} << qsizetype{2} << qsizetype{3};
    QTest::newRow("as long") << qint64{5} << qsizetype{5} << qsizetype{0};
    QTest::newRow("longer") << qint64{5} << qsizetype{9} << qsizetype{0};
    QTest::newRow("negative width")
        << std::numeric_limits<qint64>::min() << qsizetype{9} << qsizetype{0};
    QTest::newRow("wild width") << std::numeric_limits<qint64>::max() << qsizetype{0}
                                << kMaxPadding;
}

void TestStringAdditions::padding()
{
    QFETCH(qint64, width);
    QFETCH(qsizetype, length);
    QTEST(missingPadding(width, length), "missing");
    QString characters;
    for (qint64 index = -1; index <= 5; ++index)
        characters += paddingCharacter(index);
    QCOMPARE(characters, u"x0 *-_x"_s);
}

QTEST_GUILESS_MAIN(TestStringAdditions)
#include "tst_stringadditions.moc"
