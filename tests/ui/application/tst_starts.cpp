// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TemporaryTree.h"
#include "ui/application/SingleStart.h"
#include "ui/application/StartMessage.h"
#include "ui/application/StartOptions.h"

#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <csignal>
#include <future>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using State = StartMessage::Reader::State;

/// The program as a process of its own, without a display unless it is told of one.
std::unique_ptr<QProcess> started(const TemporaryTree &tree, const QStringList &arguments,
                                  const QString &platform)
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QString::fromLatin1(variable));
    if (!platform.isEmpty())
        environment.insert(u"QT_QPA_PLATFORM"_s, platform);
    environment.insert(u"XDG_RUNTIME_DIR"_s, tree.path(u"run"_s));
    environment.insert(u"XDG_CONFIG_HOME"_s, tree.path(u"config"_s));
    environment.insert(u"XDG_DATA_HOME"_s, tree.path(u"data"_s));
    process->setProcessEnvironment(environment);
    process->start(QStringLiteral(TAVRIN_PROGRAM), arguments);
    return process;
}

bool ends(QProcess &process)
{
    return process.state() == QProcess::NotRunning || process.waitForFinished(20'000);
}

} // namespace

class TestStarts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_tree->setMode(m_tree->folder(u"run"_s).section(u'/', -1), 0700); }
    void options_data();
    void options();
    void messages_data();
    void messages();
    void withoutADisplay_data();
    void withoutADisplay();
    void pathsGoToTheFirst();
    void hostileClientsAreSentAway();
    void ofTwoAtOnceOneIsFirst();
    void afterTheFirstHasGone();

private:
    const std::unique_ptr<TemporaryTree> m_tree = std::make_unique<TemporaryTree>();
};

void TestStarts::options_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<StartOptions::Wish>("wish");
    QTest::addColumn<QStringList>("paths");
    using Wish = StartOptions::Wish;
    QTest::newRow("none") << QStringList() << Wish::Open << QStringList();
    QTest::newRow("paths") << QStringList{u"/a b"_s, u"/c/"_s, u""_s} << Wish::Open
                           << QStringList{u"/a b"_s, u"/c"_s};
    QTest::newRow("dashes") << QStringList{u"--"_s, u"/x"_s, u"--help"_s} << Wish::Open
                            << QStringList{u"/x"_s, absolutePath(u"--help"_s)};
    QTest::newRow("url") << QStringList{u"file:///a%20b"_s} << Wish::Open << QStringList{u"/a b"_s};
    QTest::newRow("help wins") << QStringList{u"/a"_s, u"-h"_s} << Wish::Tell << QStringList();
    QTest::newRow("preset") << QStringList{u"-p"_s, u"-x"_s, u"/a"_s} << Wish::Open
                            << QStringList{u"/a"_s};
    QTest::newRow("preset without a name")
        << QStringList{u"--preset"_s} << Wish::Refuse << QStringList();
    QTest::newRow("unknown") << QStringList{u"--new"_s} << Wish::Refuse << QStringList();
}

void TestStarts::options()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QStringList, paths);
    const StartOptions options = StartOptions::parse(arguments);
    QTEST(options.wish, "wish");
    QStringList found;
    for (const TFileURL &path : options.paths)
        found += path.path();
    QCOMPARE(found, paths);
}

void TestStarts::messages_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<State>("state");
    QTest::addColumn<QStringList>("paths");
    const QStringList odd{u"/a\nb"_s, u"/raw"_s + QChar(0xdcff), u"/\u00fc"_s};
    const QByteArray good = StartMessage::encode(odd);
    QTest::newRow("whole") << good << State::Complete << odd;
    QTest::newRow("no paths") << StartMessage::encode({}) << State::Complete << QStringList();
    QTest::newRow("cut in the mark") << good.first(3) << State::More << QStringList();
    QTest::newRow("cut at the end") << good.chopped(1) << State::More << QStringList();
    QTest::newRow("too long") << good + "x" << State::Damaged << QStringList();
    QTest::newRow("another mark") << QByteArray("GET / HTTP") << State::Damaged << QStringList();
    QTest::newRow("huge") << QByteArray("TAVRIN1\n\xff\xff\xff\xff", 12) << State::Damaged
                          << QStringList();
    QTest::newRow("relative") << QByteArray("TAVRIN1\n\0\0\0\2a\0", 14) << State::Damaged
                              << QStringList();
    QTest::newRow("no end") << QByteArray("TAVRIN1\n\0\0\0\2/a", 14) << State::Damaged
                            << QStringList();
}

void TestStarts::messages()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QStringList, paths);
    StartMessage::Reader reader;
    State state = State::More;
    for (qsizetype i = 0; i < bytes.size() && state == State::More; ++i) // byte by byte
        state = reader.add(QByteArrayView(bytes).sliced(i, 1));
    if (state == State::Complete && !QByteArray(QTest::currentDataTag()).startsWith("too long")) {
        QCOMPARE(reader.paths(), paths);
    } else {
        StartMessage::Reader whole;
        state = whole.add(bytes);
    }
    QTEST(state, "state");
}

void TestStarts::withoutADisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("platform");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("out");
    QTest::newRow("version") << QStringList(u"--version"_s) << u""_s << 0
                             << u"tavrin " TAVRIN_VERSION "\n"_s;
    QTest::newRow("help") << QStringList(u"--help"_s) << u""_s << 0 << u"Usage: tavrin"_s;
    QTest::newRow("option") << QStringList(u"--no"_s) << u""_s << 2 << u"unknown option --no"_s;
    QTest::newRow("no display") << QStringList() << u""_s << 2 << u"there is no display"_s;
    QTest::newRow("dead display") << QStringList() << u"nosuch"_s << 2
                                  << u"the display cannot be used"_s;
}

void TestStarts::withoutADisplay()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, platform);
    QFETCH(const QString, out);
    const auto process = started(*m_tree, arguments, platform);
    QVERIFY(ends(*process));
    QCOMPARE(process->exitStatus(), QProcess::NormalExit);
    QTEST(process->exitCode(), "status");
    const QString said =
        QString::fromUtf8(process->exitCode() == 0 ? process->readAllStandardOutput()
                                                   : process->readAllStandardError());
    QVERIFY2(said.contains(out), qUtf8Printable(said));
}

void TestStarts::pathsGoToTheFirst()
{
    SingleStart first(m_tree->path(u"run"_s), u"1"_s);
    QCOMPARE(first.start({}), SingleStart::Outcome::First);
    QSignalSpy received(&first, &SingleStart::pathsReceived);
    const QStringList paths{u"/a"_s, u"/raw"_s + QChar(0xdcfe)};
    auto second = std::async(std::launch::async, [this, paths] {
        return SingleStart(m_tree->path(u"run"_s), u"1"_s).start(paths);
    });
    QTest::qWait(50); // it has to try more than once
    first.listen();
    QTRY_COMPARE(received.size(), 1);
    QCOMPARE(received.first().first().toStringList(), paths);
    QTRY_COMPARE(second.wait_for(0s), std::future_status::ready);
    QCOMPARE(second.get(), SingleStart::Outcome::HandedOver);
    SingleStart elsewhere(m_tree->path(u"run"_s), u"2"_s);
    QCOMPARE(elsewhere.start({}), SingleStart::Outcome::First);
    first.retire();
    SingleStart next(m_tree->path(u"run"_s), u"1"_s);
    QCOMPARE(next.start({}, 0ms), SingleStart::Outcome::First);
    SingleStart nowhere({}, u"1"_s);
    QCOMPARE(nowhere.start({}), SingleStart::Outcome::Alone);
}

void TestStarts::hostileClientsAreSentAway()
{
    SingleStart first(m_tree->path(u"run"_s), u"3"_s);
    QCOMPARE(first.start({}), SingleStart::Outcome::First);
    first.listen();
    QSignalSpy received(&first, &SingleStart::pathsReceived);
    const QString socket =
        m_tree->path(u"run/"_s) + m_tree->list(u"run"_s).filter(u".socket"_s).constFirst();
    std::vector<std::unique_ptr<QLocalSocket>> silent;
    for (int i = 0; i < 15; ++i) {
        silent.push_back(std::make_unique<QLocalSocket>());
        silent.back()->connectToServer(socket);
        QVERIFY(silent.back()->waitForConnected());
    }
    QLocalSocket liar;
    liar.connectToServer(socket);
    QVERIFY(liar.waitForConnected());
    liar.write("TAVRIN1\n\xff\xff\xff\xff", 12);
    QTRY_COMPARE(liar.state(), QLocalSocket::UnconnectedState);
    auto honest = std::async(std::launch::async, [this] {
        return SingleStart(m_tree->path(u"run"_s), u"3"_s).start({u"/a"_s});
    });
    QTRY_COMPARE(received.size(), 1);
    QTRY_COMPARE(honest.wait_for(0s), std::future_status::ready);
    QCOMPARE(honest.get(), SingleStart::Outcome::HandedOver);
}

void TestStarts::ofTwoAtOnceOneIsFirst()
{
    const auto one = started(*m_tree, {u"/tmp"_s}, u"offscreen"_s);
    const auto two = started(*m_tree, {u"/tmp"_s}, u"offscreen"_s);
    QTRY_VERIFY_WITH_TIMEOUT(
        (one->state() == QProcess::NotRunning) != (two->state() == QProcess::NotRunning), 20'000);
    QProcess &first = one->state() == QProcess::Running ? *one : *two;
    QProcess &second = one->state() == QProcess::Running ? *two : *one;
    QCOMPARE(second.exitCode(), 0);
    first.terminate();
    QVERIFY(ends(first));
    QCOMPARE(first.exitStatus(), QProcess::NormalExit);
    QCOMPARE(first.exitCode(), 0);
}

void TestStarts::afterTheFirstHasGone()
{
    const auto killed = started(*m_tree, {}, u"offscreen"_s);
    const auto sockets = [this] { return m_tree->list(u"run"_s).filter(u".socket"_s); };
    const qsizetype before = sockets().size();
    QTRY_COMPARE_WITH_TIMEOUT(sockets().size(), before + 1, 20'000);
    killed->kill();
    QVERIFY(ends(*killed)); // its socket is still there
    QCOMPARE(sockets().size(), before + 1);
    const auto next = started(*m_tree, {}, u"offscreen"_s);
    const auto last = started(*m_tree, {u"/tmp"_s}, u"offscreen"_s);
    QTRY_VERIFY_WITH_TIMEOUT(
        (next->state() == QProcess::NotRunning) != (last->state() == QProcess::NotRunning), 20'000);
    QProcess &running = next->state() == QProcess::Running ? *next : *last;
    ::kill(static_cast<pid_t>(running.processId()), SIGHUP);
    QVERIFY(ends(running));
    QCOMPARE(running.exitStatus(), QProcess::NormalExit);
    QCOMPARE(running.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestStarts)
#include "tst_starts.moc"
