// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Globals.h"
#include "app/TAppDelegate.h"
#include "app/TDoRollBackWindowController.h"
#include "app/TRollBackWindowController.h"
#include "commonprocs/Sandboxing.h"
#include "platform/PumpedMainThread.h"
#include "rollback/RollbackLog.h"
#include "settings/PreferenceStore.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "settings/logging.h"
#include "support/ManualClock.h"
#include "support/ScriptedApplicationHost.h"
#include "support/TemporaryTree.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <fcntl.h>
#include <optional>

using namespace Qt::StringLiterals;
using State = TDoRollBackWindowController::State;

namespace {

constexpr QLatin1StringView kStore{"config/com.zel.tavrin/preferences.json"};
constexpr QLatin1StringView kValid{R"({"author": "written by zel", "firstrun": "false")"};
const QStringList kLaterLaunch{u"update menus"_s, u"open untitled"_s, u"welcome"_s};

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
    DiskFileManager disk;
    ManualClock clock{TDate::fromSeconds(1'751'551'509)};
    OtherSystem system;
    PumpedMainThread mainThread;
    Notifications notifications;
    ScriptedApplicationHost host;
    std::optional<TAppDelegate> delegate;

    Program()
    {
        qputenv("XDG_CONFIG_HOME", tree.path(u"config"_s).toUtf8());
        qputenv("XDG_DATA_HOME", tree.path(u"data"_s).toUtf8());
        resetSettingsForTests();
    }
    ~Program() { setLogSink({}); }

    void start()
    {
        delegate.emplace(
            TAppDelegate::Services{host, mainThread, notifications, disk, clock, system});
        delegate->awakeFromNib();
    }
    /// The whole launch, until nothing is under way.
    void launch()
    {
        start();
        delegate->applicationWillFinishLaunching();
        delegate->applicationDidFinishLaunching();
        settle();
    }
    void settle()
    {
        delegate->worker().wait();
        mainThread.pump();
    }
    void laterStart() { tree.file(kStore, kValid.toString().toUtf8() + '}'); }
    QJsonObject stored() const { return QJsonDocument::fromJson(tree.content(kStore)).object(); }

    /// A run over two files that was cut off after the first move.
    void leaveInterruptedRun(const QString &name) const
    {
        auto journal = RunJournal::create(tree.folder(u"data/Tavrin/Logs"_s), clock,
                                          const_cast<DiskFileManager &>(disk))
                           .value();
        DiskFileManager real;
        for (const QString &file : {name, name + u"2"_s}) {
            TFileItem item{TFileURL::fileURLWithPath(tree.file(file)), {}};
            TFileStatus status;
            real.status(AT_FDCWD, item.url.fileSystemPath(), false, status);
            item.facts = TFileFacts::fromStatus(status);
            journal->addFile(item);
        }
        QVERIFY(journal->syncPlan());
        QVERIFY(QFile::rename(tree.path(name), tree.path(u"moved "_s + name)));
        journal->recordMove(0, {}); // the file is found by its inode
    }
};

} // namespace

class TestTAppDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void launches_data();
    void launches();
    void anOpenDocumentIsEnough();
    void preferencesAreWrittenOnce_data();
    void preferencesAreWrittenOnce();
    void preferencesThatCannotBeWritten();
    void defaultsAndGlobals();
    void versionsOfTheSystem_data();
    void versionsOfTheSystem();
    void interruptedRunsAreOffered_data();
    void interruptedRunsAreOffered();
    void severalInterruptedRuns();
    void unreadableJournal();
    void rollBackCommand();
    void endingAtAnyMoment();
};

void TestTAppDelegate::cleanup()
{
    qunsetenv("APP_SANDBOX_CONTAINER_ID");
    initSandbox();
    resetSettingsForTests();
}

void TestTAppDelegate::launches_data()
{
    QTest::addColumn<bool>("firstRun");
    QTest::addColumn<bool>("sandbox");
    QTest::addColumn<QString>("system");
    QTest::addColumn<QStringList>("calls");
    const QString notice = u"alert: Sandbox is ON|Compiled for Web but sandbox is on. Make sure to "
                           "remove for release...||"_s;
    const QString old = u"alert: OS Version not supported|This application requires at least OSX "
                        "version 10.6.8 or later to run. Sorry.||"_s;
    QTest::newRow("first") << true << false << QString()
                           << (QStringList{u"first run"_s} + kLaterLaunch);
    QTest::newRow("later") << false << false << QString() << kLaterLaunch;
    QTest::newRow("sandbox") << true << true << QString()
                             << (QStringList{notice, u"first run"_s} + kLaterLaunch);
    QTest::newRow("old system") << true << false << u"10.6.7"_s
                                << QStringList{u"first run"_s, old, u"quit"_s};
}

void TestTAppDelegate::launches()
{
    QFETCH(const bool, firstRun);
    QFETCH(const bool, sandbox);
    QFETCH(const QString, system);
    Program program;
    if (!firstRun)
        program.laterStart();
    if (sandbox)
        qputenv("APP_SANDBOX_CONTAINER_ID", "com.zel.tavrin");
    if (!system.isEmpty()) {
        program.system.is = QVersionNumber::fromString(system);
        program.host.answers.push_back(0);
    }
    program.launch();
    QTEST(program.host.calls, "calls");
    QCOMPARE(program.stored()[u"firstrun"_s].toString(), u"false"_s);
    QCOMPARE(sandboxIsOn(), sandbox);
}

void TestTAppDelegate::anOpenDocumentIsEnough()
{
    Program program;
    program.laterStart();
    program.host.documentIsOpen = true;
    program.launch();
    QCOMPARE(program.host.calls, QStringList({u"update menus"_s, u"welcome"_s}));
}

void TestTAppDelegate::preferencesAreWrittenOnce_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<bool>("firstRun");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("runCount");
    QTest::newRow("none") << QString() << true << u"1"_s << u"0"_s;
    QTest::newRow("valid") << kValid + u", \"version\": \"1\", \"runCount\": \"5\"}"_s << false
                           << u"1"_s << u"5"_s;
    QTest::newRow("another version")
        << kValid + u", \"version\": \"7\", \"runCount\": \"5\"}"_s << false << u"7"_s << u"5"_s;
    QTest::newRow("author off by one character")
        << QString(kValid).replace(u"zel"_s, u"zem"_s) + u", \"runCount\": \"5\"}"_s << true
        << u"1"_s << u"0"_s;
    QTest::newRow("cut off") << QString(kValid) << true << u"1"_s << u"0"_s;
    QTest::newRow("no object") << u"[1, 2]"_s << true << u"1"_s << u"0"_s;
}

void TestTAppDelegate::preferencesAreWrittenOnce()
{
    QFETCH(const QString, before);
    QFETCH(const bool, firstRun);
    Program program;
    setLogSink([](const QString &) {});
    if (!before.isEmpty())
        program.tree.file(kStore, before.toUtf8());
    program.start();
    QCOMPARE(program.host.calls.contains(u"first run"_s), firstRun);
    const QJsonObject stored = program.stored();
    QTEST(stored[u"version"_s].toString(), "version");
    QTEST(stored[u"runCount"_s].toString(), "runCount");
    const QJsonObject fixed{
        {u"author"_s, u"written by zel"_s},    {u"prefSize"_s, u"8"_s},
        {u"firstrun"_s, u"false"_s},           {u"hasRated"_s, u"false"_s},
        {u"SUHasLaunchedBefore"_s, u"true"_s}, {u"SUEnableAutomaticChecks"_s, u"false"_s}};
    for (auto it = fixed.begin(); it != fixed.end(); ++it)
        QCOMPARE(stored[it.key()], it.value());
}

void TestTAppDelegate::preferencesThatCannotBeWritten()
{
    Program program;
    QStringList lines;
    setLogSink([&lines](const QString &line) { lines += line; });
    program.tree.file(u"config/com.zel.tavrin"_s, "a file where the folder would be");
    program.launch();
    QCOMPARE(program.host.calls, QStringList{u"first run"_s} + kLaterLaunch);
    QVERIFY(lines.filter(u"cannot be written"_s).size() > 0);
}

void TestTAppDelegate::defaultsAndGlobals()
{
    Program program;
    setLogSink([](const QString &) {});
    const QString granted = program.tree.folder(u"granted"_s);
    const QString grant = u"{\"theBookmark\": \"file://%1\", \"haveAccess\": true}"_s;
    program.tree.file(kStore,
                      u"%1, \"logLevel\": 2, \"scopedFolders\": [%2, %3, 4]}"_s
                          .arg(kValid, grant.arg(granted), grant.arg(program.tree.path(u"gone"_s)))
                          .toUtf8());
    program.start();
    QVERIFY(UserDefaults::valueForKey(u"neverEver"_s).isValid());
    QCOMPARE(UserDefaults::integerForKey(u"neverEver"_s), 0);
    QVERIFY(UserDefaults::boolForKey(u"logging"_s));
    QCOMPARE(logLevel(), 2);
    QCOMPARE(theScopedFolders().folders().size(), 1U);
    QCOMPARE(theScopedFolders().folders()[0].theURL().path(), granted);
    QVERIFY(theScopedFolders().folders()[0].haveAccess());
    QVERIFY2(program.stored()[u"scopedFolders"_s].toArray().size() == 3, "never written back");
    setLogLevel(0);
}

void TestTAppDelegate::versionsOfTheSystem_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("quits");
    QTest::newRow("no requirement") << QString() << false;
    QTest::newRow("least") << u"10.6.8"_s << false;
    QTest::newRow("numbers, not texts") << u"10.10.1"_s << false;
    QTest::newRow("major") << u"11.0.0"_s << false;
    QTest::newRow("too old") << u"10.6.7"_s << true;
    QTest::newRow("much too old") << u"9.9.9"_s << true;
}

void TestTAppDelegate::versionsOfTheSystem()
{
    QFETCH(const QString, version);
    Program program;
    if (!version.isEmpty())
        program.system.is = QVersionNumber::fromString(version);
    program.host.answers.push_back(0);
    program.start();
    QTEST(program.host.calls.contains(u"quit"_s), "quits");
}

void TestTAppDelegate::interruptedRunsAreOffered_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("undone");
    QTest::newRow("kept") << 0 << false;
    QTest::newRow("closed without an answer") << -1 << false;
    QTest::newRow("undone") << 1 << true;
}

void TestTAppDelegate::interruptedRunsAreOffered()
{
    QFETCH(const int, answer);
    QFETCH(const bool, undone);
    Program program;
    program.laterStart();
    program.leaveInterruptedRun(u"a"_s);
    program.host.answers.push_back(answer);
    program.launch();
    QCOMPARE(program.host.callsOf(u"alert"_s),
             QStringList{u"alert: A Rename Was Interrupted|An earlier run over 2 files was cut off "
                         "after it had renamed 1 of them. Do you want to look at what can be "
                         "undone?||Keep/Undo..."_s});
    QCOMPARE(program.host.runner != nullptr, undone);
    if (undone) {
        program.mainThread.pumpUntil(
            [&] { return program.host.runner->state() == State::Analysed; });
        program.host.runner->rollBack();
        program.mainThread.pumpUntil(
            [&] { return program.host.runner->state() == State::Complete; });
        program.host.runner->cancel();
    }
    QCOMPARE(program.tree.exists(u"a"_s), undone);
    QCOMPARE(rollbackLogPaths(program.tree.path(u"data/Tavrin/Logs"_s)).size(), 1);
}

/// One question after another, the next when the rollback window of the first is closed.
void TestTAppDelegate::severalInterruptedRuns()
{
    Program program;
    program.laterStart();
    program.leaveInterruptedRun(u"a"_s);
    program.leaveInterruptedRun(u"b"_s);
    program.host.answers = {1, 0};
    program.launch();
    QCOMPARE(program.host.callsOf(u"alert"_s).size(), 1);
    program.host.runner->cancel();
    QCOMPARE(program.host.callsOf(u"alert"_s).size(), 2);
    QCOMPARE(program.host.runner, nullptr);
    QCOMPARE(rollbackLogPaths(program.tree.path(u"data/Tavrin/Logs"_s)).size(), 2);
}

void TestTAppDelegate::unreadableJournal()
{
    Program program;
    program.laterStart();
    program.tree.file(u"data/Tavrin/Logs/.running/x.journal"_s, "no journal");
    program.leaveInterruptedRun(u"a"_s);
    program.host.answers = {0, 0};
    program.launch();
    const QStringList alerts = program.host.callsOf(u"alert"_s);
    QCOMPARE(alerts.size(), 2);
    QCOMPARE(alerts.filter(u"An Interrupted Rename Could Not Be Recovered|The journal \""_s).size(),
             1);
}

void TestTAppDelegate::rollBackCommand()
{
    Program program;
    program.laterStart();
    program.launch();
    program.host.calls.clear();
    program.delegate->rollBack();
    program.delegate->rollBack();
    QCOMPARE(program.host.calls, QStringList{u"chooser"_s});
    program.host.chooser->cancel();
    QCOMPARE(program.host.calls.last(), u"close chooser"_s);

    program.tree.file(u"data/Tavrin/Logs/1.renameLog"_s);
    program.delegate->rollBack();
    program.settle();
    program.host.chooser->rowDoubleClicked(0);
    QCOMPARE(program.host.calls.mid(2),
             QStringList({u"chooser"_s, u"close chooser"_s, u"rollback window"_s}));
    program.delegate->rollBackLogWithURL(TFileURL::fileURLWithPath(u"/other"_s));
    program.delegate->rollBack();
    QCOMPARE(program.host.calls.size(), 5);
    program.host.runner->cancel();
    QCOMPARE(program.host.calls.last(), u"close rollback window"_s);
    program.mainThread.pump();
    program.delegate->rollBackLogWithURL(TFileURL::fileURLWithPath(u"/other"_s));
    QVERIFY(program.host.runner != nullptr);
}

/// Nothing that was posted or asked reaches a delegate that is gone.
void TestTAppDelegate::endingAtAnyMoment()
{
    Program program;
    program.laterStart();
    program.leaveInterruptedRun(u"a"_s);
    program.start();
    program.delegate->applicationDidFinishLaunching();
    program.delegate.reset();
    program.mainThread.pump();
    QCOMPARE(program.host.calls, QStringList());

    program.leaveInterruptedRun(u"b"_s);
    program.host.holdBack = true;
    program.host.answers = {1, 1};
    program.launch();
    QVERIFY(!program.host.held.empty());
    program.delegate->rollBack();
    program.delegate.reset();
    program.host.release();
    program.mainThread.pump();
    QCOMPARE(program.host.callsOf(u"rollback window"_s), QStringList());
}

QTEST_GUILESS_MAIN(TestTAppDelegate)
#include "tst_tappdelegate.moc"
