// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/Sandboxing.h"
#include "document/TDocumentPresets.h"
#include "document/TFolderAccessViewController.h"
#include "document/TRemovePresetsWindowController.h"
#include "settings/logging.h"
#include "support/PumpedMainThread.h"
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
    std::optional<TRuleList> rules(const QString &name) const
    {
        return presets->rulesOfItem(TDocumentPresets::kFirstPreset +
                                    host.presetNames.indexOf(name));
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
    void removing_data();
    void removing();
    void folderAccessView();
    void closingAtAnyMoment();
};

void TestTDocumentPresets::itemsOfThePopUp()
{
    Presets t;
    QVERIFY(!t.rules(u"Both"_s));
    t.tree.file(u"shipped/Rubbish.renamesetting"_s, "bplist00");
    t.tree.file(u"data/Tavrin/presets/Empty.renamesetting"_s);
    t.tree.folder(u"data/Tavrin/presets/Folder.renamesetting"_s);
    t.presets->loadPresetsFromDisk();
    t.settle();
    QCOMPARE(t.names(), kAtFirst);
    for (const qsizetype index : {-1, 0, 1, 2, 3, 7})
        QVERIFY2(!t.presets->rulesOfItem(index), qPrintable(QString::number(index)));
    QCOMPARE(t.rules(u"Both"_s)->size(), 2U); // the user's hides the shipped one
    QVERIFY2(t.rules(u"Own"_s)->front() != t.rules(u"Own"_s)->front(), "each choice is a copy");
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
        t.notifications.subscribe(u"presetsChanged"_s, [&](const auto &) { ++changes; });
    t.host.presetAnswers.push_back(name.isNull() ? std::nullopt : std::optional(name));
    t.host.holdBack = true;
    const TRulePtr rule = textRule(u"then"_s);
    t.presets->saveRuleAsPreset(withRules ? TRuleList{rule} : TRuleList{}, u"summary"_s);
    rule->setProperties({{u"theText"_s, u"edited meanwhile"_s}});
    t.host.release();
    t.settle();
    QCOMPARE(t.host.calls, withRules ? QStringList{u"preset name: summary"_s} : QStringList());
    QStringList expected = kAtFirst;
    if (!listed.isEmpty() && !expected.contains(listed))
        expected += listed;
    expected.sort();
    QCOMPARE(t.names(), expected);
    QCOMPARE(changes, listed.isEmpty() ? 0 : 1);
    if (listed.isEmpty())
        return;
    QCOMPARE(t.rules(listed)->front()->properties()[u"theText"_s].toString(), u"then"_s);
    QVERIFY(t.tree.exists(u"data/Tavrin/presets/%1.renamesetting"_s.arg(listed)));
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
    QCOMPARE(window.theEnablers().size(), removable ? 3U : 4U);
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

/// A list of folders in a sandbox: "dragged" is granted, "found" and the root are not.
void TestTDocumentPresets::folderAccessView()
{
    TemporaryTree tree;
    ScriptedHost host;
    Notifications notifications;
    TFolderAccessList list;
    const auto url = [&](const QString &name) {
        return TFileURL::fileURLWithPath(tree.folder(name));
    };
    qputenv("APP_SANDBOX_CONTAINER_ID", "com.zel.tavrin");
    initSandbox();
    list.addFolder(url(u"dragged"_s), true);
    list.addFolder(url(u"found"_s), false);
    list.addFolder(TFileURL::fileURLWithPath(u"/"_s), false);
    qunsetenv("APP_SANDBOX_CONTAINER_ID");
    TFolderAccessViewController view(list, host, notifications);
    int posts = 0;
    const auto subscription =
        notifications.subscribe(u"gotAuthorized"_s, [&](const auto &) { ++posts; });
    const auto shown = [&view](qsizetype row) {
        return view.cell(row, "status"_L1).image.name() + u' ' + view.cell(row, "name"_L1).text +
               (view.offersGrant(row) ? u" grant"_s : QString());
    };
    view.grant(0);
    QCOMPARE(host.calls, QStringList());
    QCOMPARE(shown(0), u"dot-green dragged"_s);
    // Another folder and a cancelled panel change nothing.
    host.choices = {url(u"dragged"_s), std::nullopt, url(u"found"_s)};
    for (int attempt = 0; attempt < 3; ++attempt) {
        QCOMPARE(shown(1), u"dot-red found grant"_s);
        view.grant(1);
        QCOMPARE(posts, attempt / 2);
    }
    QCOMPARE(shown(1), u"dot-green found"_s);
    QCOMPARE(host.calls.last(), u"folder panel: Grant access to found|"_s + tree.path(u"found"_s));
    QCOMPARE(shown(2), u"dot-red / grant"_s);
    view.grant(2);
    QCOMPARE(host.calls.last(), u"folder panel: Grant access to /|/"_s);
    QStringList lines;
    setLogSink([&lines](const QString &line) { lines += line; });
    QCOMPARE(view.cell(0, "grant"_L1), TableCell());
    QCOMPARE(view.cell(0, "size"_L1), TableCell());
    setLogSink({});
    initSandbox();
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines[0].endsWith("tableView:viewFortableColumn:row failed to select a column"_L1));
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
