// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/RegexReplacer.h"

#include <QTest>

#include <unicode/uregex.h>

#include <array>
#include <random>

using namespace Qt::StringLiterals;

namespace {

using Budget = RegexReplacer::Budget;

QString replaced(const QString &pattern, const QString &replacement, const QString &text)
{
    Budget budget;
    return RegexReplacer(pattern, replacement).replaceAll(text, budget);
}

const UChar *units(const QString &text)
{
    return reinterpret_cast<const UChar *>(text.utf16());
}

/// What the engine's own replacement gives; null when it fails.
QString replacedByEngine(const QString &pattern, const QString &replacement, const QString &text)
{
    UErrorCode status = U_ZERO_ERROR;
    URegularExpression *expression =
        uregex_open(units(pattern), static_cast<int32_t>(pattern.size()), 0, nullptr, &status);
    uregex_setText(expression, units(text), static_cast<int32_t>(text.size()), &status);
    std::array<UChar, 4096> buffer{};
    const int32_t length =
        uregex_replaceAll(expression, units(replacement), static_cast<int32_t>(replacement.size()),
                          buffer.data(), buffer.size(), &status);
    uregex_close(expression);
    if (U_FAILURE(status))
        return {};
    return QString::fromUtf16(reinterpret_cast<const char16_t *>(buffer.data()), length);
}

} // namespace

class RegexReplacerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replaces_data();
    void replaces();
    void refusesTemplatesWhetherOrNotTheyMatch_data();
    void refusesTemplatesWhetherOrNotTheyMatch();
    void refusesPatterns_data();
    void refusesPatterns();
    void readsTemplatesAsTheEngineDoes();
    void sharesTheTextWhenNothingMatches();
    void stopsExplodingPatterns_data();
    void stopsExplodingPatterns();
    void countsTheSameStepsEveryTime();
    void spendsOneBudgetOverSeveralPatterns();
    void boundsTextsThatGrow();
    void worksAfterAMove();
};

void RegexReplacerTest::replaces_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("blanks") << u"\\s"_s << u"_"_s << u"my file name"_s << u"my_file_name"_s;
    QTest::newRow("group") << u"(\\d+)"_s << u"#$1"_s << u"img12"_s << u"img#12"_s;
    QTest::newRow("whole match") << u"\\d+"_s << u"<$0>"_s << u"a1b22"_s << u"a<1>b<22>"_s;
    QTest::newRow("named group") << u"(?<year>\\d{4})"_s << u"y${year}"_s << u"in 2024"_s
                                 << u"in y2024"_s;
    QTest::newRow("number beyond the groups") << u"(a)"_s << u"$12"_s << u"a"_s << u"a2"_s;
    QTest::newRow("group without part") << u"(x)|b"_s << u"[$1]"_s << u"bx"_s << u"[][x]"_s;
    QTest::newRow("everything removed") << u".+"_s << u""_s << u"abc"_s << u""_s;
    QTest::newRow("case matters") << u"a"_s << u"b"_s << u"aA"_s << u"bA"_s;
    QTest::newRow("anchors of the whole text")
        << u"^.|.$"_s << u"-"_s << u"ab\ncd"_s << u"-b\nc-"_s;
    QTest::newRow("dot stops at line ends") << u"a.b"_s << u"x"_s << u"a\nb a.b"_s << u"a\nb x"_s;
    QTest::newRow("empty matches") << u"x*"_s << u"-"_s << u"axb"_s << u"-a--b-"_s;
    QTest::newRow("empty match on nothing") << u"^$"_s << u"new"_s << u""_s << u"new"_s;
    QTest::newRow("empty matches keep pairs whole")
        << u"(?=)"_s << u"|"_s << u"\U0001F600b"_s << u"|\U0001F600|b|"_s;
    QTest::newRow("half a pair is a character")
        << u"."_s << u"[$0]"_s << QString(QChar(0xDC80)) << u"["_s + QChar(0xDC80) + u"]"_s;
    QTest::newRow("escaped dollar") << u"a"_s << u"\\$1\\\\"_s << u"a"_s << u"$1\\"_s;
    QTest::newRow("escaped letter") << u"a"_s << u"\\n"_s << u"a"_s << u"n"_s;
    QTest::newRow("escaped code") << u"a"_s << u"\\u0041\\U0001F600\\u00"_s << u"a"_s
                                  << u"A\U0001F600u00"_s;
    QTest::newRow("lone backslash at the end") << u"a"_s << u"b\\"_s << u"a"_s << u"b"_s;
    QTest::newRow("text with a zero") << u"\\x00"_s << u"0"_s << QString(u"a\0b"_s) << u"a0b"_s;
}

void RegexReplacerTest::replaces()
{
    QFETCH(QString, pattern);
    QFETCH(QString, replacement);
    QFETCH(QString, text);
    QFETCH(QString, expected);
    const QString result = replaced(pattern, replacement, text);
    QVERIFY(!result.isNull());
    QCOMPARE(result, expected);
    QCOMPARE(result, replacedByEngine(pattern, replacement, text));
}

void RegexReplacerTest::refusesTemplatesWhetherOrNotTheyMatch_data()
{
    QTest::addColumn<QString>("replacement");
    for (const char *replacement : {"$", "a$", "$x", "$$", "$ 1", "$2", "$9", "${", "${}", "${word",
                                    "${nobody}", "${wo rd}", "${1}", "\\\\$", "$1$2"})
        QTest::newRow(replacement) << QString::fromLatin1(replacement);
}

void RegexReplacerTest::refusesTemplatesWhetherOrNotTheyMatch()
{
    QFETCH(QString, replacement);
    Budget budget;
    const RegexReplacer replacer(u"(?<word>a)"_s, replacement);
    QVERIFY(!replacer.isValid());
    QVERIFY(!replacer.problem().isEmpty());
    QVERIFY(replacer.replaceAll(u"a"_s, budget).isNull());
    QVERIFY(replacer.replaceAll(u"b"_s, budget).isNull());
    QVERIFY(!budget.exceeded);
    QVERIFY(replacedByEngine(u"(?<word>a)"_s, replacement, u"a"_s).isNull());
}

void RegexReplacerTest::refusesPatterns_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("null") << QString();
    for (const char *pattern : {"(", ")", "[", "a{2,1}", "*", "\\", "(?<=a*)b", "\\p{Nonsense}",
                                "(?<n>a)(?<n>b)", "a{99999999999}"})
        QTest::newRow(pattern) << QString::fromLatin1(pattern);
    QTest::newRow("deep nesting") << QString(50'000, u'(') + QString(50'000, u')');
    QTest::newRow("too long") << QString(1'000'000, u'a');
}

void RegexReplacerTest::refusesPatterns()
{
    QFETCH(QString, pattern);
    Budget budget;
    const RegexReplacer replacer(pattern, u"x"_s);
    QVERIFY(!replacer.isValid());
    QVERIFY(!replacer.problem().isEmpty());
    QVERIFY(replacer.replaceAll(u"a"_s, budget).isNull());
}

/// Random templates over the characters that mean something, on a text that matches.
void RegexReplacerTest::readsTemplatesAsTheEngineDoes()
{
    const std::array kParts{u"$"_s,   u"\\"_s, u"{"_s,  u"}"_s,   u"1"_s,          u"2"_s,
                            u"0"_s,   u"9"_s,  u"a"_s,  u"ab0"_s, u"$1"_s,         u"${ab}"_s,
                            u"u00"_s, u"41"_s, u"U"_s,  u"é"_s,   u"\U0001F600"_s, u"\u0663"_s,
                            u"x"_s,   u"_"_s,  u"\n"_s, u"$0"_s};
    const QString pattern = u"(?<ab>.)(?<ab0>\\d)?(c)(d)?(e)?(f)?(g)?(h)?(i)?(j)?(k)?"_s;
    std::mt19937 random(1); // NOLINT: the same templates in every run
    int valid = 0;
    for (int round = 0; round < 20'000; ++round) {
        QString replacement;
        for (auto count = random() % 6; count > 0; --count)
            replacement += kParts.at(random() % kParts.size());
        const QString text = u"x1c yc\U0001F600c"_s;
        const QString expected = replacedByEngine(pattern, replacement, text);
        const QString actual = replaced(pattern, replacement, text);
        if (actual.isNull() != expected.isNull() || actual != expected)
            QFAIL(qPrintable(u"%1: %2, not %3"_s.arg(replacement, actual, expected)));
        valid += actual.isNull() ? 0 : 1;
    }
    QVERIFY(valid > 1'000);
}

void RegexReplacerTest::sharesTheTextWhenNothingMatches()
{
    Budget budget;
    const RegexReplacer replacer(u"\\s"_s, u"_"_s);
    const QString text(u"noblanks"_s);
    QCOMPARE(replacer.replaceAll(text, budget).constData(), text.constData());
    QVERIFY(!replacer.replaceAll(QString(), budget).isNull());
}

void RegexReplacerTest::stopsExplodingPatterns_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    const QString many(200, u'a');
    QTest::newRow("nested repetition") << u"(a+)+b"_s << many;
    QTest::newRow("overlapping choices") << u"(a|aa)+$"_s << many + u"b"_s;
    QTest::newRow("repeated anything") << u"(.*)*x"_s << many;
    QTest::newRow("words") << u"(\\w+\\s?)+!"_s << many;
    QTest::newRow("optional parts") << u"a?"_s.repeated(30) + u"a"_s.repeated(30) + u"b"_s << many;
    QTest::newRow("counted parts") << u"(((a{1,99}){1,99}){1,99}){1,99}b"_s << many;
    QTest::newRow("back references") << u"(a*)*\\1b"_s << many;
    QTest::newRow("long text") << u"(.)(?=.*\\1)"_s << QString(200'000, u'a');
    QTest::newRow("every match pays") << u"a(?=(a|aa){0,18}b)|a"_s << QString(20'000, u'a');
    QTest::newRow("many groups") << u"()"_s.repeated(1'000) + u"(?:a|aa)*c"_s << many;
}

void RegexReplacerTest::stopsExplodingPatterns()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    Budget budget;
    const RegexReplacer replacer(pattern, u""_s);
    QVERIFY2(replacer.isValid(), qPrintable(replacer.problem()));
    QVERIFY(replacer.replaceAll(text, budget).isNull());
    QVERIFY(budget.exceeded);

    Budget fresh;
    QCOMPARE(replacer.replaceAll(u"-"_s, fresh), u"-"_s);
}

void RegexReplacerTest::countsTheSameStepsEveryTime()
{
    const RegexReplacer replacer(u"(a|aa)+b"_s, u""_s);
    const QString text(24, u'a');
    Budget first;
    QCOMPARE(replacer.replaceAll(text, first), text);
    QVERIFY(first.steps < Budget::kStepsPerName);

    Budget other;
    replacer.replaceAll(u"aaaaaaaaaaaab"_s, other);
    Budget second;
    replacer.replaceAll(text, second);
    QCOMPARE(second.steps, first.steps);
}

void RegexReplacerTest::spendsOneBudgetOverSeveralPatterns()
{
    const RegexReplacer replacer(u"(a|aa)+b"_s, u""_s);
    const QString text(24, u'a');
    Budget budget;
    replacer.replaceAll(text, budget);
    const qint64 cost = Budget::kStepsPerName - budget.steps;
    QVERIFY(cost > 0);

    budget.steps = cost * 5 / 2;
    QVERIFY(!replacer.replaceAll(text, budget).isNull());
    QVERIFY(!replacer.replaceAll(text, budget).isNull());
    QVERIFY(replacer.replaceAll(text, budget).isNull());
    QVERIFY(budget.exceeded);
    QVERIFY(replacer.replaceAll(u""_s, budget).isNull());
}

void RegexReplacerTest::boundsTextsThatGrow()
{
    const RegexReplacer doubling(u"^.*$"_s, u"$0$0"_s);
    Budget budget;
    QString text = u"ab"_s;
    int rounds = 0;
    for (; !budget.exceeded && rounds < 64; ++rounds)
        text = doubling.replaceAll(text, budget);
    QVERIFY(text.isNull());
    QCOMPARE(rounds, 18);

    Budget fresh;
    const RegexReplacer manyPieces(u"()"_s, u"$1"_s.repeated(30'000));
    QVERIFY(manyPieces.replaceAll(QString(200'000, u'a'), fresh).isNull());
    QVERIFY(fresh.exceeded);
}

void RegexReplacerTest::worksAfterAMove()
{
    RegexReplacer first(u"(a+)+b"_s, u""_s);
    const RegexReplacer second = std::move(first);
    Budget budget;
    QCOMPARE(second.replaceAll(u"aab-"_s, budget), u"-"_s);
    QVERIFY(second.replaceAll(QString(100, u'a'), budget).isNull());
    QVERIFY(budget.exceeded);
}

QTEST_GUILESS_MAIN(RegexReplacerTest)
#include "tst_regexreplacer.moc"
