// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/Sandboxing.h"
#include "document/TDocumentPresets.h"
#include "document/TFolderAccessViewController.h"
#include "document/TRemovePresetsWindowController.h"
#include "platform/PumpedMainThread.h"
#include "settings/logging.h"
#include "support/Rules.h"
#include "support/ScriptedHost.h"
#include "support/TemporaryTree.h"

#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// One document's presets, over a folder of shipped ones ("Shipped" and "Both") and the user's
/// ("Both" and "Own").
struct Presets
{
    TemporaryTree tree;
    PumpedMainThread mainThread;
    Notifications notifications;
    ScriptedHost host;
    PresetsManager manager{tree.folder(u"shipped"_s), tree.path(u"data/Tavrin/presets"_s)};
    WorkerQueue worker;
    std::optional<TDocumentPresets> presets;

    Presets()
    {
        const PresetsManager shipping({}, tree.path(u"shipped"_s));
        for (const QString &name : {u"Shipped"_s, u"Both"_s})
            shipping.savePreset(name, {textRule(u"shipped"_s)}).value();
        for (const QString &name : {u"Both"_s, u"Own"_s})
            manager.savePreset(name, {textRule(u"own"_s), textRule(u"more"_s)}).value();
        setLogSink([](const QString &) {});
        presets.emplace(TDocumentPresets::Services{host, mainThread, worker, notifications},
                        manager);
    }
    ~Presets() { setLogSink({}); }

    void settle()
    {
        for (int i = 0; i < 2; ++i) { // a change is followed by reading what changed
            worker.wait();
            mainThread.pump();
        }
    }
    QStringList names() const
    {
        QStringList sorted = host.presetNames;
        sorted.sort();
        return sorted;
    }
};

const QStringList kAtFirst{u"Both"_s, u"Own"_s, u"Shipped"_s};

} // namespace

class TestTDocumentPresets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemsOfThePopUp();
    void saving_data();
    void saving();
    void savesTheRulesOfThatMoment();
    void unreadablePresetsAreLeftOut();
    void removing_data();
    void removing();
    void folderAccessView();
    void oneGrant_data();
    void oneGrant();
    void closingAtAnyMoment();
};

void TestTDocumentPresets::itemsOfThePopUp()
{
    Presets t;
    QVERIFY(!t.presets->rulesOfItem(TDocumentPresets::kFirstPreset));
    t.presets->loadPresetsFromDisk();
    t.settle();
    QCOMPARE(t.names(), kAtFirst);
    for (const qsizetype index : {-1, 0, 1, 2, 3, 7})
        QVERIFY2(!t.presets->rulesOfItem(index), qPrintable(QString::number(index)));
    const qsizetype both = TDocumentPresets::kFirstPreset + t.host.presetNames.indexOf(u"Both"_s);
    const auto first = t.presets->rulesOfItem(both);
    const auto second = t.presets->rulesOfItem(both);
    QCOMPARE(first.value().size(), 2U); // the user's hides the shipped one
    QCOMPARE(first.value()[0]->name(), u"own"_s);
    QVERIFY2(first.value()[0] != second.value()[0], "each choice is a copy");
}

void TestTDocumentPresets::saving_data()
{
    QTest::addColumn<bool>("withRules");
    QTest::addColumn<QString>("name"); // null: cancelled
    QTest::addColumn<QString>("listed");
    QTest::newRow("new") << true << u"New"_s << u"New"_s;
    QTest::newRow("colon") << true << u"A:B"_s << u"A.B"_s;
    QTest::newRow("replacing") << true << u"Own"_s << u"Own"_s;
    QTest::newRow("no name") << true << u""_s << QString();
    QTest::newRow("cancelled") << true << QString() << QString();
    QTest::newRow("no rules") << false << u"New"_s << QString();
    QTest::newRow("impossible name") << true << u"a/b"_s << QString();
}

void TestTDocumentPresets::saving()
{
    QFETCH(const bool, withRules);
    QFETCH(const QString, name);
    QFETCH(const QString, listed);
    Presets t;
    t.presets->loadPresetsFromDisk();
    t.settle();
    int changes = 0;
    const auto subscription =
        t.notifications.subscribe(Notifications::kPresetsChanged, [&](const auto &) { ++changes; });
    t.host.presetAnswers.push_back(name.isNull() ? std::nullopt : std::optional(name));
    t.presets->saveRuleAsPreset(withRules ? TRuleList{textRule(u"x"_s)} : TRuleList{},
                                u"summary"_s);
    t.settle();
    QCOMPARE(t.host.calls, withRules ? QStringList{u"preset name: summary"_s} : QStringList());
    QStringList expected = kAtFirst;
    if (!listed.isEmpty() && !expected.contains(listed))
        expected += listed;
    expected.sort();
    QCOMPARE(t.names(), expected);
    QCOMPARE(changes, listed.isEmpty() ? 0 : 1);
    if (!listed.isEmpty()) {
        const auto rules = t.presets->rulesOfItem(TDocumentPresets::kFirstPreset +
                                                  t.host.presetNames.indexOf(listed));
        QCOMPARE(rules.value()[0]->name(), u"x"_s);
        QVERIFY(t.tree.exists(u"data/Tavrin/presets/%1.renamesetting"_s.arg(listed)));
    }
}

void TestTDocumentPresets::savesTheRulesOfThatMoment()
{
    Presets t;
    t.host.holdBack = true;
    t.host.presetAnswers.push_back(u"Then"_s);
    const TRulePtr rule = textRule(u"then"_s);
    t.presets->saveRuleAsPreset({rule}, {});
    rule->setProperties({{u"theText"_s, u"now"_s}});
    t.host.release();
    t.settle();
    const QString path = t.tree.path(u"data/Tavrin/presets/Then.renamesetting"_s);
    QCOMPARE(t.manager.readPreset(path).value()[0]->properties()[u"theText"_s].toString(),
             u"then"_s);
}

void TestTDocumentPresets::unreadablePresetsAreLeftOut()
{
    Presets t;
    t.tree.file(u"shipped/Rubbish.renamesetting"_s, "bplist00");
    t.tree.file(u"data/Tavrin/presets/Empty.renamesetting"_s);
    t.tree.folder(u"data/Tavrin/presets/Folder.renamesetting"_s);
    t.tree.link(u"nowhere"_s, u"data/Tavrin/presets/Link.renamesetting"_s);
    t.presets->loadPresetsFromDisk();
    t.settle();
    QCOMPARE(t.names(), kAtFirst);
}

void TestTDocumentPresets::removing_data()
{
    QTest::addColumn<QString>("name"); // empty: below the last row
    QTest::addColumn<bool>("shipped");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("the user's") << u"Own"_s << false << QStringList{u"Both"_s, u"Shipped"_s};
    QTest::newRow("the shipped one comes back") << u"Both"_s << false << kAtFirst;
    QTest::newRow("shipped") << u"Shipped"_s << true << kAtFirst;
    QTest::newRow("shipped, hidden") << u"Both"_s << true << kAtFirst;
    QTest::newRow("no row") << QString() << false << kAtFirst;
}

void TestTDocumentPresets::removing()
{
    QFETCH(const QString, name);
    QFETCH(const bool, shipped);
    Presets t;
    t.presets->loadPresetsFromDisk();
    TRemovePresetsWindowController window({t.mainThread, t.worker, t.notifications}, t.manager);
    t.settle();
    QCOMPARE(window.theEnablers(), (std::vector<bool>{false, false, true, true}));
    qsizetype row = name.isEmpty() ? window.thePresets().size() : -1;
    for (qsizetype i = 0; i < window.thePresets().size(); ++i)
        if (window.cellView(i).text == name && (i < 2) == shipped)
            row = i;
    if (!name.isEmpty())
        QCOMPARE(window.cellView(row).ink, shipped ? TableCell::Ink::Grey : TableCell::Ink::Normal);
    const bool removable = !shipped && !name.isEmpty();
    QVERIFY(!window.removeButtonEnabled());
    window.rowSelected(row);
    QCOMPARE(window.removeButtonEnabled(), removable);
    window.removeLine(row);
    QVERIFY(!window.removeButtonEnabled());
    QCOMPARE(window.thePresets().size(), removable ? 3 : 4);
    t.settle();
    QTEST(t.names(), "left");
    if (name == u"Both"_s) // the user's is gone or still hides the shipped one
        QCOMPARE(
            t.presets
                ->rulesOfItem(TDocumentPresets::kFirstPreset + t.host.presetNames.indexOf(name))
                .value()
                .size(),
            shipped ? 2U : 1U);
}

namespace {

/// A list of two folders in a sandbox: "dragged" is granted, "found" is not.
struct Sandbox
{
    TemporaryTree tree;
    ScriptedHost host;
    Notifications notifications;
    TFolderAccessList list;

    Sandbox()
    {
        qputenv("APP_SANDBOX_CONTAINER_ID", "com.zel.tavrin");
        initSandbox();
        list.addFolder(url(u"dragged"_s), true);
        list.addFolder(url(u"found"_s), false);
    }
    ~Sandbox()
    {
        qunsetenv("APP_SANDBOX_CONTAINER_ID");
        initSandbox();
        setLogSink({});
    }
    TFileURL url(const QString &name) const { return TFileURL::fileURLWithPath(tree.folder(name)); }
};

} // namespace

void TestTDocumentPresets::folderAccessView()
{
    Sandbox t;
    TFolderAccessViewController view(t.list, t.host, t.notifications);
    QStringList shown;
    for (qsizetype row = 0; row < view.rows(); ++row)
        shown += view.cell(row, "status"_L1).image.name() + u' ' + view.cell(row, "name"_L1).text +
                 (view.offersGrant(row) ? u" grant"_s : QString());
    QCOMPARE(shown, QStringList({u"dot-green dragged"_s, u"dot-red found grant"_s}));
    view.grant(0);
    QVERIFY(t.host.calls.isEmpty());
    t.host.choices.push_back(t.url(u"found"_s));
    view.grant(1);
    QCOMPARE(view.cell(1, "status"_L1).image.name(), u"dot-green"_s);
    QStringList lines;
    setLogSink([&lines](const QString &line) { lines += line; });
    QCOMPARE(view.cell(0, "grant"_L1), TableCell());
    QVERIFY(lines.isEmpty());
    QCOMPARE(view.cell(0, "size"_L1), TableCell());
    QVERIFY(
        lines.value(0).endsWith("tableView:viewFortableColumn:row failed to select a column"_L1));
}

void TestTDocumentPresets::oneGrant_data()
{
    QTest::addColumn<QString>("choice");
    QTest::addColumn<bool>("granted");
    QTest::newRow("that folder") << u"found"_s << true;
    QTest::newRow("another") << u"dragged"_s << false;
    QTest::newRow("cancelled") << QString() << false;
}

void TestTDocumentPresets::oneGrant()
{
    QFETCH(const QString, choice);
    QFETCH(const bool, granted);
    Sandbox t;
    t.host.choices.push_back(choice.isEmpty() ? std::nullopt : std::optional(t.url(choice)));
    std::vector<bool> answers;
    int posts = 0;
    const auto subscription =
        t.notifications.subscribe(Notifications::kGotAuthorized, [&](const auto &) { ++posts; });
    FolderGrants grants(t.host, t.notifications);
    grants.ask(t.list, t.url(u"found"_s), [&](bool yes) { answers.push_back(yes); });
    QCOMPARE(t.host.calls,
             QStringList{u"folder panel: Grant access to found|"_s + t.tree.path(u"found"_s)});
    QCOMPARE(answers, std::vector{granted});
    QCOMPARE(posts, granted ? 1 : 0);
    QCOMPARE(t.list.firstInaccessible() == nullptr, granted);
}

/// Results and answers that come after the document find nobody.
void TestTDocumentPresets::closingAtAnyMoment()
{
    Presets t;
    t.presets->loadPresetsFromDisk();
    t.host.holdBack = true;
    t.host.presetAnswers.push_back(u"Late"_s);
    t.presets->saveRuleAsPreset({textRule(u"x"_s)}, {});
    auto window = std::make_unique<TRemovePresetsWindowController>(
        TRemovePresetsWindowController::Services{t.mainThread, t.worker, t.notifications},
        t.manager);
    window.reset();
    t.presets.reset();
    t.host.release();
    t.notifications.post(Notifications::kPresetsChanged);
    t.settle();
    QCOMPARE(t.host.presetNames, QStringList());
    QVERIFY(!t.tree.exists(u"data/Tavrin/presets/Late.renamesetting"_s));
}

QTEST_GUILESS_MAIN(TestTDocumentPresets)
#include "tst_tdocument_presets.moc"
