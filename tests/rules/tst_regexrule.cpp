// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TColorPalette.h"
#include "platform/TreeCoder.h"
#include "rules/TRegExRule.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

namespace {

using Pairs = QList<std::pair<QString, QString>>;

TRegExPairsPtr pairArray(const Pairs &pairs)
{
    auto array = std::make_shared<TRegExPairs>();
    for (const auto &[match, replace] : pairs)
        array->push_back(std::make_shared<TRegExMatchReplace>(match, replace));
    return array;
}

TFileObject fileNamed(const QString &name)
{
    return TFileObject(TFileItem{TFileURL::fileURLWithPath(u"/tmp/"_s + name), {}});
}

QString processed(TRegExRule &rule, const QString &name, TErrorLog *log = nullptr)
{
    TFileObject file = fileNamed(name);
    TRuleDict dict;
    return rule.processWithFileObject(file, log, dict);
}

} // namespace

Q_DECLARE_METATYPE(Pairs)

class RegExRuleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rewritesTheFilesName_data()
    {
        const Table<Pairs, QString, QString> row("pairs", "name", "expected");

        row("no pairs", Pairs{}, u"a.txt", u"???RegEx???");
        row("in order", Pairs{{u"a"_s, u"b"_s}, {u"b"_s, u"c"_s}}, u"ab", u"cc");
        row("bad pattern first", Pairs{{u"("_s, u"x"_s}, {u"b"_s, u"c"_s}}, u"abc", u"");
        row("later pairs go on from nothing", Pairs{{u"("_s, u"x"_s}, {u"^$"_s, u"new"_s}}, u"abc",
            u"new");
    }

    void rewritesTheFilesName()
    {
        QFETCH(Pairs, pairs);
        QFETCH(QString, name);
        QFETCH(QString, expected);
        TRegExRule rule;
        rule.setRegArray(pairArray(pairs));
        TFileObject file = fileNamed(name);
        TErrorLog log;
        TRuleDict dict;
        const QString text = rule.processWithFileObject(file, &log, dict);
        QCOMPARE(text, expected);
        QVERIFY(!text.isNull());
        QVERIFY(log.isEmpty());
        QVERIFY(file.errLog().isEmpty());
        QVERIFY(!dict.tookTooLong);
    }

    void readsTheAssembledName()
    {
        TRegExRule rule;
        rule.setRegArray(pairArray({{u" "_s, u"-"_s}}));
        TFileObject file = fileNamed(u"own name"_s);
        TRuleDict dict;
        dict.result = u"Holiday 01"_s;
        for (const auto &[source, expected] : {std::pair{0, u"own-name"_s},
                                               {1, u"Holiday-01"_s},
                                               {7, u"Holiday-01"_s},
                                               {-1, u"Holiday-01"_s}}) {
            rule.setSource(source);
            QCOMPARE(rule.processWithFileObject(file, nullptr, dict), expected);
        }
    }

    void replacesTheAssembledName_data()
    {
        const Table<int, int, QString, bool> row("source", "replaceAll", "partial", "replaces");

        row("both on", 1, 1, u"new", true);
        row("any positive source, any flag", 2, -1, u"new", true);
        row("empty fragment", 1, 1, u"", true);
        row("no fragment", 1, 1, QString(), false);
        row("appended", 1, 0, u"new", false);
        row("file's name", 0, 1, u"new", false);
        row("negative source", -1, 1, u"new", false);
    }

    void replacesTheAssembledName()
    {
        QFETCH(int, source);
        QFETCH(int, replaceAll);
        QFETCH(QString, partial);
        QFETCH(bool, replaces);
        TRegExRule rule;
        rule.setSource(source);
        rule.setReplaceAll(replaceAll);
        TRuleDict dict;
        dict.partial = partial;
        QString name = u"old"_s;
        QCOMPARE(rule.postProcessResult(name, nullptr, dict), replaces);
        QCOMPARE(name, replaces ? partial : u"old"_s);
    }

    void followsEditsOfItsPairs()
    {
        TRegExRule rule;
        rule.setRegArray(pairArray({{u"a"_s, u"1"_s}}));
        QCOMPARE(processed(rule, u"abc"_s), u"1bc"_s);
        rule.regArray()->front()->match = u"b"_s;
        QCOMPARE(processed(rule, u"abc"_s), u"a1c"_s);
        rule.regArray()->front()->replace = u"2"_s;
        QCOMPARE(processed(rule, u"abc"_s), u"a2c"_s);
        rule.regArray()->push_back(std::make_shared<TRegExMatchReplace>(u"c"_s, u""_s));
        QCOMPARE(processed(rule, u"abc"_s), u"a2"_s);
        rule.regArray()->erase(rule.regArray()->begin());
        QCOMPARE(processed(rule, u"abc"_s), u"ab"_s);
    }

    void reportsPatternsThatTakeTooLong()
    {
        const TErrorTypes expected{TErrorTypes::kCritical,
                                   u"The regular expression takes too long for this name."_s};
        TRegExRule rule;
        rule.setRegArray(pairArray({{u"(a+)+b"_s, u""_s}, {u"^$"_s, u"new"_s}}));
        TFileObject file = fileNamed(QString(100, u'a'));
        TErrorLog log;
        TRuleDict dict;
        QCOMPARE(rule.processWithFileObject(file, &log, dict), u""_s);
        QVERIFY(dict.tookTooLong);
        QCOMPARE(log.count(), 1);
        QCOMPARE(log.entries().front(), expected);
        QCOMPARE(file.errLog(), log);

        // The next name has a budget of its own.
        TRuleDict next;
        TFileObject harmless = fileNamed(u"aab-"_s);
        QCOMPARE(rule.processWithFileObject(harmless, &log, next), u"-"_s);
        QVERIFY(!next.tookTooLong);
    }

    void sharesOneBudgetAmongItsPairs()
    {
        const QString name(28, u'a');
        const std::pair<QString, QString> costly{u"(a|aa)+b"_s, u""_s};
        TRegExRule rule;
        Pairs pairs;
        TRuleDict dict;
        TFileObject file = fileNamed(name);
        pairs.append(costly);
        rule.setRegArray(pairArray(pairs));
        QCOMPARE(rule.processWithFileObject(file, nullptr, dict), name);
        pairs.append(Pairs(3, costly));
        rule.setRegArray(pairArray(pairs));
        QCOMPARE(rule.processWithFileObject(file, nullptr, dict), u""_s);
        QVERIFY(dict.tookTooLong);
    }

    void copiesShareThePairsAndTakeANewColor()
    {
        TColorPalette::sharedPalette().reset();
        TRegExRule rule;
        rule.setName(u"mine"_s);
        rule.setSource(1);
        rule.setReplaceAll(1);
        const auto copy = std::dynamic_pointer_cast<TRegExRule>(rule.copy());
        QVERIFY(copy);
        QCOMPARE(copy->regArray(), rule.regArray());
        QCOMPARE(copy->source(), 1);
        QCOMPARE(copy->replaceAll(), 1);
        QCOMPARE(copy->name(), u"(RegEx)"_s);
        QCOMPARE(rule.theColor(), TColor::fromHex(u"9C988A"));
        QCOMPARE(copy->theColor(), TColor::fromHex(u"8DCDC1"));
        QCOMPARE(QStringList(rule.properties().keys()),
                 (QStringList{u"regArray"_s, u"replaceAll"_s, u"source"_s}));
    }

    void takesPairsFromDictionaries()
    {
        TRegExRule rule;
        rule.setProperties(
            {{u"regArray"_s, QVariantList{QVariantMap{{u"match"_s, u"a"_s}, {u"replace"_s, u"b"_s}},
                                          QVariantMap{{u"match"_s, u"c"_s}}}},
             {u"theID"_s, 7}});
        QCOMPARE(*rule.regArray()->at(0), TRegExMatchReplace(u"a"_s, u"b"_s));
        QCOMPARE(*rule.regArray()->at(1), TRegExMatchReplace(u"c"_s, u"replace with this"_s));
        QCOMPARE(rule.theID(), 0);
        rule.setProperties({});
        QCOMPARE(rule.regArray()->size(), 2);
    }

    void anArchiveWithoutPairsLeavesThemUnset()
    {
        TreeArchive archive;
        archive.appendObject(TRegExRule().archiveClass(), [](TEncoder &) {});
        const auto decoded = TRegExRule::decoding();
        archive.forEachObject([&](const TDecoder &coder) { decoded->initWithCoder(coder); });
        QVERIFY(!decoded->regArray());
        QVERIFY(!decoded->properties().contains(u"regArray"_s));
        QVERIFY(!decoded->theColor().isSet());
        QCOMPARE(decoded->name(), u"(RegEx)"_s);
        QCOMPARE(processed(*decoded, u"a"_s), u"???RegEx???"_s);
    }
};

QTEST_GUILESS_MAIN(RegExRuleTest)
#include "tst_regexrule.moc"
