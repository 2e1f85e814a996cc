// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Globals.h"
#include "app/TAppDelegate.h"
#include "app/TDoRollBackWindowController.h"
#include "app/TRollBackWindowController.h"
#include "commonprocs/Sandboxing.h"
#include "rollback/RollbackLog.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "settings/logging.h"
#include "support/FaultyFileManager.h"
#include "support/ManualClock.h"
#include "support/PumpedMainThread.h"
#include "support/ScriptedApplicationHost.h"
#include "support/TemporaryTree.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <fcntl.h>
#include <future>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using L = QStringList;
using State = TDoRollBackWindowController::State;

namespace {

const QString kStore = u"config/com.zel.tavrin/preferences.json"_s;
const QString kValid = u"{\"author\": \"written by zel\", \"firstrun\": \"false\""_s;
const L kLaterLaunch{u"update menus"_s, u"open untitled"_s, u"welcome"_s};
const QString kInterrupted = u"alert: A Rename Was Interrupted|An earlier run over 2 files was cut "
                             "off after it had renamed 1 of them. Do you want to look at what can "
                             "be undone?||Keep/Undo..."_s;

class OtherSystem : public OperatingSystem
{
public:
    std::optional<QVersionNumber> is;
    std::optional<QVersionNumber> version() const override { return is; }
};

/// A user's folders and a program that starts in them.
struct Program
{
    TemporaryTree tree;
    FaultyFileManager disk;
    ManualClock clock{TDate::fromSeconds(1'751'551'509)};
    OtherSystem system;
    PumpedMainThread mainThread;
    Notifications notifications;
    ScriptedApplicationHost host;
    L lines;
    std::optional<TAppDelegate> delegate;

    explicit Program(const QString &store = kValid + u'}')
    {
        if (!store.isEmpty())
            tree.file(kStore, store.toUtf8());
        qputenv("XDG_CONFIG_HOME", tree.path(u"config"_s).toUtf8());
        qputenv("XDG_DATA_HOME", tree.path(u"data"_s).toUtf8());
        resetSettingsForTests();
        setLogSink([this](const QString &line) { lines += line; });
    }
    ~Program()
    {
        delegate.reset();
        setLogSink({});
        qunsetenv("APP_SANDBOX_CONTAINER_ID");
        initSandbox();
        resetSettingsForTests();
    }
    void launch()
    {
        delegate.emplace(
            TAppDelegate::Services{host, mainThread, notifications, disk, clock, system});
        delegate->awakeFromNib();
        delegate->applicationWillFinishLaunching();
        delegate->applicationDidFinishLaunching();
    }
    void settle()
    {
        delegate->recovery()->waitFor(30s);
        delegate->worker().wait();
        mainThread.pump();
    }
    QJsonObject stored() const { return QJsonDocument::fromJson(tree.content(kStore)).object(); }
    qsizetype logs() const { return rollbackLogPaths(tree.path(u"data/Tavrin/Logs"_s)).size(); }

    /// A run over two files that was cut off after the first move.
    void leaveInterruptedRun(const QString &name)
    {
        auto journal = RunJournal::create(tree.folder(u"data/Tavrin/Logs"_s), clock, disk).value();
        for (const QString &file : {name, name + u'2'}) {
            TFileItem item{TFileURL::fileURLWithPath(tree.file(file)), {}};
            TFileStatus status;
            disk.status(AT_FDCWD, item.url.fileSystemPath(), false, status);
            item.facts = TFileFacts::fromStatus(status);
            journal->addFile(item);
        }
        QVERIFY(journal->syncPlan() && journal->begin());
        QVERIFY(QFile::rename(tree.path(name), tree.path(name + u" moved"_s)));
        journal->recordMove(0, {}); // the file is found by its inode
    }
};

} // namespace

class TestTAppDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void launches_data();
    void launches();
    void anOpenBatchIsEnough();
    void preferences_data();
    void preferences();
    void preferencesThatCannotBeWritten();
    void defaultsAndGlobals();
    void interruptedRuns_data();
    void interruptedRuns();
    void severalInterruptedRuns();
    void aFolderThatDoesNotAnswer();
    void rollBackCommand();
    void endDuringARollback();
    void endingAtAnyMoment();
};

void TestTAppDelegate::launches_data()
{
    QTest::addColumn<QString>("store");
    QTest::addColumn<QString>("environment"); // "sandbox", or the system's version
    QTest::addColumn<QStringList>("calls");
    const L first{u"first run"_s};
    const L notice{u"alert: Sandbox is ON|Compiled for Web but sandbox is on. Make sure to remove "
                   "for release...||"_s};
    const L old{u"alert: OS Version not supported|This application requires at least OSX version "
                "10.6.8 or later to run. Sorry.||"_s,
                u"quit"_s};
    const QString later = kValid + u'}';
    QTest::newRow("first") << QString() << QString() << first + kLaterLaunch;
    QTest::newRow("later") << later << QString() << kLaterLaunch;
    QTest::newRow("sandbox") << QString() << u"sandbox"_s << notice + first + kLaterLaunch;
    QTest::newRow("least system") << later << u"10.6.8"_s << kLaterLaunch;
    QTest::newRow("numbers, not texts") << later << u"10.10.1"_s << kLaterLaunch;
    QTest::newRow("old system") << QString() << u"10.6.7"_s << first + old;
    QTest::newRow("much older system") << later << u"9.9.9"_s << old;
}

void TestTAppDelegate::launches()
{
    QFETCH(const QString, store);
    QFETCH(const QString, environment);
    Program program(store);
    if (environment == "sandbox"_L1)
        qputenv("APP_SANDBOX_CONTAINER_ID", "com.zel.tavrin");
    else if (!environment.isEmpty())
        program.system.is = QVersionNumber::fromString(environment);
    program.host.answers.push_back(0);
    program.launch();
    program.settle();
    QTEST(program.host.calls, "calls");
    QCOMPARE(program.stored()[u"firstrun"_s].toString(), u"false"_s);
}

void TestTAppDelegate::anOpenBatchIsEnough()
{
    Program program;
    program.host.documentIsOpen = true;
    program.launch();
    program.settle();
    QCOMPARE(program.host.calls, L({u"update menus"_s, u"welcome"_s}));
}

void TestTAppDelegate::preferences_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<bool>("firstRun");
    QTest::addColumn<QString>("kept"); // version and run count afterwards
    const QString rest = u", \"version\": \"7\", \"runCount\": \"5\"}"_s;
    QTest::newRow("none") << QString() << true << u"1 0"_s;
    QTest::newRow("another version") << kValid + rest << false << u"7 5"_s;
    QTest::newRow("author off by one character")
        << QString(kValid).replace(u"zel"_s, u"zem"_s) + rest << true << u"1 0"_s;
    QTest::newRow("cut off") << kValid << true << u"1 0"_s;
    QTest::newRow("no object") << u"[1, 2]"_s << true << u"1 0"_s;
}

void TestTAppDelegate::preferences()
{
    QFETCH(const QString, before);
    QFETCH(const bool, firstRun);
    Program program(before);
    program.launch();
    QCOMPARE(program.host.calls.contains(u"first run"_s), firstRun);
    const QJsonObject stored = program.stored();
    QTEST(stored[u"version"_s].toString() + u' ' + stored[u"runCount"_s].toString(), "kept");
    L written;
    for (const char *key : {"author", "prefSize", "firstrun", "hasRated", "SUHasLaunchedBefore",
                            "SUEnableAutomaticChecks"})
        written += stored[QLatin1StringView(key)].toString();
    QCOMPARE(written.join(u' '), u"written by zel 8 false false true false"_s);
}

void TestTAppDelegate::preferencesThatCannotBeWritten()
{
    Program program{QString()};
    program.tree.file(u"config/com.zel.tavrin"_s, "a file where the folder would be");
    program.launch();
    program.settle();
    QCOMPARE(program.host.calls, L{u"first run"_s} + kLaterLaunch);
    QVERIFY(!program.lines.filter(u"cannot be written"_s).isEmpty());
}

void TestTAppDelegate::defaultsAndGlobals()
{
    const TemporaryTree tree;
    const QString grant = u"{\"theBookmark\": \"file://%1\", \"haveAccess\": true}"_s;
    Program program(u"%1, \"logLevel\": 2, \"scopedFolders\": [%2, %3, 4]}"_s.arg(
        kValid, grant.arg(tree.folder(u"granted"_s)), grant.arg(tree.path(u"gone"_s))));
    program.launch();
    QVERIFY(UserDefaults::valueForKey(u"neverEver"_s).isValid());
    QCOMPARE(UserDefaults::integerForKey(u"neverEver"_s), 0);
    QVERIFY(UserDefaults::boolForKey(u"logging"_s));
    QCOMPARE(logLevel(), 2);
    QCOMPARE(theScopedFolders().folders().size(), 1U);
    QCOMPARE(theScopedFolders().folders()[0].theURL().path(), tree.path(u"granted"_s));
    QVERIFY(theScopedFolders().folders()[0].haveAccess());
    QVERIFY2(program.stored()[u"scopedFolders"_s].toArray().size() == 3, "never written back");
    setLogLevel(0);
}

void TestTAppDelegate::interruptedRuns_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("undone");
    QTest::newRow("kept") << 0 << false;
    QTest::newRow("closed without an answer") << -1 << false;
    QTest::newRow("undone") << 1 << true;
}

void TestTAppDelegate::interruptedRuns()
{
    QFETCH(const int, answer);
    QFETCH(const bool, undone);
    Program program;
    program.leaveInterruptedRun(u"a"_s);
    program.host.answers.push_back(answer);
    program.launch();
    program.settle();
    QCOMPARE(program.host.callsOf(u"alert"_s), L{kInterrupted});
    TDoRollBackWindowController *const runner = program.host.runner;
    QCOMPARE(runner != nullptr, undone);
    if (undone) {
        program.mainThread.pumpUntil([&] { return runner->state() == State::Analysed; });
        runner->rollBack();
        program.mainThread.pumpUntil([&] { return runner->state() == State::Complete; });
    }
    QCOMPARE(program.tree.exists(u"a"_s), undone);
    QCOMPARE(program.logs(), 1);
}

/// One after another, the next when the rollback window of the first is closed.
void TestTAppDelegate::severalInterruptedRuns()
{
    Program program;
    program.leaveInterruptedRun(u"a"_s);
    program.leaveInterruptedRun(u"b"_s);
    program.tree.file(u"data/Tavrin/Logs/.running/~.journal"_s, "no journal, and the last one");
    program.host.answers = {1, 0, 0};
    program.launch();
    program.settle();
    QCOMPARE(program.host.callsOf(u"alert"_s).size(), 1);
    program.host.runner->cancel();
    const L alerts = program.host.callsOf(u"alert"_s);
    QCOMPARE(alerts.first(2), L({kInterrupted, kInterrupted}));
    QVERIFY(alerts.last().startsWith(
        "alert: An Interrupted Rename Could Not Be Recovered|The journal \""_L1));
    QVERIFY(program.host.runner == nullptr);
    QCOMPARE(program.logs(), 2);
}

/// It keeps neither the windows' own disk work nor the end of the program.
void TestTAppDelegate::aFolderThatDoesNotAnswer()
{
    Program program;
    program.leaveInterruptedRun(u"share/a"_s);
    std::promise<void> answers;
    const QString folder = program.tree.path(u"share"_s);
    program.disk.before(
        FaultyFileManager::Call::OpenFolder, [&] { answers.get_future().wait(); }, folder.toUtf8());
    program.launch();
    const auto recovery = program.delegate->recovery();
    QVERIFY(QTest::qWaitFor([&] { return recovery->folderAtHand() == folder; }));
    QVERIFY(program.delegate->worker().wait());
    program.delegate.reset();
    QVERIFY(!recovery->isOver());
    answers.set_value();
    QVERIFY(recovery->waitFor(30s));
    program.mainThread.pump();
    QCOMPARE(program.host.callsOf(u"alert"_s), L());
}

/// What goes on after the window has gone is no more than the file in hand.
void TestTAppDelegate::endDuringARollback()
{
    Program program;
    program.launch();
    program.settle();
    const auto url = [&program](const QString &name) {
        return TFileURL::fileURLWithPath(program.tree.path(u"files/"_s + name));
    };
    const auto writer = RollbackLogWriter::create(program.tree.folder(u"logs"_s)).value();
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s}) {
        program.tree.file(u"files/new "_s + name);
        TRenameTRX record = TRenameTRX::TRXWithSource(url(name));
        record.renamedURL = url(u"new "_s + name);
        record.renameComplete = true;
        writer->append(record);
    }
    program.delegate->rollBackLogWithURL(
        TFileURL::fileURLWithPath(writer->finish(program.clock.now()).value()));
    TDoRollBackWindowController *const runner = program.host.runner;
    program.mainThread.pumpUntil([&] { return runner->state() == State::Analysed; });
    std::promise<void> started;
    std::promise<void> ended;
    program.disk.before(FaultyFileManager::Call::RenameNoReplace, [&] {
        started.set_value();
        ended.get_future().wait_for(5s);
    });
    QObject::connect(runner, &QObject::destroyed, runner, [&] { ended.set_value(); });
    runner->rollBack();
    started.get_future().wait();
    program.delegate.reset();
    QCOMPARE(program.tree.list(u"files"_s), L({u"a"_s, u"new b"_s, u"new c"_s}));
}

void TestTAppDelegate::rollBackCommand()
{
    Program program;
    program.launch();
    program.settle();
    program.tree.file(u"data/Tavrin/Logs/1.renameLog"_s);
    program.host.calls.clear();
    program.delegate->rollBack();
    program.delegate->rollBack();
    QCOMPARE(program.host.calls, L{u"chooser"_s});
    program.host.chooser->cancel();
    program.delegate->rollBack();
    program.settle();
    program.host.chooser->rowDoubleClicked(0);
    program.delegate->rollBackLogWithURL(TFileURL::fileURLWithPath(u"/other"_s));
    program.delegate->rollBack();
    program.host.runner->cancel();
    program.mainThread.pump();
    program.delegate->rollBackLogWithURL(TFileURL::fileURLWithPath(u"/other"_s));
    QCOMPARE(program.host.calls,
             L({u"chooser"_s, u"close chooser"_s, u"chooser"_s, u"close chooser"_s,
                u"rollback window"_s, u"close rollback window"_s, u"rollback window"_s}));
}

/// Nothing that was posted or asked reaches a delegate that is gone.
void TestTAppDelegate::endingAtAnyMoment()
{
    Program program;
    program.leaveInterruptedRun(u"a"_s);
    program.launch();
    program.delegate.reset();
    program.mainThread.pump();
    QCOMPARE(program.host.calls, L{u"update menus"_s});

    program.leaveInterruptedRun(u"b"_s);
    program.host.holdBack = true;
    program.host.answers = {1, 1};
    program.launch();
    program.settle();
    QVERIFY(!program.host.held.empty());
    program.delegate.reset();
    program.host.release();
    QCOMPARE(program.host.callsOf(u"rollback window"_s), L());
}

QTEST_GUILESS_MAIN(TestTAppDelegate)
#include "tst_tappdelegate.moc"
