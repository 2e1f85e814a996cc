// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/RegexReplacer.h"
#include "support/Table.h"

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
    void replaces_data()
    {
        const Table<QString, QString, QString, QString> row("pattern", "replacement", "text",
                                                            "expected");

        row("blanks", u"\\s", u"_", u"my file name", u"my_file_name");
        row("group", u"(\\d+)", u"#$1", u"img12", u"img#12");
        row("whole match", u"\\d+", u"<$0>", u"a1b22", u"a<1>b<22>");
        row("named group", u"(?<year>\\d{4})", u"y${year}", u"in 2024", u"in y2024");
        row("number beyond the groups", u"(a)", u"$12", u"a", u"a2");
        row("group without part", u"(x)|b", u"[$1]", u"bx", u"[][x]");
        row("everything removed", u".+", u"", u"abc", u"");
        row("case matters", u"a", u"b", u"aA", u"bA");
        row("anchors of the whole text", u"^.|.$", u"-", u"ab\ncd", u"-b\nc-");
        row("dot stops at line ends", u"a.b", u"x", u"a\nb a.b", u"a\nb x");
        row("empty matches", u"x*", u"-", u"axb", u"-a--b-");
        row("empty match on nothing", u"^$", u"new", u"", u"new");
        row("empty matches keep pairs whole", u"(?=)", u"|", u"\U0001F600b", u"|\U0001F600|b|");
        row("half a pair is a character", u".", u"[$0]", QString(QChar(0xDC80)),
            u"["_s + QChar(0xDC80) + u"]"_s);
        row("escaped dollar", u"a", u"\\$1\\\\", u"a", u"$1\\");
        row("escaped letter", u"a", u"\\n", u"a", u"n");
        row("escaped code", u"a", u"\\u0041\\U0001F600\\u00", u"a", u"A\U0001F600u00");
        row("lone backslash at the end", u"a", u"b\\", u"a", u"b");
        row("text with a zero", u"\\x00", u"0", QString(u"a\0b"_s), u"a0b");
    }

    void replaces()
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

    void refusesTemplatesWhetherOrNotTheyMatch_data()
    {
        const Table<QString> row("replacement");
        for (const char *replacement : {"$", "a$", "$x", "$$", "$ 1", "$2", "$9", "${", "${}",
                                        "${word", "${nobody}", "${wo rd}", "${1}", "\\\\$", "$1$2"})
            row(replacement, QString::fromLatin1(replacement));
    }

    void refusesTemplatesWhetherOrNotTheyMatch()
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

    void refusesPatterns_data()
    {
        const Table<QString> row("pattern");
        row("empty", u"");
        row("null", QString());
        for (const char *pattern : {"(", ")", "[", "a{2,1}", "*", "\\", "(?<=a*)b", "\\p{Nonsense}",
                                    "(?<n>a)(?<n>b)", "a{99999999999}"})
            row(pattern, QString::fromLatin1(pattern));
        row("deep nesting", QString(50'000, u'(') + QString(50'000, u')'));
        row("too long", QString(1'000'000, u'a'));
    }

    void refusesPatterns()
    {
        QFETCH(QString, pattern);
        Budget budget;
        const RegexReplacer replacer(pattern, u"x"_s);
        QVERIFY(!replacer.isValid());
        QVERIFY(!replacer.problem().isEmpty());
        QVERIFY(replacer.replaceAll(u"a"_s, budget).isNull());
    }

    /// Random templates over the characters that mean something, on a text that matches.
    void readsTemplatesAsTheEngineDoes()
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

    void sharesTheTextWhenNothingMatches()
    {
        Budget budget;
        const RegexReplacer replacer(u"\\s"_s, u"_"_s);
        const QString text(u"noblanks"_s);
        QCOMPARE(replacer.replaceAll(text, budget).constData(), text.constData());
        QVERIFY(!replacer.replaceAll(QString(), budget).isNull());
    }

    void stopsExplodingPatterns_data()
    {
        const Table<QString, QString> row("pattern", "text");
        const QString many(200, u'a');
        row("nested repetition", u"(a+)+b", many);
        row("overlapping choices", u"(a|aa)+$", many + u"b"_s);
        row("repeated anything", u"(.*)*x", many);
        row("words", u"(\\w+\\s?)+!", many);
        row("optional parts", u"a?"_s.repeated(30) + u"a"_s.repeated(30) + u"b"_s, many);
        row("counted parts", u"(((a{1,99}){1,99}){1,99}){1,99}b", many);
        row("back references", u"(a*)*\\1b", many);
        row("long text", u"(.)(?=.*\\1)", QString(200'000, u'a'));
        row("every match pays", u"a(?=(a|aa){0,18}b)|a", QString(20'000, u'a'));
        row("many groups", u"()"_s.repeated(1'000) + u"(?:a|aa)*c"_s, many);
    }

    void stopsExplodingPatterns()
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

    void countsTheSameStepsEveryTime()
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

    void spendsOneBudgetOverSeveralPatterns()
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

    void boundsTextsThatGrow()
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

    void worksAfterAMove()
    {
        RegexReplacer first(u"(a+)+b"_s, u""_s);
        const RegexReplacer second = std::move(first);
        Budget budget;
        QCOMPARE(second.replaceAll(u"aab-"_s, budget), u"-"_s);
        QVERIFY(second.replaceAll(QString(100, u'a'), budget).isNull());
        QVERIFY(budget.exceeded);
    }
};

QTEST_GUILESS_MAIN(RegexReplacerTest)
#include "tst_regexreplacer.moc"
