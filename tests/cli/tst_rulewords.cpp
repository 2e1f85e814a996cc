// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Recipe.h"
#include "cli/RuleForms.h"
#include "cli/RuleWords.h"
#include "document/TRuleKinds.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

namespace {

QString jsonOf(const TRuleModel &rule)
{
    JsonWriter json;
    RuleForms::writeRule(json, rule);
    return QString::fromUtf8(json.bytes());
}

TRulePtr made(const QString &text)
{
    const auto written = RuleWords::rule(text);
    return written ? makeRule(written.value()).value() : nullptr;
}

} // namespace

class TestRuleWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableListsExactlyTheSettingsOfEachKind()
    {
        QCOMPARE(RuleSettings::kindNames(), TRuleKinds::identifiers());
        const QStringList noSettings{u"name"_s,  u"thePreview"_s,    u"theColor"_s,
                                     u"theID"_s, u"globalCounter"_s, u"extensionCounters"_s};
        for (const RuleKindInfo &kind : RuleSettings::kinds()) {
            QStringList expected = TRuleKinds::ruleForIdentifier(kind.kind)->properties().keys();
            for (const QString &key : noSettings)
                expected.removeAll(key);
            if (kind.kind == "CSVTag"_L1)
                expected.append(u"theRows"_s); // absent until a table is loaded
            QStringList listed;
            for (const SettingInfo &setting : kind.settings())
                listed.append(setting.key);
            listed.sort();
            expected.sort();
            QCOMPARE(listed, expected);
        }
    }

    void defaultsHaveTheTypeInTheTable()
    {
        for (const RuleKindInfo &kind : RuleSettings::kinds()) {
            const QVariantMap defaults = TRuleKinds::ruleForIdentifier(kind.kind)->properties();
            for (const SettingInfo &setting : kind.settings()) {
                const int type = defaults.value(setting.key).typeId();
                const bool fits = setting.type == SettingType::Integer ? type == QMetaType::LongLong
                                  : setting.type == SettingType::Boolean ? type == QMetaType::Bool
                                  : setting.type == SettingType::Text ? type == QMetaType::QString
                                                                      : true;
                QVERIFY2(fits, qPrintable(kind.kind + u'.' + setting.key));
            }
        }
    }

    void extensionSettingsAreListedAndApplied()
    {
        TExtensionHandler handler;
        const QVariantMap defaults = extensionSettings(handler);
        QVariantMap changed;
        QStringList listed;
        for (const SettingInfo &setting : RuleSettings::extensionSettings()) {
            listed.append(setting.key);
            changed[setting.key] = setting.type == SettingType::Integer ? QVariant(qint64{7})
                                   : setting.type == SettingType::Text  ? QVariant(u"changed"_s)
                                                                        : QVariant(QVariantList());
        }
        listed.sort();
        QCOMPARE(listed, defaults.keys());
        applyExtension(handler, changed);
        QCOMPARE(extensionSettings(handler), changed);
    }

    void rules_data()
    {
        Table<QString, QString>("text", "json");
        const auto row = [](const char *name, const QString &text, const QString &json) {
            QTest::newRow(name) << text << json;
        };
        row("kind alone", u"Text"_s, uR"({"kind":"Text"})"_s);
        row("text", u"Text theText=\"Holiday \""_s, uR"({"kind":"Text","theText":"Holiday "})"_s);
        row("empty text", u"Text theText="_s, uR"({"kind":"Text","theText":""})"_s);
        row("value with equals", u"Text theText=a=b"_s, uR"({"kind":"Text","theText":"a=b"})"_s);
        row("integers", u"Counter startValue=-3 padding=3 manualPadding=1"_s,
            uR"({"kind":"Counter","startValue":-3,"padding":3,"manualPadding":1})"_s);
        row("largest integer", u"Counter startValue=9223372036854775807"_s,
            uR"({"kind":"Counter","startValue":9223372036854775807})"_s);
        row("default values say nothing", u"Counter startValue=1"_s, uR"({"kind":"Counter"})"_s);
        row("boolean words", u"CSVTag skipFirst=1 wrap=0 trimQuotes=false"_s,
            uR"({"kind":"CSVTag","skipFirst":true,"wrap":false,"trimQuotes":false})"_s);
        row("index without a meaning of its own", u"Original whichProperty=17"_s,
            uR"({"kind":"Original","whichProperty":17})"_s);
        row("inherited settings", u"ImageTag category=Exif theTag=Flash paddingChar=9"_s,
            uR"({"kind":"ImageTag","category":"Exif","theTag":"Flash","paddingChar":9})"_s);
        row("category without its blank", u"ImageTag category=ExifAux"_s,
            uR"({"kind":"ImageTag","category":"Exif Aux"})"_s);
        row("separator", u"Separator separatorIndex=2"_s,
            uR"({"kind":"Separator","separatorIndex":2})"_s);
        row("pair", u"RegExTag match=\"\\s+\" replace=\"_\""_s,
            uR"({"kind":"RegExTag","regArray":[{"match":"\\s+","replace":"_"}]})"_s);
        row("JSON form",
            uR"( {"kind":"RegExTag","source":1,"replaceAll":1,"regArray":[{"match":"a","replace":"b"},{"match":"b","replace":""}]})"_s,
            uR"({"kind":"RegExTag","regArray":[{"match":"a","replace":"b"},{"match":"b","replace":""}],"source":1,"replaceAll":1})"_s);
        row("JSON booleans as numbers", uR"({"kind":"CSVTag","skipFirst":1,"wrap":0})"_s,
            uR"({"kind":"CSVTag","skipFirst":true,"wrap":false})"_s);
        row("JSON table", uR"({"kind":"CSVTag","theRows":[["a","b"],[],["c"]]})"_s,
            uR"({"kind":"CSVTag","theRows":[["a","b"],[],["c"]]})"_s);
        row("JSON short form", uR"({"kind":"RegExTag","match":"a","replace":""})"_s,
            uR"({"kind":"RegExTag","regArray":[{"match":"a","replace":""}]})"_s);
        row("bytes that are not UTF-8", uR"({"kind":"Text","theText":"\udcff"})"_s,
            uR"({"kind":"Text","theText":"\udcff"})"_s);
    }

    void rules()
    {
        QFETCH(QString, text);
        const auto written = RuleWords::rule(text);
        QVERIFY2(written, qPrintable(written.message()));
        QTEST(jsonOf(*makeRule(written.value()).value()), "json");
    }

    void wrongRules_data()
    {
        Table<QString, QString>("text", "mentioned");
        const auto row = [](const char *name, const QString &text, const QString &mentioned) {
            QTest::newRow(name) << text << mentioned;
        };
        row("nothing", u""_s, u"one of: Text, Counter"_s);
        row("key given twice", uR"({"kind":"Text","theText":"a","theTe\u0078t":"b"})"_s,
            u"theText is given twice"_s);
        row("unknown kind", u"Texd theText=a"_s,
            u"\"Texd\"; possible: Text, Counter, Original, Date, ImageTag, AudioTag, VideoTag, "
            u"CSVTag, "
            "RegExTag, Separator"_s);
        row("kind in small letters", u"text"_s, u"\"text\"; possible: Text"_s);
        row("unknown key", u"Text theTxt=a"_s,
            u"Text: unknown setting \"theTxt\"; possible: theText"_s);
        row("key of the base", u"Text name=a"_s, u"\"name\""_s);
        row("run state", u"Counter globalCounter=4"_s, u"\"globalCounter\""_s);
        row("word without a value", u"Counter padding"_s, u"\"padding\" is no setting"_s);
        row("no integer", u"Counter startValue=1.5"_s,
            u"startValue wants a whole number, not \"1.5\""_s);
        row("too large", u"Counter startValue=9223372036854775808"_s, u"startValue wants"_s);
        row("no boolean", u"CSVTag wrap=yes"_s, u"wrap wants true, false, 1 or 0, not \"yes\""_s);
        row("boolean for an integer", u"Counter manualPadding=true"_s, u"manualPadding wants"_s);
        row("separator out of range", u"Separator separatorIndex=10"_s,
            u"separatorIndex cannot be 10; possible: 0 a blank"_s);
        row("negative separator", u"Separator separatorIndex=-1"_s, u"cannot be -1"_s);
        row("unknown category", u"ImageTag category=exif"_s,
            u"\"exif\"; possible: General, Exif, Exif Aux"_s);
        row("twice", u"Text theText=a theText=b"_s, u"theText is given twice"_s);
        row("open quote", u"Text theText=\"a"_s, u"never closed"_s);
        row("half a pair", u"RegExTag match=a"_s, u"belong together"_s);
        row("table as a word", u"CSVTag theRows=a"_s, u"theRows wants"_s);
        row("file and rows", uR"({"kind":"CSVTag","file":"a.csv","theRows":[]})"_s,
            u"one or the other"_s);
        row("JSON without kind", uR"({"theText":"a"})"_s,
            u"a rule needs a \"kind\"; possible: Text"_s);
        row("JSON kind no text", uR"({"kind":null})"_s, u"a text, not null; possible: Text"_s);
        row("JSON text for an integer", uR"({"kind":"Counter","startValue":"1"})"_s,
            u"startValue wants a whole number, not \"1\""_s);
        row("JSON fraction", uR"({"kind":"Counter","startValue":1.5})"_s, u"not 1.5"_s);
        row("JSON null", uR"({"kind":"Text","theText":null})"_s,
            u"theText wants a text, not null"_s);
        row("JSON number for a text", uR"({"kind":"Text","theText":5})"_s, u"not 5"_s);
        row("JSON pair with a typo",
            uR"({"kind":"RegExTag","regArray":[{"match":"a","repl":"b"}]})"_s,
            u"\"match\" and \"replace\""_s);
        row("JSON pairs no array", uR"({"kind":"RegExTag","regArray":{}})"_s,
            u"regArray wants an array"_s);
        row("JSON cell no text", uR"({"kind":"CSVTag","theRows":[["a",1]]})"_s, u"[\"a\",1]"_s);
        row("JSON broken", u"{\"kind\":\n\"Text\",}"_s, u"line 2"_s);
    }

    void wrongRules()
    {
        QFETCH(QString, text);
        QFETCH(QString, mentioned);
        const auto written = RuleWords::rule(text);
        QVERIFY(!written);
        QVERIFY2(written.message().contains(mentioned), qPrintable(written.message()));
    }

    void extensions_data()
    {
        const Table<QString, QString> row("text", "result");
        row("words", u"handlingMethod=4 regEx='\\W' rePattern= regAccess=1 ignoreCase=0",
            u"4 0 ??? 0 0 \\W 1  htm:html");
        row("map",
            u"handlingMethod=2 map=htm:html,jpeg:jpg,:txt mapRemainderChoice=1 "
            "replacer=x caseHandling=2",
            u"2 2 x 1 1 \\s 2 _ htm:html jpeg:jpg :txt");
        row("JSON", uR"({"handlingMethod":2,"mapArray":[{"original":"a","target":"b"}]})"_s,
            u"2 0 ??? 0 1 \\s 2 _ a:b");
        row("empty map", uR"({"mapArray":[]})"_s, u"0 0 ??? 0 1 \\s 2 _");
    }

    void extensions()
    {
        QFETCH(QString, text);
        const auto written = RuleWords::extension(text);
        QVERIFY2(written, qPrintable(written.message()));
        TExtensionHandler handler;
        applyExtension(handler, written.value());
        QString result = u"%1 %2 %3 %4 %5 %6 %7 %8"_s.arg(
            QString::number(handler.handlingMethod()), QString::number(handler.caseHandling()),
            handler.replacer(), QString::number(handler.mapRemainderChoice()),
            QString::number(handler.ignoreCase()), handler.regEx(),
            QString::number(handler.regAccess()), handler.rePattern());
        for (const TExtensionMap &row : handler.mapArray())
            result += u' ' + row.original + u':' + row.target;
        QTEST(result, "result");
    }

    void wrongExtensions_data()
    {
        const Table<QString, QString> row("text", "mentioned");
        row("unknown key", u"method=2",
            u"\"method\"; possible: handlingMethod, mapArray, replacer, "
            "caseHandling, mapRemainderChoice, ignoreCase, regEx, regAccess, "
            "rePattern, map");
        row("rule kind", uR"({"kind":"Text"})"_s, u"unknown setting \"kind\"");
        row("pair without colon", u"map=htm", u"not \"htm\"");
        row("type", u"handlingMethod=map", u"handlingMethod wants a whole number");
    }

    void wrongExtensions()
    {
        QFETCH(QString, text);
        QFETCH(QString, mentioned);
        const auto written = RuleWords::extension(text);
        QVERIFY(!written);
        QVERIFY2(written.message().contains(mentioned), qPrintable(written.message()));
    }

    void writtenRuleReadsBackTheSame_data()
    {
        const Table<QString, bool> row("text", "asWords");
        row("words", u"Original whichProperty=1 stringToLookFor='a b' charsToStrip=", true);
        row("quotes", u"Text theText=\"it's \\\"x\\\" \"", true);
        row("one pair", u"RegExTag match='^(\\d+)$' replace=' $1'", true);
        row("separator", u"Separator separatorIndex=9", true);
        row("two pairs",
            uR"({"kind":"RegExTag","regArray":[{"match":"a","replace":"b"},{"match":"c","replace":"d"}]})"_s,
            false);
        row("table", uR"({"kind":"CSVTag","theRows":[["a"],["b"]],"useColumn":2})"_s, false);
    }

    void writtenRuleReadsBackTheSame()
    {
        QFETCH(QString, text);
        QFETCH(bool, asWords);
        const TRulePtr rule = made(text);
        const QString again = RuleForms::ruleText(*rule);
        QCOMPARE(!again.startsWith(u'{'), asWords);
        QCOMPARE(jsonOf(*made(again)), jsonOf(*rule));
        QCOMPARE(jsonOf(*made(jsonOf(*rule))), jsonOf(*rule));
    }
};

QTEST_GUILESS_MAIN(TestRuleWords)
#include "tst_rulewords.moc"
