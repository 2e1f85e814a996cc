// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentDrag.h"
#include "settings/logging.h"
#include "support/DocumentFixture.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Action = std::function<void(DocumentFixture &)>;

} // namespace

class TestTDocumentRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void edits_data();
    void edits();
    void ruleEditIsOneStep();
    void extensionEditIsOneStep();
    void notifications_data();
    void notifications();
    void drags();
    void presets();
    void liveUpdate_data();
    void liveUpdate();
    void colourCoding();

private:
    /// A document with one file and the rules a, b and c.
    std::unique_ptr<DocumentFixture> m_fixture;
    TDocument *m_document = nullptr;
};

void TestTDocumentRules::init()
{
    m_fixture = std::make_unique<DocumentFixture>();
    m_document = m_fixture->document.get();
    QVERIFY(m_fixture->drop({m_fixture->tree.file(u"file.x"_s)}));
    QVERIFY(m_fixture->useRules({textRule(u"a"_s), textRule(u"b"_s), textRule(u"c"_s)}));
}

void TestTDocumentRules::edits_data()
{
    QTest::addColumn<Action>("edit");
    QTest::addColumn<QString>("undoName");
    QTest::addColumn<QString>("rules");
    const auto move = [](std::vector<qsizetype> positions, qsizetype before) {
        return Action([=](DocumentFixture &f) {
            const auto data = TDocumentDrag::dataForRulesAt(f.document->ruleArray(), positions,
                                                            f.document->myUUID());
            QVERIFY(f.document->ruleEditorAcceptDrop(*data, before));
        });
    };
    const auto addFromPalette = [](qsizetype position) {
        return Action([=](DocumentFixture &f) {
            const auto data = TDocumentDrag::dataForTile(u"Text"_s);
            QVERIFY(f.document->ruleEditorAcceptDrop(*data, position));
        });
    };
    const Action drop = [](DocumentFixture &f) {
        const auto data =
            TDocumentDrag::dataForRulesAt(f.document->ruleArray(), {1, 2}, u"Doc-other"_s);
        QVERIFY(f.document->ruleEditorAcceptDrop(*data, 0));
    };
    const Action rejected = [](DocumentFixture &f) {
        QMimeData data;
        data.setData(TDocumentDrag::rulesType(), "no archive");
        QVERIFY(!f.document->ruleEditorAcceptDrop(data, 0));
        QVERIFY(!f.document->ruleEditorAcceptDrop(QMimeData(), 0));
    };
    const Action remove = [](DocumentFixture &f) {
        f.document->deleteRule(f.document->ruleArray()[1]);
    };
    QTest::newRow("add at a place") << addFromPalette(1) << u"Add Rule"_s << u"aTavrinbc"_s;
    QTest::newRow("add beyond the end") << addFromPalette(9) << u"Add Rule"_s << u"abcTavrin"_s;
    QTest::newRow("add from another document") << drop << u"Add Rule"_s << u"bcabc"_s;
    QTest::newRow("damaged drag") << rejected << u"Add Rule"_s << u"abc"_s;
    QTest::newRow("move back") << move({2}, 0) << u"Move Rule"_s << u"cab"_s;
    QTest::newRow("move to the end") << move({0}, 3) << u"Move Rule"_s << u"bca"_s;
    QTest::newRow("move two") << move({0, 1}, 3) << u"Move Rule"_s << u"cab"_s;
    QTest::newRow("onto itself") << move({1}, 1) << u"Add Rule"_s << u"abc"_s;
    QTest::newRow("delete") << remove << u"Delete Rule"_s << u"ac"_s;
    QTest::newRow("delete a foreign rule")
        << Action([](DocumentFixture &f) { f.document->deleteRule(textRule(u"z"_s)); })
        << u"Add Rule"_s << u"abc"_s;
}

void TestTDocumentRules::edits()
{
    QFETCH(const Action, edit);
    QFETCH(const QString, undoName);
    QFETCH(const QString, rules);
    const TRuleList before = m_document->ruleArray();
    const QSignalSpy changes(m_document, &TDocument::rulesChanged);
    edit(*m_fixture);
    QCOMPARE(m_document->rulesToString(), rules);
    QCOMPARE(m_document->undoStack().undoText(), undoName);
    QCOMPARE(changes.count(), rules == "abc"_L1 ? 0 : 1);
    QVERIFY(m_fixture->settle());
    QCOMPARE(m_fixture->targets(), QStringList{rules});
    if (rules == "abc"_L1)
        return;
    m_document->undoStack().undo();
    QCOMPARE(m_document->ruleArray(), before);
    QVERIFY(m_fixture->settle());
    QCOMPARE(m_fixture->targets(), QStringList{u"abc"_s});
    m_document->undoStack().redo();
    QVERIFY(m_fixture->settle());
    QCOMPARE(m_fixture->targets(), QStringList{rules});
}

void TestTDocumentRules::ruleEditIsOneStep()
{
    const TRulePtr rule = m_document->ruleArray()[1];
    const auto type = [&](const QString &text) {
        rule->setProperties({{u"theText"_s, text}});
        rule->updatePreview();
        m_fixture->notifications.post(u"ruleChanged"_s,
                                      {{u"theModel"_s, QVariant::fromValue(rule)}});
    };
    const int steps = m_document->undoStack().count();
    m_document->beginRuleEdit(rule);
    m_document->endRuleEdit();
    QCOMPARE(m_document->undoStack().count(), steps); // nothing was changed
    // A counter counts while its editor is open, which is no edit.
    QVERIFY(m_fixture->useRules({makeRule(u"Counter"_s)}));
    m_document->beginRuleEdit(m_document->ruleArray()[0]);
    m_document->testRun();
    m_document->endRuleEdit();
    QCOMPARE(m_document->undoStack().undoText(), u"Add Rule"_s);
    m_document->undoStack().undo();
    m_document->beginRuleEdit(rule);
    type(u"x"_s);
    type(u"xy"_s);
    m_document->endRuleEdit();
    m_document->endRuleEdit();
    QCOMPARE(m_document->undoStack().count(), steps + 1);
    QCOMPARE(m_document->undoStack().undoText(), u"Edit Rule"_s);
    for (const auto &[undo, expected] : {std::pair(true, u"abc"_s), {false, u"axyc"_s}}) {
        undo ? m_document->undoStack().undo() : m_document->undoStack().redo();
        QCOMPARE(m_document->rulesToString(), expected);
        QVERIFY(m_fixture->settle());
        QCOMPARE(m_fixture->targets(), QStringList{expected});
    }
}

void TestTDocumentRules::extensionEditIsOneStep()
{
    TExtensionHandler &handler = m_document->theExtensionHandler();
    const QVariantMap before = m_document->extensionHandlerProperties();
    QCOMPARE(before.size(), 9);
    m_document->testRun();
    QVERIFY(m_document->readyToGo());
    m_document->beginExtensionEdit();
    QVERIFY(!m_document->readyToGo());
    handler.setHandlingMethod(TExtensionHandler::kRegEx);
    handler.setMapArray({});
    handler.setReplacer(u"r"_s);
    handler.setCaseHandling(1);
    handler.setMapRemainderChoice(1);
    handler.setIgnoreCase(0);
    handler.setRegEx(u"x"_s);
    handler.setRegAccess(0);
    handler.setRePattern(u"y"_s);
    m_document->extensionHandlerEdited();
    m_document->endExtensionEdit();
    const QVariantMap after = m_document->extensionHandlerProperties();
    QCOMPARE(m_document->undoStack().undoText(), u"Edit Extensions"_s);
    const auto shown = [this] {
        return m_document->sourceObjectArray()[0]->attributedTargetExtension().string();
    };
    QVERIFY(m_fixture->settle());
    QCOMPARE(shown(), u".file.y"_s);
    m_document->undoStack().undo();
    QCOMPARE(m_document->extensionHandlerProperties(), before);
    QVERIFY(m_fixture->settle());
    QCOMPARE(shown(), QString());
    m_document->undoStack().redo();
    QCOMPARE(m_document->extensionHandlerProperties(), after);
    m_document->beginExtensionEdit();
    m_document->endExtensionEdit();
    QVERIFY(!m_document->undoStack().canRedo());
    QCOMPARE(m_document->undoStack().index(), m_document->undoStack().count());
}

void TestTDocumentRules::notifications_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("rules");
    QTest::newRow("double click") << u"ruleDoubleClicked"_s << u"edit rule b at tile"_s << u"abc"_s;
    QTest::newRow("drag of a copy")
        << u"startDupeDrag"_s << u"drag copy of b at tile"_s << u"abc"_s;
    QTest::newRow("delete") << u"deleteRule"_s << QString() << u"ac"_s;
}

void TestTDocumentRules::notifications()
{
    QFETCH(const QString, name);
    QFETCH(const QString, call);
    ScriptedHost otherHost;
    const auto other = m_fixture->makeDocument(otherHost);
    m_fixture->host.calls.clear();
    const auto post = [&](TDocument *document) {
        m_fixture->notifications.post(
            name, {{u"theData"_s, QVariant::fromValue(document)},
                   {u"theView"_s, u" at tile"_s},
                   {u"theModel"_s, QVariant::fromValue(m_document->ruleArray()[1])}});
    };
    post(other.get());
    QCOMPARE(m_document->rulesToString(), u"abc"_s);
    QVERIFY(m_fixture->host.calls.isEmpty());
    post(m_document);
    QTEST(m_document->rulesToString(), "rules");
    QCOMPARE(m_fixture->host.calls.contains(call), !call.isEmpty());
}

void TestTDocumentRules::drags()
{
    QStringList lines;
    setLogSink([&lines](const QString &line) { lines += line; });
    QVERIFY(!TDocumentDrag::dataForTile(u"Nonsense"_s));
    setLogSink({});
    QVERIFY(lines.join(u' ').contains("Unknown draggable identifier 'Nonsense' encountered"_L1));
    namespace D = TDocumentDrag;
    const QStringList types{D::rulesType(), D::fileTableType(), D::fileObjectsType(),
                            D::indexesType()};
    QCOMPARE(D::baseType(), u"com.zel.tavrin"_s);
    QCOMPARE(types, (QStringList{u"com.zel.tavrin-rules"_s, u"com.zel.tavrin-fileTable"_s,
                                 u"com.zel.tavrin-fileObjects"_s, u"com.zel.tavrin-indexes"_s}));
    const auto data = TDocumentDrag::dataForTile(u"Counter"_s);
    QMimeData elsewhere; // as another program has it
    for (const QString &format : data->formats())
        elsewhere.setData(format, data->data(format));
    for (const QMimeData *drag :
         {static_cast<const QMimeData *>(data.get()), static_cast<const QMimeData *>(&elsewhere)}) {
        const TRuleList decoded = TDocumentDrag::rules(*drag);
        QCOMPARE(decoded.size(), 1U);
        QCOMPARE(TRuleKinds::identifierForRule(*decoded[0]), u"Counter"_s);
        QVERIFY(decoded != TDocumentDrag::rules(*drag));
    }
    const auto table = std::make_shared<TStringTable>(TStringTable{{u"cell"_s}});
    const TRulePtr csv =
        makeRule(u"CSVTag"_s, {{u"theRows"_s, QVariant::fromValue(TStringTablePtr(table))}});
    const auto dragged = TDocumentDrag::rules(*TDocumentDrag::dataForRules({csv}));
    QCOMPARE(dragged[0]->properties()[u"theRows"_s].value<TStringTablePtr>(), table); // no archive
    m_document->paletteButtonClicked();
    QCOMPARE(m_fixture->host.calls.back(),
             u"sheet: Please Drag Me!|To add this name element, please drag it into the editor "
             "below.|Or press Enter on a name element, or use the menu Rules > Add (Ctrl+1 to "
             "Ctrl+0).|OK"_s);
}

void TestTDocumentRules::presets()
{
    DocumentFixture &fixture = *m_fixture;
    const auto presetsAre = [&](const QStringList &names) {
        return fixture.pumpUntil([&] { return fixture.host.presetNames == names; });
    };
    fixture.host.presetAnswers = {u"A:B"_s, std::nullopt};
    m_document->rulePresetChosen(0);
    QCOMPARE(fixture.host.calls.back(), u"preset name: abc"_s);
    QVERIFY(presetsAre({u"A.B"_s}));
    m_document->rulePresetChosen(0); // cancelled
    m_document->deleteRule(m_document->ruleArray()[0]);
    for (const int fixed : {1, 2, 3, 5})
        m_document->rulePresetChosen(fixed);
    QCOMPARE(m_document->rulesToString(), u"bc"_s);
    const TRuleList before = m_document->ruleArray();
    m_document->rulePresetChosen(4);
    QCOMPARE(m_document->rulesToString(), u"abc"_s);
    QCOMPARE(m_document->undoStack().undoText(), u"Use Preset"_s);
    QVERIFY(m_document->ruleArray()[0] != m_document->thePresets()[0].second[0]);
    m_document->undoStack().undo();
    QCOMPARE(m_document->ruleArray(), before);
    m_document->deletePresets();
    QCOMPARE(fixture.host.calls.back(), u"preset removal"_s);
}

void TestTDocumentRules::liveUpdate_data()
{
    QTest::addColumn<Action>("change");
    QTest::addColumn<bool>("alsoWhenOff");
    QTest::newRow("option") << Action([](auto &f) {
        TOptions options;
        options.compliance = 1;
        f.document->setTheOptions(options);
    }) << false;
    QTest::newRow("duplicates") << Action([](auto &f) {
        f.document->setDuplicatesAreCritical(true);
    }) << false;
    QTest::newRow("extensions") << Action([](auto &f) { f.document->extensionHandlerEdited(); })
                                << false;
    QTest::newRow("colours") << Action([](auto &f) { f.document->toggleColorCode(); }) << false;
    QTest::newRow("sort") << Action([](auto &f) { f.document->sortNow(1); }) << false;
    QTest::newRow("explicitly") << Action([](auto &f) { f.document->doBackgroundRun(); }) << true;
}

void TestTDocumentRules::liveUpdate()
{
    QFETCH(const Action, change);
    change(*m_fixture);
    QVERIFY(m_document->isAnalysing());
    QVERIFY(m_fixture->settle());
    m_document->setLiveUpdate(false);
    change(*m_fixture);
    QTEST(m_document->isAnalysing(), "alsoWhenOff");
    QVERIFY(m_fixture->settle());
    m_document->setLiveUpdate(true);
    QVERIFY(m_document->isAnalysing());
    QVERIFY(m_fixture->settle());
    // Names of renamed files are not worked out anew, only shown again.
    m_document->sourceObjectArray()[0]->setHasBeenProcessed(true);
    const QSignalSpy redisplays(m_document, &TDocument::filesChanged);
    m_document->doBackgroundRunIfUpdate();
    QVERIFY(!m_document->isAnalysing());
    QCOMPARE(redisplays.count(), 1);
}

void TestTDocumentRules::colourCoding()
{
    const auto isColoured = [this] {
        const auto &name = m_document->sourceObjectArray()[0]->attributedTargetName();
        return !name.runs().empty() && name.runs()[0].background.isSet();
    };
    QVERIFY(m_fixture->host.colorCodeChecked && isColoured());
    m_document->toggleColorCode();
    QVERIFY(m_fixture->settle());
    QVERIFY(!m_fixture->host.colorCodeChecked && !m_document->colorCode() && !isColoured());
}

QTEST_GUILESS_MAIN(TestTDocumentRules)
#include "tst_tdocument_rules.moc"
