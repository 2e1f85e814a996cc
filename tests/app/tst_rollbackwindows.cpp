// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TDoRollBackWindowController.h"
#include "app/TRollBackWindowController.h"
#include "commonprocs/Sandboxing.h"
#include "platform/PumpedMainThread.h"
#include "rollback/RollbackLog.h"
#include "settings/logging.h"
#include "support/FaultyFileManager.h"
#include "support/ScriptedApplicationHost.h"
#include "support/TemporaryTree.h"

#include <QSignalSpy>
#include <QTest>

#include <latch>

using namespace Qt::StringLiterals;
using State = TDoRollBackWindowController::State;
using Call = FaultyFileManager::Call;

namespace {

/// A rollback window over a log of "old>new" records, "old!new" for one that did not complete.
struct RollbackWindow
{
    TemporaryTree tree;
    FaultyFileManager disk;
    PumpedMainThread mainThread;
    Notifications notifications;
    ScriptedApplicationHost host;
    std::vector<int> codes;
    WorkerQueue worker;
    std::unique_ptr<TDoRollBackWindowController> window =
        std::make_unique<TDoRollBackWindowController>(
            TDoRollBackWindowController::Services{host, mainThread, worker, notifications, disk},
            [this](int code) { codes.push_back(code); });

    TFileURL url(const QString &relative) const
    {
        return TFileURL::fileURLWithPath(tree.path(relative));
    }
    TFileURL logOf(const QStringList &moves) const
    {
        auto writer = RollbackLogWriter::create(tree.folder(u"Logs"_s)).value();
        for (const QString &move : moves) {
            const bool completed = move.contains(u'>');
            const QStringList names = move.split(completed ? u'>' : u'!');
            TRenameTRX record = TRenameTRX::TRXWithSource(url(names[0]));
            record.renamedURL = url(names[1]);
            record.renameComplete = completed;
            writer->append(record);
        }
        return TFileURL::fileURLWithPath(writer->finish(TDate::fromSeconds(1)).value());
    }
    void load(const QStringList &moves)
    {
        window->loadLog(logOf(moves));
        pumpUntil(State::Analysed);
    }
    void pumpUntil(State state)
    {
        mainThread.pumpUntil([this, state] { return window->state() == state; });
    }
    /// Nothing is under way any more.
    void settle()
    {
        worker.wait();
        mainThread.pump();
    }
    /// "old|current|image" of every row, with "-" for grey and "!" for red.
    QStringList rows() const
    {
        static constexpr std::array kMarks{""_L1, "-"_L1, "!"_L1};
        QStringList result;
        for (qsizetype i = 0; i < static_cast<qsizetype>(window->theTRX().size()); ++i) {
            QString row;
            for (const auto column : {TDoRollBackWindowController::kOriginalColumn,
                                      TDoRollBackWindowController::kCurrentColumn}) {
                const TableCell cell = window->cell(i, column);
                row += kMarks[static_cast<std::size_t>(cell.ink)] + cell.text + u'|';
            }
            result +=
                row + window->cell(i, TDoRollBackWindowController::kStatusColumn).image.name();
        }
        return result;
    }
};

void setSandbox(bool on)
{
    if (on)
        qputenv("APP_SANDBOX_CONTAINER_ID", "com.zel.tavrin");
    else
        qunsetenv("APP_SANDBOX_CONTAINER_ID");
    initSandbox();
}

} // namespace

class TestRollbackWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void fromLogToComplete();
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
    void answerAfterLeaving();
    void chooser_data();
    void chooser();
    void chooserListsLogsOnly();
};

void TestRollbackWindows::cleanup()
{
    setSandbox(false);
    setLogSink({});
}

void TestRollbackWindows::fromLogToComplete()
{
    RollbackWindow t;
    t.tree.file(u"n.txt"_s);
    QCOMPARE(t.window->statusText(), u"Initializing... processing log"_s);
    QVERIFY(t.window->isProgressShown() && !t.window->rollBackButtonEnabled());
    t.load({u"a.txt>n.txt"_s});
    QVERIFY(!t.window->isProgressShown() && t.window->rollBackButtonEnabled());
    QCOMPARE(t.window->rollBackButtonTitle(), u"Roll Back"_s);
    t.window->rollBack();
    QCOMPARE(t.window->statusText(), u"Rolling back renames..."_s);
    QVERIFY(t.window->isProgressShown() && !t.window->rollBackButtonEnabled());
    t.pumpUntil(State::Complete);
    QCOMPARE(t.window->rollBackButtonTitle(), u"Roll Back Complete"_s);
    QVERIFY(!t.window->isProgressShown() && !t.window->rollBackButtonEnabled());
    QVERIFY(t.tree.exists(u"a.txt"_s));
    t.window->cancel();
    t.window->cancel();
    QCOMPARE(t.codes, std::vector{TDoRollBackWindowController::kEndCode});
}

void TestRollbackWindows::table_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("analysed");
    QTest::addColumn<QString>("problem");
    QTest::addColumn<QString>("done");
    QTest::addColumn<QString>("problemThen");
    using L = QStringList;
    const QString skipped = u"2 Skipped rolling back this file"_s;
    QTest::newRow("found") << L{u"n.txt"_s} << u"a.txt>n.txt"_s << u"a.txt|n.txt|green arrow"_s
                           << QString() << u"-a.txt|-n.txt|tick"_s << QString();
    QTest::newRow("gone") << L{} << u"a.txt>n.txt"_s << u"-a.txt|-n.txt|stop"_s
                          << u"2 I was unable to find the renamed file n.txt"_s
                          << u"-a.txt|-n.txt|stop"_s << skipped;
    QTest::newRow("gone, and old name in use")
        << L{u"a.txt"_s} << u"a.txt!n.txt"_s << u"-a.txt|-n.txt|stop"_s
        << u"2 The rename from a.txt to n.txt did not complete successfully\n"
           "1 The originally named file exists at a.txt, will use safe naming"_s
        << u"-a.txt|-n.txt|stop"_s << skipped;
    QTest::newRow("refused") << L{u"a"_s, u"n"_s} << u"a>n"_s << u"a|n|green arrow"_s << QString()
                             << u"!a|-n|stop"_s << u"2 Rollback failed: "_s;
}

void TestRollbackWindows::table()
{
    QFETCH(const QStringList, files);
    QFETCH(const QString, record);
    RollbackWindow t;
    for (const QString &file : files)
        t.tree.file(file);
    const auto problems = [&t] {
        QStringList lines;
        for (const TErrorTypes &error : *t.window->clicked(0, 1))
            lines += u"%1 %2"_s.arg(error.errClass).arg(error.errDesc);
        return lines.join(u'\n').remove(t.tree.path() + u'/');
    };
    t.load({record});
    QTEST(t.rows().value(0), "analysed");
    QTEST(problems(), "problem");
    t.window->rollBack();
    t.pumpUntil(State::Complete);
    QTEST(t.rows().value(0), "done");
    QFETCH(const QString, problemThen);
    QVERIFY2(problems().startsWith(problemThen), qPrintable(problems()));
    QVERIFY(!problemThen.isEmpty() || problems().isEmpty());

    QVERIFY(t.window->clicked(1, 1) == nullptr && t.window->clicked(0, 2) == nullptr);
    QVERIFY(t.window->clicked(-1, 1) == nullptr);
    QStringList lines;
    setLogSink([&lines](const QString &line) { lines += line; });
    QCOMPARE(t.window->cell(0, "size"_L1), TableCell());
    QVERIFY(lines.value(0).endsWith("rollback TRX table view: column size not processed"_L1));
}

void TestRollbackWindows::progress_data()
{
    QTest::addColumn<int>("records");
    QTest::addColumn<QList<int>>("percents");
    QTest::newRow("below ten nothing moves") << 9 << QList<int>{};
    QTest::newRow("ten") << 10 << QList<int>{100};
    QTest::newRow("twenty-five") << 25 << QList<int>{40, 80};
}

void TestRollbackWindows::progress()
{
    QFETCH(const int, records);
    RollbackWindow t;
    QStringList moves;
    for (int i = 0; i < records; ++i)
        moves += u"a%1.txt>n%1.txt"_s.arg(i);
    QList<int> percents;
    connect(t.window.get(), &TDoRollBackWindowController::progressChanged, this,
            [&] { percents += t.window->progress(); });
    t.load(moves);
    QTEST(percents, "percents");
    percents.clear();
    t.window->rollBack();
    t.pumpUntil(State::Complete);
    QCOMPARE(percents.takeFirst(), 0);
    QTEST(percents, "percents");
}

void TestRollbackWindows::logsThatCannotBeRead_data()
{
    QTest::addColumn<QString>("log");
    QTest::newRow("none given") << QString();
    QTest::newRow("missing") << u"missing.renameLog"_s;
    QTest::newRow("rubbish") << u"rubbish.renameLog"_s;
    QTest::newRow("a folder") << u"folder.renameLog"_s;
}

void TestRollbackWindows::logsThatCannotBeRead()
{
    QFETCH(const QString, log);
    RollbackWindow t;
    setLogSink([](const QString &) {});
    t.tree.file(u"rubbish.renameLog"_s, "bplist00 and no more");
    t.tree.folder(u"folder.renameLog"_s);
    t.window->loadLog(log.isEmpty() ? TFileURL() : t.url(log));
    t.settle();
    QCOMPARE(t.window->state(), State::Initial);
    QCOMPARE(t.window->statusText(), u"Initializing... processing log"_s);
    t.window->rollBack();
    QVERIFY(t.host.calls.isEmpty() && t.window->isProgressShown());
    t.window->cancel();
    QCOMPARE(t.codes.size(), 1U);
}

void TestRollbackWindows::authorisation_data()
{
    QTest::addColumn<QStringList>("choices"); // "" cancels
    QTest::addColumn<int>("panels");
    QTest::addColumn<int>("grants");
    QTest::addColumn<bool>("rolledBack");
    using L = QStringList;
    QTest::newRow("all granted") << L{u"x"_s, u"y"_s} << 2 << 2 << true;
    QTest::newRow("another folder is asked for again")
        << L{u"y"_s, u"x"_s, u"y"_s} << 3 << 2 << true;
    QTest::newRow("another path to the folder") << L{u"link"_s, u"y"_s} << 2 << 2 << true;
    QTest::newRow("a folder that is gone") << L{u"gone"_s, u""_s} << 2 << 0 << false;
    QTest::newRow("cancelled at the second") << L{u"x"_s, u""_s} << 2 << 1 << false;
}

void TestRollbackWindows::authorisation()
{
    QFETCH(const QStringList, choices);
    RollbackWindow t;
    setSandbox(true);
    for (const QString &file : {u"x/1"_s, u"x/2"_s, u"y/3"_s})
        t.tree.file(file);
    t.tree.link(u"x"_s, u"link"_s);
    for (const QString &choice : choices)
        t.host.choices.push_back(choice.isEmpty() ? std::nullopt : std::optional(t.url(choice)));
    int grants = 0;
    const auto subscription =
        t.notifications.subscribe(Notifications::kGotAuthorized, [&](const QVariantMap &info) {
            grants += info.value(kTheFolderAccess).value<TFolderAccess>().haveAccess() ? 1 : 0;
        });
    t.load({u"x/a>x/1"_s, u"x/b>x/2"_s, u"y/c>y/3"_s});
    t.window->rollBack();
    QFETCH(const bool, rolledBack);
    QCOMPARE(t.window->state(), rolledBack ? State::RollingBack : State::Analysed);
    if (rolledBack)
        t.pumpUntil(State::Complete);
    QTEST(int(t.host.calls.size()), "panels");
    QCOMPARE(t.host.calls.first(), u"folder panel: Grant access to x|"_s + t.tree.path(u"x"_s));
    QTEST(grants, "grants");
    QCOMPARE(t.tree.exists(u"y/c"_s), rolledBack);
    QCOMPARE(t.window->rollBackButtonEnabled(), !rolledBack);
}

void TestRollbackWindows::reverseOrder()
{
    for (const bool reverse : {false, true}) {
        RollbackWindow t;
        t.tree.file(u"2.txt"_s);
        t.tree.file(u"3.txt"_s);
        t.load({u"2.txt>3.txt"_s, u"1.txt>2.txt"_s});
        QVERIFY(t.window->recommendsReverse());
        t.window->setReverse(reverse);
        t.window->rollBack();
        t.pumpUntil(State::Complete);
        t.tree.remove(u"Logs"_s);
        const QStringList whole{u"1.txt"_s, u"2.txt"_s};
        QCOMPARE(t.tree.list() == whole, reverse);
    }
}

void TestRollbackWindows::leavingDuringAPass_data()
{
    QTest::addColumn<bool>("rolling");
    QTest::addColumn<bool>("destroy");
    QTest::newRow("analysis, cancelled") << false << false;
    QTest::newRow("analysis, closed") << false << true;
    QTest::newRow("rollback, cancelled") << true << false;
    QTest::newRow("rollback, closed") << true << true;
}

/// The pass is held before its second file while the user leaves: that file is finished, no other.
void TestRollbackWindows::leavingDuringAPass()
{
    QFETCH(const bool, rolling);
    QFETCH(const bool, destroy);
    RollbackWindow t;
    QStringList moves;
    for (int i = 0; i < 30; ++i) {
        t.tree.file(u"n%1.txt"_s.arg(i));
        moves += u"a%1.txt>n%1.txt"_s.arg(i);
    }
    if (rolling)
        t.load(moves);
    std::latch reached(1);
    std::latch left(1);
    t.disk.before(
        rolling ? Call::RenameNoReplace : Call::Status,
        [&] {
            reached.count_down();
            left.wait();
        },
        "n1.txt");
    rolling ? t.window->rollBack() : t.window->loadLog(t.logOf(moves));
    reached.wait();
    const int before = t.disk.count(Call::Status);
    t.window->cancel();
    if (destroy)
        t.window.reset();
    left.count_down();
    t.settle();
    QCOMPARE(t.codes.size(), 1U);
    QCOMPARE(t.tree.list().filter(QRegularExpression(u"^a"_s)).size(), rolling ? 2 : 0);
    QVERIFY(t.disk.count(Call::Status) <= before + 2);
    QVERIFY(destroy || t.window->state() == (rolling ? State::RollingBack : State::Initial));
}

void TestRollbackWindows::answerAfterLeaving()
{
    RollbackWindow t;
    setSandbox(true);
    t.tree.file(u"x/n"_s);
    t.load({u"x/a>x/n"_s});
    t.host.holdBack = true;
    t.host.choices.push_back(t.url(u"x"_s));
    t.window->rollBack();
    QVERIFY(!t.window->rollBackButtonEnabled());
    t.window->rollBack();
    QCOMPARE(t.host.calls.size(), 1);
    t.window->cancel();
    t.host.release();
    t.settle();
    QVERIFY(t.tree.exists(u"x/n"_s));
}

void TestRollbackWindows::chooser_data()
{
    QTest::addColumn<QString>("clicks");
    QTest::addColumn<int>("chosen"); // row, -1 for none
    QTest::newRow("clicked and chosen") << u"click 1,choose"_s << 1;
    QTest::newRow("another click counts") << u"click 0,click 1,choose"_s << 1;
    QTest::newRow("below the last row") << u"click 0,click 2,choose"_s << -1;
    QTest::newRow("nothing clicked") << u"choose"_s << -1;
    QTest::newRow("double click") << u"double 0"_s << 0;
    QTest::newRow("double click below the last row") << u"double 2,cancel"_s << -1;
    QTest::newRow("cancelled") << u"click 1,cancel"_s << -1;
    QTest::newRow("the first end counts") << u"cancel,double 1"_s << -1;
}

void TestRollbackWindows::chooser()
{
    QFETCH(const QString, clicks);
    RollbackWindow t;
    qputenv("XDG_DATA_HOME", t.tree.path().toUtf8());
    t.tree.file(u"Tavrin/Logs/1.renameLog"_s);
    t.tree.file(u"Tavrin/Logs/2.renameLog"_s);
    std::vector<std::optional<TFileURL>> ends;
    TRollBackWindowController chooser(t.mainThread, t.worker,
                                      [&ends](const auto &log) { ends.push_back(log); });
    QVERIFY(!chooser.chooseButtonEnabled());
    t.settle();
    for (const QString &click : clicks.split(u',')) {
        const qsizetype row = click.section(u' ', 1).toInt();
        if (click.startsWith("click"_L1)) {
            chooser.rowClicked(row);
            QCOMPARE(chooser.chooseButtonEnabled(), row < 2);
        } else if (click.startsWith("double"_L1)) {
            chooser.rowDoubleClicked(row);
        } else {
            click == "choose"_L1 ? chooser.chooseRollback() : chooser.cancel();
        }
    }
    QFETCH(const int, chosen);
    QCOMPARE(ends.size(), 1U);
    QCOMPARE(ends[0].has_value(), chosen >= 0);
    if (chosen >= 0)
        QCOMPARE(*ends[0], chooser.theLogs()[chosen]);
    else if (clicks.startsWith("cancel"_L1) || clicks.endsWith("cancel"_L1))
        QVERIFY(chooser.theRow() == -1 || clicks.contains("double 1"_L1));
}

void TestRollbackWindows::chooserListsLogsOnly()
{
    RollbackWindow t;
    qputenv("XDG_DATA_HOME", t.tree.path().toUtf8());
    TRollBackWindowController(t.mainThread, t.worker, {}); // gone before its list
    TRollBackWindowController empty(t.mainThread, t.worker, {});
    t.settle();
    QVERIFY(empty.theLogs().isEmpty());
    QVERIFY2(t.tree.exists(u"Tavrin/Logs"_s), "the folder is made");
    t.tree.file(u"Tavrin/Logs/notes.txt"_s);
    t.tree.file(u"Tavrin/Logs/Rename Batch Run - 2025-07-03, 14.05.09 (rollback data).renameLog"_s);
    TRollBackWindowController chooser(t.mainThread, t.worker, {});
    t.settle();
    QCOMPARE(chooser.theLogs().size(), 1);
    QCOMPARE(chooser.logName(0),
             (TableCell{u"Rename Batch Run - 2025-07-03, 14.05.09 (rollback data)"_s,
                        TImage(u"tick"_s), TableCell::Ink::Normal}));
}

QTEST_GUILESS_MAIN(TestRollbackWindows)
#include "tst_rollbackwindows.moc"
