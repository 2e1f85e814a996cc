// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TColorPalette.h"
#include "rules/TSeparatorRule.h"
#include "support/Rules.h"

#include <QBuffer>
#include <QTest>

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
    void newRulesTakeTheNextColour();
    void anAbstractRuleReportsItself();
    void defaults_data();
    void defaults();
    void settingsSurviveCopyAndArchive_data();
    void settingsSurviveCopyAndArchive();
    void emptyPropertiesChangeNothing();
    void numbersAreReadByTheirIntegerValue();
    void anArchiveWithoutColourGivesNone();
    void anUnsetTextStaysUnset();
    void tileIsSetAtOnce();
    void emptyTextWarnsTheGivenLogOnly();
    void separators_data();
    void separators();
    void separatorIsFixedByThePreview();
    void separatorOutOfRange_data();
    void separatorOutOfRange();
};

void TestTextRule::newRulesTakeTheNextColour()
{
    TColorPalette::sharedPalette().reset();
    QStringList colours;
    for (int i = 0; i < 6; ++i)
        colours.append(makeRule(u"Text"_s)->theColor().hex());
    QCOMPARE(colours, (QStringList{u"9C988A"_s, u"8DCDC1"_s, u"D3E397"_s, u"FFF5C3"_s, u"EB6E44"_s,
                                   u"9C988A"_s}));

    const TRulePtr rule = makeRule(u"Separator"_s);
    QCOMPARE(rule->theColor().hex(), u"8DCDC1"_s);
    const TRulePtr copy = rule->copy();
    QCOMPARE(copy->theColor(), rule->theColor());
    // The copy drew a colour before it took the original's; an archive draws none.
    TRuleKinds::copyArrayViaEncode({rule, rule});
    QCOMPARE(makeRule(u"Text"_s)->theColor().hex(), u"FFF5C3"_s);
}

void TestTextRule::anAbstractRuleReportsItself()
{
    AbstractRule rule;
    TFileObject file;
    TErrorLog log;
    TRuleDict dict;
    QCOMPARE(rule.processWithFileObject(file, &log, dict), u"(error)"_s);
    QCOMPARE(file.errLog(), log);
    QCOMPARE(log.begin()->errDesc, u"abstract rule called"_s);
    QCOMPARE(log.currentStatus(), TErrorTypes::kCritical);
    QString name = u"so far"_s;
    QVERIFY(!rule.postProcessResult(name, &log, dict));
    QCOMPARE(name, u"so far"_s);
}

void TestTextRule::defaults_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("editor");
    QTest::newRow("text") << u"Text"_s << u"Tavrin"_s << u"text puzzle white"_s
                          << u"TEditTextRuleControllerViewController"_s;
    QTest::newRow("separator") << u"Separator"_s << u"\" \""_s << u"separator_tag_white"_s
                               << u"TEditSeparatorRuleViewController"_s;
    QTest::newRow("counter") << u"Counter"_s << u"1, 2, 3"_s << u"counter_tag_white"_s
                             << u"TEditCountRuleViewController"_s;
    QTest::newRow("date") << u"Date"_s << u"(Now)"_s << u"date_tag"_s
                          << u"TEditDateRuleViewController"_s;
    QTest::newRow("original") << u"Original"_s << u"(File Name)"_s << u"file_tag"_s
                              << u"TEditOriginalViewController"_s;
}

void TestTextRule::defaults()
{
    QFETCH(QString, kind);
    const TRulePtr rule = TRuleKinds::ruleForIdentifier(kind);
    QTEST(rule->name(), "name");
    QTEST(rule->thePreview().name(), "icon");
    QTEST(rule->editingViewController(), "editor");
    QCOMPARE(rule->theID(), 0);
}

void TestTextRule::settingsSurviveCopyAndArchive_data()
{
    const QVariantMap dateSettings{{u"padding"_s, 7LL},         {u"paddingChar"_s, 2LL},
                                   {u"paddingPosition"_s, 1LL}, {u"limitSize"_s, 3LL},
                                   {u"maxSize"_s, -4LL},        {u"dateFormat"_s, 12LL},
                                   {u"timeFormat"_s, 0LL}};
    QVariantMap originalSettings{{u"whichProperty"_s, 2LL},       {u"sizeFormat"_s, 3LL},
                                 {u"showSizeUnit"_s, false},      {u"separateUnit"_s, false},
                                 {u"dropFromBeginning"_s, 4LL},   {u"dropFromEnd"_s, 5LL},
                                 {u"postprocessing"_s, 6LL},      {u"caseConversion"_s, 7LL},
                                 {u"blankHandling"_s, 8LL},       {u"caseSensitiveSearch"_s, 0LL},
                                 {u"stringToReplace"_s, u"日"_s}, {u"stringToLookFor"_s, u"ü"_s},
                                 {u"whichDate"_s, 9LL},           {u"parentLevel"_s, 10LL},
                                 {u"charsToStrip"_s, u""_s}};
    originalSettings.insert(dateSettings);

    QTest::addColumn<QString>("kind");
    QTest::addColumn<QVariantMap>("settings");
    QTest::newRow("text") << u"Text"_s << QVariantMap{{u"theText"_s, u"Zürich"_s}};
    QTest::newRow("separator") << u"Separator"_s << QVariantMap{{u"separatorIndex"_s, 9LL}};
    QTest::newRow("counter") << u"Counter"_s
                             << QVariantMap{{u"startValue"_s, 1LL << 40},
                                            {u"individualFileTypes"_s, true},
                                            {u"extensionCounters"_s,
                                             QVariantMap{{u"jpg"_s, 5LL}, {u"日本"_s, -6LL}}},
                                            {u"counterFormat"_s, 2LL},
                                            {u"padding"_s, 3LL},
                                            {u"paddingChar"_s, 4LL},
                                            {u"increment"_s, -5LL},
                                            {u"manualPadding"_s, 6LL},
                                            {u"counterType"_s, 7LL}};
    QTest::newRow("date") << u"Date"_s << dateSettings;
    QTest::newRow("original") << u"Original"_s << originalSettings;
}

void TestTextRule::settingsSurviveCopyAndArchive()
{
    QFETCH(QString, kind);
    QFETCH(QVariantMap, settings);
    settings.insert(u"theID"_s, 77LL);
    const TRulePtr rule = makeRule(kind, settings);
    QBuffer file;
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(TRuleKinds::archiveRules({rule}, file));
    const TResult<TRuleList> read = TRuleKinds::unarchiveRules(file.data());
    QVERIFY2(read, qPrintable(read.message()));
    const TRuleList copies{rule->copy(), TRuleKinds::copyArrayViaEncode({rule}).front(),
                           read.value().front()};
    for (const TRulePtr &copy : copies) {
        const QVariantMap properties = copy->properties();
        for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting) {
            QCOMPARE(properties.value(setting.key()), *setting);
            QCOMPARE(properties.value(setting.key()).typeId(), setting->typeId());
        }
        QCOMPARE(copy->name(), rule->name());
        QCOMPARE(copy->thePreview(), rule->thePreview());
        QCOMPARE(copy->theColor(), rule->theColor());
        QCOMPARE(TRuleKinds::identifierForRule(*copy), kind);
    }
}

void TestTextRule::emptyPropertiesChangeNothing()
{
    for (const QString &kind :
         {u"Text"_s, u"Separator"_s, u"Counter"_s, u"Date"_s, u"Original"_s}) {
        const TRulePtr rule = TRuleKinds::ruleForIdentifier(kind);
        const QVariantMap before = rule->properties();
        rule->setProperties({});
        QCOMPARE(rule->properties(), before);
    }
}

void TestTextRule::numbersAreReadByTheirIntegerValue()
{
    const TRulePtr rule = makeRule(u"Separator"_s, {{u"separatorIndex"_s, 2.9}});
    QCOMPARE(rule->name(), u"-"_s);
    rule->setProperties({{u"separatorIndex"_s, u"4"_s}});
    rule->updatePreview();
    QCOMPARE(rule->name(), u"."_s);
}

void TestTextRule::anArchiveWithoutColourGivesNone()
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

void TestTextRule::anUnsetTextStaysUnset()
{
    const TRulePtr rule = decodedRule(makeRule(u"Text"_s)->archiveClass(), {});
    QVERIFY(!rule->properties().contains(u"theText"_s));
    QVERIFY(!rule->properties().contains(u"name"_s));
    // A copy starts from a new rule, so what is unset takes the defaults.
    QCOMPARE(rule->copy()->properties().value(u"theText"_s), QVariant(u"Tavrin"_s));
}

void TestTextRule::tileIsSetAtOnce()
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

void TestTextRule::emptyTextWarnsTheGivenLogOnly()
{
    const TRulePtr rule = textRule(u""_s);
    TFileObject file;
    TErrorLog log;
    TRuleDict dict;
    QCOMPARE(rule->processWithFileObject(file, &log, dict), u""_s);
    QCOMPARE(rule->processWithFileObject(file, nullptr, dict), u""_s);
    QCOMPARE(levels(log), std::vector<int>{TErrorTypes::kWarning});
    QCOMPARE(log.begin()->errDesc, u"Text constant is empty"_s);
    QVERIFY(file.errLog().isEmpty());

    rule->setProperties({{u"theText"_s, u" "_s}});
    QCOMPARE(rule->processWithFileObject(file, &log, dict), u" "_s);
    QCOMPARE(log.count(), 1);
}

void TestTextRule::separators_data()
{
    QTest::addColumn<qint64>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("tile");
    const QString table = u" _-*.!(){}"_s;
    QTest::newRow("blank") << qint64{0} << u" "_s << u"\" \""_s;
    for (qint64 index = 1; index < table.size(); ++index)
        QTest::addRow("%lld", index) << index << table.mid(index, 1) << table.mid(index, 1);
}

void TestTextRule::separators()
{
    QFETCH(qint64, index);
    const TRulePtr rule = makeRule(u"Separator"_s, {{u"separatorIndex"_s, index}});
    TFileObject file;
    TRuleDict dict;
    QTEST(rule->processWithFileObject(file, nullptr, dict), "text");
    QTEST(rule->name(), "tile");
}

void TestTextRule::separatorIsFixedByThePreview()
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

void TestTextRule::separatorOutOfRange_data()
{
    QTest::addColumn<qint64>("index");
    QTest::newRow("10") << qint64{10};
    QTest::newRow("-1") << qint64{-1};
}

void TestTextRule::separatorOutOfRange()
{
    QFETCH(qint64, index);
    TSeparatorRule rule;
    rule.setSeparatorIndex(index);
    QVERIFY_THROWS_EXCEPTION(std::out_of_range, rule.updatePreview());
    const QVariantMap values{{u"separatorIndex"_s, index}};
    QVERIFY_THROWS_EXCEPTION(std::out_of_range, decodedRule(rule.archiveClass(), values));
}

QTEST_GUILESS_MAIN(TestTextRule)
#include "tst_textrule.moc"
