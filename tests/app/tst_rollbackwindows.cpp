// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TDoRollBackWindowController.h"
#include "app/TRollBackWindowController.h"
#include "commonprocs/Sandboxing.h"
#include "document/RollbackNotice.h"
#include "rollback/RollbackLog.h"
#include "settings/logging.h"
#include "support/FaultyFileManager.h"
#include "support/PumpedMainThread.h"
#include "support/ScriptedApplicationHost.h"
#include "support/TemporaryTree.h"

#include <QTest>

#include <latch>

using namespace Qt::StringLiterals;
using L = QStringList;
using Window = TDoRollBackWindowController;
using State = Window::State;
using Call = FaultyFileManager::Call;

namespace {

const QString kInitial = u"Initializing... processing log"_s;

/// A rollback window over a log of "old>new" records, "old!new" for one that did not complete.
struct RollbackWindow
{
    TemporaryTree tree;
    FaultyFileManager disk;
    PumpedMainThread mainThread;
    Notifications notifications;
    ScriptedApplicationHost host;
    int ends = 0;
    QStringList lines;
    QString log; ///< path
    WorkerQueue worker;
    std::unique_ptr<Window> window = std::make_unique<Window>(
        Window::Services{host, mainThread, worker, notifications, disk}, [this](int) { ++ends; });

    explicit RollbackWindow(const QStringList &files = {}, bool sandbox = false)
    {
        for (const QString &file : files)
            tree.file(file);
        qputenv("XDG_DATA_HOME", tree.path().toUtf8());
        setLogSink([this](const QString &line) { lines += line; });
        if (sandbox)
            qputenv("APP_SANDBOX_CONTAINER_ID", "com.zel.tavrin");
        initSandbox();
    }
    ~RollbackWindow()
    {
        setLogSink({});
        qunsetenv("APP_SANDBOX_CONTAINER_ID");
        initSandbox();
    }
    TFileURL url(const QString &name) const { return TFileURL::fileURLWithPath(tree.path(name)); }
    void load(const QStringList &moves)
    {
        auto writer = RollbackLogWriter::create(tree.folder(u"Logs"_s)).value();
        for (const QString &move : moves) {
            const QStringList names = move.split(QRegularExpression(u"[>!]"_s));
            TRenameTRX record = TRenameTRX::TRXWithSource(url(names[0]));
            record.renamedURL = url(names[1]);
            record.renameComplete = move.contains(u'>');
            writer->append(record);
        }
        log = writer->finish(TDate::fromSeconds(1)).value();
        window->loadLog(TFileURL::fileURLWithPath(log));
    }
    void settle()
    {
        worker.wait();
        mainThread.pump();
    }
    /// State, button, bar and text.
    QString shown() const
    {
        return u"%1|%2|%3"_s.arg(window->rollBackButtonTitle() +
                                     (window->rollBackButtonEnabled() ? u""_s : u" off"_s),
                                 window->isProgressShown() ? window->statusText() : u"hidden"_s,
                                 QString::number(window->progress()));
    }
    /// "old|current|image" of the first row with "-" for grey and "!" for red, then its problems.
    QString row() const
    {
        static constexpr std::array kMarks{""_L1, "-"_L1, "!"_L1};
        QString text;
        for (const auto column : {Window::kOriginalColumn, Window::kCurrentColumn}) {
            const TableCell cell = window->cell(0, column);
            text += kMarks[static_cast<std::size_t>(cell.ink)] + cell.text + u'|';
        }
        text += window->cell(0, Window::kStatusColumn).image.name();
        for (const TErrorTypes &error : *window->clicked(0, 1))
            text += u"|%1 %2"_s.arg(error.errClass).arg(error.errDesc.toString());
        return text.remove(tree.path() + u'/');
    }
};

} // namespace

class TestRollbackWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void table_data();
    void table();
    void progress_data();
    void progress();
    void logsThatCannotBeRead_data();
    void logsThatCannotBeRead();
    void authorisation_data();
    void authorisation();
    void reverseOrder();
    void leavingDuringAPass_data();
    void leavingDuringAPass();
    void chooser_data();
    void chooser();
};

void TestRollbackWindows::table_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("analysed");
    QTest::addColumn<QString>("done");
    const QString skipped = u"-a.txt|-n.txt|stop|2 Skipped rolling back this file"_s;
    QTest::newRow("found") << L{u"n.txt"_s} << u"a.txt>n.txt"_s << u"a.txt|n.txt|green arrow"_s
                           << u"-a.txt|-n.txt|tick"_s;
    QTest::newRow("gone") << L{} << u"a.txt>n.txt"_s
                          << u"-a.txt|-n.txt|stop|2 I was unable to find the renamed file n.txt"_s
                          << skipped;
    QTest::newRow("not completed, and old name in use")
        << L{u"a.txt"_s} << u"a.txt!n.txt"_s
        << u"-a.txt|-n.txt|stop|2 The rename from a.txt to n.txt did not complete successfully|"
           "1 The originally named file exists at a.txt, will use safe naming"_s
        << skipped;
    QTest::newRow("old name in use meanwhile")
        << L{u"n.txt"_s, u"a.txt"_s} << u"a.txt>n.txt"_s << u"a.txt|n.txt|green arrow"_s
        << u"-a.txt|-n.txt|tick"_s;
    QTest::newRow("refused") << L{u"a"_s, u"n"_s} << u"a>n"_s << u"a|n|green arrow"_s
                             << u"!a|-n|stop|2 Rollback failed: "_s;
}

void TestRollbackWindows::table()
{
    QFETCH(const QStringList, files);
    QFETCH(const QString, record);
    QFETCH(const QString, done);
    RollbackWindow t(files);
    QList<QVariantMap> told;
    const auto subscription = t.notifications.subscribe(
        RollbackNotice::kRolledBack, [&told](const QVariantMap &userInfo) { told += userInfo; });
    QCOMPARE(t.shown(), u"Roll Back off|"_s + kInitial + u"|0"_s);
    t.load({record});
    t.settle();
    QCOMPARE(t.shown(), u"Roll Back|hidden|0"_s);
    QTEST(t.row(), "analysed");
    t.window->rollBack();
    QCOMPARE(t.shown(), u"Roll Back off|Rolling back renames...|0"_s);
    t.settle();
    QCOMPARE(t.shown(), u"Roll Back Complete off|hidden|0"_s);
    QVERIFY2(t.row().startsWith(done), qPrintable(t.row()));
    QCOMPARE(told.size(), 1);
    QCOMPARE(told[0].value(RollbackNotice::kLog).toString(), t.log);
    QCOMPARE(told[0].value(RollbackNotice::kRestored).toInt(), done.endsWith("tick"_L1) ? 1 : 0);
    QCOMPARE(t.window->otherName(0), t.tree.exists(u"a-1.txt"_s) ? u"a-1.txt"_s : QString());
    QVERIFY(!t.window->clicked(1, 1) && !t.window->clicked(0, 2) && !t.window->clicked(-1, 1));
    QCOMPARE(t.window->cell(0, "size"_L1), TableCell());
    QVERIFY(t.lines.last().endsWith("rollback TRX table view: column size not processed"_L1));
    t.window->cancel();
    t.window->cancel();
    QCOMPARE(t.ends, 1);
}

void TestRollbackWindows::progress_data()
{
    QTest::addColumn<int>("records");
    QTest::addColumn<QStringList>("percents");
    QTest::newRow("below ten nothing moves") << 9 << L{};
    QTest::newRow("ten") << 10 << L{u"100"_s};
    QTest::newRow("twenty-five") << 25 << L{u"40"_s, u"80"_s};
}

void TestRollbackWindows::progress()
{
    QFETCH(const int, records);
    RollbackWindow t;
    L percents;
    connect(t.window.get(), &Window::progressChanged, this,
            [&] { percents += QString::number(t.window->progress()); });
    t.load(L(records, u"a.txt>n.txt"_s));
    t.settle();
    QTEST(percents, "percents");
    percents.clear();
    t.window->rollBack();
    t.settle();
    QCOMPARE(percents.takeFirst(), u"0"_s);
    QTEST(percents, "percents");
}

void TestRollbackWindows::logsThatCannotBeRead_data()
{
    QTest::addColumn<QString>("log");
    for (const char *name : {"", "missing", "rubbish", "folder"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestRollbackWindows::logsThatCannotBeRead()
{
    QFETCH(const QString, log);
    RollbackWindow t({u"rubbish"_s, u"folder/file"_s});
    t.window->loadLog(log.isEmpty() ? TFileURL() : t.url(log));
    t.settle();
    t.window->rollBack();
    QCOMPARE(t.shown(), u"Roll Back off|"_s + kInitial + u"|0"_s);
    t.window->cancel();
    QCOMPARE(t.ends, 1);
}

void TestRollbackWindows::authorisation_data()
{
    QTest::addColumn<QStringList>("choices"); // "" cancels
    QTest::addColumn<int>("grants");
    QTest::addColumn<bool>("rolledBack");
    QTest::newRow("all granted") << L{u"x"_s, u"y"_s} << 2 << true;
    QTest::newRow("another folder is asked for again") << L{u"y"_s, u"x"_s, u"y"_s} << 2 << true;
    QTest::newRow("another path to the folder") << L{u"link"_s, u"y"_s} << 2 << true;
    QTest::newRow("a folder that is gone") << L{u"gone"_s, u""_s} << 0 << false;
    QTest::newRow("cancelled at the second") << L{u"x"_s, u""_s} << 1 << false;
}

void TestRollbackWindows::authorisation()
{
    QFETCH(const QStringList, choices);
    QFETCH(const bool, rolledBack);
    for (const bool leaves : {false, true}) { // the user leaves while the first panel is open
        RollbackWindow t({u"x/1"_s, u"x/2"_s, u"y/3"_s}, true);
        t.tree.link(u"x"_s, u"link"_s);
        for (const QString &choice : choices)
            t.host.choices.push_back(choice.isEmpty() ? std::nullopt
                                                      : std::optional(t.url(choice)));
        int grants = 0;
        const auto subscription =
            t.notifications.subscribe(Notifications::kGotAuthorized, [&](const QVariantMap &info) {
                QVERIFY(info.value(kTheFolderAccess).value<TFolderAccess>().haveAccess());
                ++grants;
            });
        t.load({u"x/a>x/1"_s, u"x/b>x/2"_s, u"y/c>y/3"_s});
        t.settle();
        t.host.holdBack = true;
        t.window->rollBack();
        t.window->rollBack();
        QCOMPARE(t.host.calls, L{u"folder panel: Grant access to x|"_s + t.tree.path(u"x"_s)});
        if (leaves)
            t.window->cancel();
        t.host.release();
        t.settle();
        QCOMPARE(t.host.calls.size(), leaves && !rolledBack ? t.host.calls.size() : choices.size());
        QCOMPARE(t.tree.exists(u"y/c"_s), rolledBack && !leaves);
        QCOMPARE(t.window->rollBackButtonEnabled(), !rolledBack && !leaves);
        if (!leaves)
            QTEST(grants, "grants");
    }
}

void TestRollbackWindows::reverseOrder()
{
    for (const bool reverse : {false, true}) {
        RollbackWindow t({u"2.txt"_s, u"3.txt"_s});
        t.load({u"2.txt>3.txt"_s, u"1.txt>2.txt"_s});
        t.settle();
        QVERIFY(t.window->recommendsReverse());
        t.window->setReverse(reverse);
        t.window->rollBack();
        t.settle();
        QCOMPARE(t.tree.exists(u"1.txt"_s) && t.tree.exists(u"2.txt"_s), reverse);
    }
}

void TestRollbackWindows::leavingDuringAPass_data()
{
    QTest::addColumn<bool>("rolling");
    QTest::addColumn<QString>("how");
    QTest::newRow("analysis, cancelled") << false << u"cancel"_s;
    QTest::newRow("analysis, closed") << false << u"close"_s;
    QTest::newRow("rollback, cancelled") << true << u"cancel"_s;
    QTest::newRow("rollback, closed") << true << u"close"_s;
    QTest::newRow("rollback, stopped") << true << u"stop"_s;
}

/// The pass is held before its second file while the user leaves: that file is finished, no other.
void TestRollbackWindows::leavingDuringAPass()
{
    QFETCH(const bool, rolling);
    QFETCH(const QString, how);
    RollbackWindow t({u"n0.txt"_s, u"n1.txt"_s, u"n2.txt"_s});
    const L moves{u"a0.txt>n0.txt"_s, u"a1.txt>n1.txt"_s, u"a2.txt>n2.txt"_s};
    std::latch reached(1);
    std::latch left(1);
    const auto hold = [&] {
        t.disk.before(
            rolling ? Call::RenameNoReplace : Call::Status,
            [&] {
                reached.count_down();
                left.wait();
            },
            "n1.txt");
    };
    if (!rolling)
        hold();
    t.load(moves);
    if (rolling) {
        t.settle();
        hold();
        t.window->rollBack();
    }
    reached.wait();
    const State state = t.window->state();
    const bool stops = how == "stop"_L1;
    if (stops)
        t.window->stop();
    else
        t.window->cancel();
    if (how == "close"_L1)
        t.window.reset();
    left.count_down();
    t.settle();
    QCOMPARE(t.ends, stops ? 0 : 1);
    QCOMPARE(t.tree.exists(u"a1.txt"_s), rolling);
    QVERIFY(t.tree.exists(u"n2.txt"_s));
    if (stops)
        QCOMPARE(t.shown(), u"Roll Back off|hidden|0"_s); // not "complete"
    else
        QVERIFY(!t.window || t.window->state() == state);
}

void TestRollbackWindows::chooser_data()
{
    QTest::addColumn<QString>("clicks");
    QTest::addColumn<int>("chosen"); // row, -1 for none
    QTest::newRow("the last click counts") << u"click 0,click 1,choose 0"_s << 1;
    QTest::newRow("below the last row") << u"click 0,click 2,choose 0"_s << -1;
    QTest::newRow("nothing clicked") << u"choose 0"_s << -1;
    QTest::newRow("double click") << u"double 2,double 0"_s << 0;
    QTest::newRow("cancelled") << u"click 1,cancel 0"_s << -1;
    QTest::newRow("the first end counts") << u"cancel 0,double 1"_s << -1;
}

void TestRollbackWindows::chooser()
{
    QFETCH(const QString, clicks);
    QFETCH(const int, chosen);
    RollbackWindow t;
    std::vector<std::optional<TFileURL>> ends;
    { // gone before its list, which has made the folder
        const TRollBackWindowController early(t.mainThread, t.worker, {});
        t.worker.wait();
    }
    QVERIFY(t.tree.exists(u"Tavrin/Logs"_s));
    for (const QString &name : {u"1.renameLog"_s, u"2.x (y).renameLog"_s, u"notes.txt"_s})
        t.tree.file(u"Tavrin/Logs/"_s + name);
    TRollBackWindowController window(t.mainThread, t.worker,
                                     [&ends](const auto &log) { ends.push_back(log); });
    t.settle();
    QCOMPARE(window.logName(0), (TableCell{u"2.x (y)"_s, TImage(u"tick"_s), {}}));
    QCOMPARE(window.theLogs().size(), 2);
    QVERIFY(!window.chooseButtonEnabled());
    for (const QString &click : clicks.split(u',')) {
        const qsizetype row = click.section(u' ', 1).toInt();
        switch (click[1].unicode()) {
        case u'l':
            window.rowClicked(row);
            QCOMPARE(window.chooseButtonEnabled(), row < 2);
            break;
        case u'o':
            window.rowDoubleClicked(row);
            break;
        case u'h':
            window.chooseRollback();
            break;
        default:
            window.cancel();
            QCOMPARE(window.theRow(), -1);
        }
    }
    const auto expected = chosen < 0 ? std::nullopt : std::optional(window.theLogs()[chosen]);
    QCOMPARE(ends, std::vector{expected});
}

QTEST_GUILESS_MAIN(TestRollbackWindows)
#include "tst_rollbackwindows.moc"
