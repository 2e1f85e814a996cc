// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TColorPalette.h"
#include "rules/TSeparatorRule.h"
#include "support/Rules.h"
#include "support/Table.h"

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

/// Evaluates nothing itself.
class AbstractRule : public TRuleModel
{
public:
    std::shared_ptr<TRuleModel> newInstance() const override
    {
        return std::make_shared<AbstractRule>();
    }
    TArchiveClass archiveClass() const override { return {}; }
    void updatePreview() override {}
    QString editingViewController() const override { return {}; }
};

std::vector<int> levels(const TErrorLog &log)
{
    std::vector<int> result;
    for (const TErrorTypes &entry : log)
        result.push_back(entry.errClass);
    return result;
}

/// The rule that an archive gives in which only these texts and numbers were written.
TRulePtr decodedRule(TArchiveClass type, const QVariantMap &values)
{
    TreeArchive archive;
    archive.appendObject(type, [&values](TEncoder &coder) {
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            coder.encodeVariant(QLatin1StringView(value.key().toLatin1()), *value);
    });
    TRulePtr rule;
    archive.forEachObject(
        [&rule](const TDecoder &coder) { rule = TRuleKinds::ruleFromDecoder(coder); });
    return rule;
}

} // namespace

/// What every kind has in common, and the two kinds that only emit a constant.
class TestTextRule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newRulesTakeTheNextColour()
    {
        TColorPalette::sharedPalette().reset();
        QStringList colours;
        for (int i = 0; i < 6; ++i)
            colours.append(makeRule(u"Text"_s)->theColor().hex());
        QCOMPARE(colours, (QStringList{u"9C988A"_s, u"8DCDC1"_s, u"D3E397"_s, u"FFF5C3"_s,
                                       u"EB6E44"_s, u"9C988A"_s}));

        const TRulePtr rule = makeRule(u"Separator"_s);
        QCOMPARE(rule->theColor().hex(), u"8DCDC1"_s);
        const TRulePtr copy = rule->copy();
        QCOMPARE(copy->theColor(), rule->theColor());
        // The copy drew a colour before it took the original's; an archive draws none.
        TRuleKinds::copyArrayViaEncode({rule, rule});
        QCOMPARE(makeRule(u"Text"_s)->theColor().hex(), u"FFF5C3"_s);
    }

    void anAbstractRuleReportsItself()
    {
        AbstractRule rule;
        TFileObject file;
        TErrorLog log;
        TRuleDict dict;
        QCOMPARE(rule.processWithFileObject(file, &log, dict), u"(error)"_s);
        QCOMPARE(file.errLog(), log);
        QCOMPARE(log.begin()->errDesc.toString(), u"abstract rule called"_s);
        QCOMPARE(log.currentStatus(), TErrorTypes::kCritical);
        QString name = u"so far"_s;
        QVERIFY(!rule.postProcessResult(name, &log, dict));
        QCOMPARE(name, u"so far"_s);
    }

    void defaults_data()
    {
        const Table<QString, QString, QString, QString> row("kind", "name", "icon", "editor");
        row("text", u"Text", u"Tavrin", u"text puzzle white",
            u"TEditTextRuleControllerViewController");
        row("separator", u"Separator", u"\" \"", u"separator_tag_white",
            u"TEditSeparatorRuleViewController");
        row("counter", u"Counter", u"1, 2, 3", u"counter_tag_white",
            u"TEditCountRuleViewController");
        row("date", u"Date", u"(Now)", u"date_tag", u"TEditDateRuleViewController");
        row("original", u"Original", u"(File Name)", u"file_tag", u"TEditOriginalViewController");
    }

    void defaults()
    {
        QFETCH(QString, kind);
        const TRulePtr rule = TRuleKinds::ruleForIdentifier(kind);
        QTEST(rule->name(), "name");
        QTEST(rule->thePreview().name(), "icon");
        QTEST(rule->editingViewController(), "editor");
        QCOMPARE(rule->theID(), 0);
    }

    void emptyPropertiesChangeNothing()
    {
        for (const QString &kind :
             {u"Text"_s, u"Separator"_s, u"Counter"_s, u"Date"_s, u"Original"_s}) {
            const TRulePtr rule = TRuleKinds::ruleForIdentifier(kind);
            const QVariantMap before = rule->properties();
            rule->setProperties({});
            QCOMPARE(rule->properties(), before);
        }
    }

    void numbersAreReadByTheirIntegerValue()
    {
        const TRulePtr rule = makeRule(u"Separator"_s, {{u"separatorIndex"_s, 2.9}});
        QCOMPARE(rule->name(), u"-"_s);
        rule->setProperties({{u"separatorIndex"_s, u"4"_s}});
        rule->updatePreview();
        QCOMPARE(rule->name(), u"."_s);
    }

    void anArchiveWithoutColourGivesNone()
    {
        const TRulePtr rule =
            decodedRule(makeRule(u"Text"_s)->archiveClass(), {{u"theText"_s, u"abc"_s}});
        QVERIFY(!rule->theColor().isSet());
        QVERIFY(!rule->thePreview().isSet());
        QVERIFY(!rule->properties().contains(u"theColor"_s));
        QVERIFY(!rule->properties().contains(u"thePreview"_s));
        QCOMPARE(rule->properties().value(u"theID"_s), QVariant(0LL));
        QCOMPARE(rule->name(), u"abc"_s);
    }

    void anUnsetTextStaysUnset()
    {
        const TRulePtr rule = decodedRule(makeRule(u"Text"_s)->archiveClass(), {});
        QVERIFY(!rule->properties().contains(u"theText"_s));
        QVERIFY(!rule->properties().contains(u"name"_s));
        // A copy starts from a new rule, so what is unset takes the defaults.
        QCOMPARE(rule->copy()->properties().value(u"theText"_s), QVariant(u"Tavrin"_s));
    }

    void tileIsSetAtOnce()
    {
        const TRulePtr rule = makeRule(u"Text"_s);
        rule->setWithNSImage(TImage(u"tick"_s), 4, u"tile"_s);
        QCOMPARE(rule->thePreview().name(), u"tick"_s);
        QCOMPARE(rule->theID(), 4);
        QCOMPARE(rule->name(), u"tile"_s);
        rule->setWithCGImage(u"stop"_s, 5, u"bitmap"_s);
        QCOMPARE(rule->thePreview().name(), u"stop"_s);
        rule->setWithCGImage({}, 6, u"none"_s);
        QVERIFY(!rule->thePreview().isSet());
        QCOMPARE(rule->theID(), 6);
        QCOMPARE(rule->name(), u"none"_s);
    }

    void emptyTextWarnsTheGivenLogOnly()
    {
        const TRulePtr rule = textRule(u""_s);
        TFileObject file;
        TErrorLog log;
        TRuleDict dict;
        QCOMPARE(rule->processWithFileObject(file, &log, dict), u""_s);
        QCOMPARE(rule->processWithFileObject(file, nullptr, dict), u""_s);
        QCOMPARE(levels(log), std::vector<int>{TErrorTypes::kWarning});
        QCOMPARE(log.begin()->errDesc.toString(), u"Text constant is empty"_s);
        QVERIFY(file.errLog().isEmpty());

        rule->setProperties({{u"theText"_s, u" "_s}});
        QCOMPARE(rule->processWithFileObject(file, &log, dict), u" "_s);
        QCOMPARE(log.count(), 1);
    }

    void separators_data()
    {
        const Table<qint64, QString, QString> row("index", "text", "tile");
        const QString table = u" _-*.!(){}"_s;
        row("blank", 0, u" ", u"\" \"");
        for (qint64 index = 1; index < table.size(); ++index)
            QTest::addRow("%lld", index) << index << table.mid(index, 1) << table.mid(index, 1);
    }

    void separators()
    {
        QFETCH(qint64, index);
        const TRulePtr rule = makeRule(u"Separator"_s, {{u"separatorIndex"_s, index}});
        TFileObject file;
        TRuleDict dict;
        QTEST(rule->processWithFileObject(file, nullptr, dict), "text");
        QTEST(rule->name(), "tile");
    }

    void separatorIsFixedByThePreview()
    {
        TSeparatorRule rule;
        TFileObject file;
        TRuleDict dict;
        rule.setSeparatorIndex(1);
        QCOMPARE(rule.processWithFileObject(file, nullptr, dict), u" "_s);
        QCOMPARE(rule.processWithFileObject(file, nullptr), u"_"_s);
        QCOMPARE(rule.processWithFileObject(file, nullptr, dict), u"_"_s);
        QCOMPARE(rule.name(), u"\" \""_s);
    }

    void separatorOutOfRange_data()
    {
        const Table<qint64> row("index");
        row("10", 10);
        row("-1", -1);
    }

    void separatorOutOfRange()
    {
        QFETCH(qint64, index);
        TSeparatorRule rule;
        rule.setSeparatorIndex(index);
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, rule.updatePreview());
        const QVariantMap values{{u"separatorIndex"_s, index}};
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, decodedRule(rule.archiveClass(), values));
    }
};

QTEST_GUILESS_MAIN(TestTextRule)
#include "tst_textrule.moc"
