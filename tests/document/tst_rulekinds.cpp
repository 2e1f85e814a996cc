// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TColorPalette.h"
#include "document/TRuleKinds.h"
#include "platform/KeyedArchiver.h"
#include "rules/TCountRule.h"
#include "rules/TRegExRule.h"
#include "rules/TSeparatorRule.h"
#include "rules/TTextRule.h"
#include "settings/logging.h"
#include "support/Table.h"

#include <QBuffer>

using namespace Qt::StringLiterals;

namespace {

const TStringTablePtr kTable = std::make_shared<TStringTable>(
    TStringTable{{u"Name"_s, u"Ort"_s}, {u"Jörg"_s, u""_s, u"\U0001F600"_s}, {}});

QByteArray archived(const TRuleList &rules)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return TRuleKinds::archiveRules(rules, buffer) ? buffer.data() : QByteArray();
}

/// Properties in which shared values compare by what they hold.
QVariantMap comparable(const TRuleModel &rule)
{
    QVariantMap map = rule.properties();
    if (const auto pairs = map.value(u"regArray"_s).value<TRegExPairsPtr>()) {
        QVariantList list;
        for (const auto &pair : *pairs)
            list.append(pair->properties());
        map[u"regArray"_s] = list;
    }
    if (const auto table = map.value(u"theRows"_s).value<TStringTablePtr>())
        map[u"theRows"_s] = QVariantList(table->begin(), table->end());
    return map;
}

/// A rule none of whose settings has the value that init gives it.
TRulePtr unusualRule(const QString &identifier)
{
    const TRulePtr rule = TRuleKinds::ruleForIdentifier(identifier);
    QVariantMap settings = rule->properties();
    for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
        if (setting->typeId() == QMetaType::LongLong)
            *setting = setting->toLongLong() + 3;
        else if (setting->typeId() == QMetaType::Bool)
            *setting = !setting->toBool();
        else if (setting->typeId() == QMetaType::QString)
            *setting = u"ä\U0001F600\n"_s + setting->toString();
    }
    settings[u"theRows"_s] = QVariant::fromValue(kTable);
    settings[u"extensionCounters"_s] = QVariantMap{{u"JPG"_s, 4}, {u""_s, -1}};
    settings[u"regArray"_s] =
        QVariantList{QVariantMap{{u"match"_s, u"(\\d)"_s}, {u"replace"_s, u""_s}}, QVariantMap()};
    rule->setProperties(settings);
    rule->setTheID(-5);
    rule->updatePreview();
    return rule;
}

} // namespace

class RuleKindsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsThePalette()
    {
        QCOMPARE(TRuleKinds::identifiers(),
                 (QStringList{u"Text"_s, u"Counter"_s, u"Original"_s, u"Date"_s, u"ImageTag"_s,
                              u"AudioTag"_s, u"VideoTag"_s, u"CSVTag"_s, u"RegExTag"_s,
                              u"Separator"_s}));
        QStringList classes;
        for (const QString &identifier : TRuleKinds::identifiers()) {
            const TRulePtr rule = TRuleKinds::ruleForIdentifier(identifier);
            classes.append(QString::fromLatin1(rule->archiveClass().front()));
            QCOMPARE(TRuleKinds::identifierForRule(*rule), identifier);
            QVERIFY(rule->thePreview().isSet());
            QVERIFY(rule->theColor().isSet());
        }
        QCOMPARE(classes,
                 (QStringList{u"TTextRule"_s, u"TCountRule"_s, u"TOriginalRule"_s, u"TDateRule"_s,
                              u"TImageTagRule"_s, u"TAudioRule"_s, u"TVideoRule"_s, u"TCSVRule"_s,
                              u"TRegExRule"_s, u"TSeparatorRule"_s}));
    }

    void logsAnUnknownIdentifier()
    {
        QStringList lines;
        setLogSink([&lines](const QString &line) { lines.append(line); });
        QVERIFY(!TRuleKinds::ruleForIdentifier(u"text"_s));
        setLogSink({});
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.constFirst().endsWith(u":Unknown draggable identifier 'text' encountered"_s));
    }

    void keepsEverySetting_data()
    {
        const Table<QString> row("identifier");
        for (const QString &identifier : TRuleKinds::identifiers())
            row(qPrintable(identifier), identifier);
    }

    void keepsEverySetting()
    {
        QFETCH(QString, identifier);
        const TRulePtr rule = unusualRule(identifier);
        QVariantMap expected = comparable(*rule);
        if (expected.contains(u"globalCounter"_s)) {
            QVERIFY(expected[u"globalCounter"_s].toLongLong() != 0);
            expected[u"globalCounter"_s] = qint64{0};
        }
        const TRuleList copies = TRuleKinds::copyArrayViaEncode({rule, rule});
        const TResult<TRuleList> read = TRuleKinds::unarchiveRules(archived({rule, rule}));
        QVERIFY2(read, qPrintable(read.message()));
        for (const TRuleList &list : {copies, read.value()}) {
            QCOMPARE(list.size(), 2);
            QVERIFY(list.front() != rule && list.front() != list.back());
            QCOMPARE(TRuleKinds::identifierForRule(*list.back()), identifier);
            QCOMPARE(comparable(*list.back()), expected);
            QCOMPARE(list.back()->name(), rule->name());
            QCOMPARE(list.back()->theColor(), rule->theColor());
            QCOMPARE(list.back()->thePreview(), rule->thePreview());
            QCOMPARE(list.back()->theID(), -5);
        }
    }
    void copiesOfRules_data() { keepsEverySetting_data(); }

    void copiesOfRules()
    {
        QFETCH(QString, identifier);
        const TRulePtr rule = unusualRule(identifier);
        const TRulePtr copy = rule->copy();
        QCOMPARE(TRuleKinds::identifierForRule(*copy), identifier);
        QCOMPARE(comparable(*copy), comparable(*rule));
        const bool ofItsOwn = identifier == u"RegExTag"_s;
        QCOMPARE(copy->theColor() != rule->theColor(), ofItsOwn);
        QCOMPARE(copy->theID(), ofItsOwn ? 0 : -5);
    }

    void deepCopiesAreApart()
    {
        const auto rule = std::make_shared<TRegExRule>();
        rule->regArray()->push_back(std::make_shared<TRegExMatchReplace>(u"a"_s, u"b"_s));
        TColorPalette::sharedPalette().reset();
        const TRuleList copies = TRuleKinds::copyArrayViaEncode({rule, rule});
        QCOMPARE(TRegExRule().theColor(), TColor::fromHex(u"9C988A"));
        rule->regArray()->front()->match = u"changed"_s;
        const auto &copy = dynamic_cast<const TRegExRule &>(*copies.front());
        QCOMPARE(copy.regArray()->front()->match, u"a"_s);
        QCOMPARE(copies.size(), 2);
        QVERIFY(TRuleKinds::copyArrayViaEncode({}).empty());
    }

    void refusesArchivesOfOtherThings()
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        KeyedArchiver archiver(buffer);
        const TTextRule text;
        archiver.appendObject(text.archiveClass(),
                              [&text](TEncoder &coder) { text.encodeWithCoder(coder); });
        const TErrorTypes problem = TErrorTypes::newErrorWithClass(1, u"x"_s);
        archiver.appendObject(TErrorTypes::archiveClass(),
                              [&problem](TEncoder &coder) { problem.encodeWithCoder(coder); });
        QVERIFY(archiver.finish());
        const TResult<TRuleList> read = TRuleKinds::unarchiveRules(buffer.data());
        QVERIFY(!read);
        QVERIFY2(read.message().contains(u"TErrorTypes"_s), qPrintable(read.message()));
    }

    void refusesImpossibleSettings()
    {
        const auto separator = std::make_shared<TSeparatorRule>();
        separator->setSeparatorIndex(10);
        const TResult<TRuleList> read = TRuleKinds::unarchiveRules(archived({separator}));
        QVERIFY(!read);
        QVERIFY(!read.message().isEmpty());
    }

    void refusesRubbish_data()
    {
        const Table<QByteArray> row("data");
        const QByteArray good = archived({std::make_shared<TTextRule>()});
        QVERIFY(TRuleKinds::unarchiveRules(good));
        row("nothing", QByteArray());
        row("text", QByteArray("theText=Holiday"));
        row("half", good.left(good.size() / 2));
        row("zeros", QByteArray(200, '\0'));
    }

    void refusesRubbish()
    {
        QFETCH(QByteArray, data);
        const TResult<TRuleList> read = TRuleKinds::unarchiveRules(data);
        QVERIFY(!read);
        QVERIFY(!read.message().isEmpty());
    }
};

QTEST_GUILESS_MAIN(RuleKindsTest)
#include "tst_rulekinds.moc"
