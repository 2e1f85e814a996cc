// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "settings/logging.h"
#include "support/ScriptedDialogs.h"
#include "support/TemporaryTree.h"
#include "support/WindowTools.h"
#include "ui/controls/Theme.h"
#include "ui/windows/FirstRunDialog.h"
#include "ui/windows/PreferencesWindow.h"
#include "ui/windows/RatingQuestion.h"
#include "ui/windows/UiSettings.h"
#include "ui/windows/UpdateCheck.h"
#include "ui/windows/UpdateNotice.h"
#include "ui/windows/UpdateProgress.h"
#include "ui/windows/WelcomeWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace Qt::StringLiterals;
using L = QStringList;

namespace {

constexpr std::chrono::milliseconds kPatience{400}; ///< with a server that never ends
const UpdateCheck::Limits kLimits{4096, std::chrono::seconds(4), true};

using Host = ScriptedDialogs<TDialogHost>;

/// Answers every request with the same bytes; keeps sending more of them when told to drip.
class Feed : public QTcpServer
{
public:
    QByteArray answer;
    bool drips = false;
    int requests = 0;
    QByteArray received; ///< the text of all requests

    Feed()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *const socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { serve(socket); });
        });
    }
    QUrl url(const QString &path = u"/feed"_s) const
    {
        return QUrl(u"http://127.0.0.1:%1%2"_s.arg(serverPort()).arg(path));
    }
    static QByteArray page(const QByteArray &body, const QByteArray &head = {})
    {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\n" + head + "\r\n" + body;
    }

private:
    void serve(QTcpSocket *socket)
    {
        received += socket->readAll();
        if (!received.endsWith("\r\n\r\n"))
            return; // the rest follows
        ++requests;
        socket->write(answer);
        if (!drips)
            return socket->disconnectFromHost();
        auto *timer = new QTimer(socket);
        connect(timer, &QTimer::timeout, socket, [socket] { socket->write(" "); });
        timer->start(20);
    }
};

} // namespace

class TestUpdates : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void check_data();
    void check();
    void addresses_data();
    void addresses();
    void noAnswerAfterTheEnd();
    void notice();
    void theUserWaits_data();
    void theUserWaits();
    void rating_data();
    void rating();
    void preferences();
    void greetings();

private:
    std::unique_ptr<TemporaryTree> m_tree;
};

void TestUpdates::init()
{
    m_tree = std::make_unique<TemporaryTree>();
    qputenv("XDG_CONFIG_HOME", m_tree->path().toUtf8());
    resetSettingsForTests();
    initPreferences();
    initLogging();
}

void TestUpdates::check_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("drips");
    QTest::addColumn<QString>("sentence"); // its beginning
    const QString newer = u"Tavrin 99.1 is available."_s;
    const QString newest = u"Tavrin " TAVRIN_VERSION " is the newest version."_s;
    const auto failed = [](const char *why) {
        return u"Tavrin could not look for a new version. "_s + QLatin1StringView(why);
    };
    const auto json = [](const QByteArray &body) { return Feed::page(body); };
    const QByteArray good = R"({"version": "99.1", "page": "https://tavrin.example/new"})";
    const auto row = [](const char *name, const QByteArray &answer, const QString &sentence,
                        bool drips = false) { QTest::newRow(name) << answer << drips << sentence; };
    row("newer", json(good), newer);
    row("the same", json(R"({"version": ")" TAVRIN_VERSION R"("})"), newest);
    row("older", json(R"({"version": "9.99.99"})"), newest);
    row("fields of later times", json(R"({"version": "99.1", "x": [{}]})"), newer);
    row("no version", json(R"({"page": "https://tavrin.example"})"),
        failed("The update feed names no version."));
    row("a version that is none", json(R"({"version": "99.1\nrm -rf"})"),
        failed("The update feed names no version."));
    row("a number for a version", json(R"({"version": 99})"),
        failed("The update feed names no version."));
    row("a page", json("<html>not here</html>"), failed("The answer is no update feed."));
    row("an array", json("[]"), failed("The answer is no update feed."));
    row("nothing", Feed::page(""), failed("The answer is no update feed."));
    row("packed", Feed::page("\x1f\x8b\x08", "Content-Encoding: gzip\r\n"), failed(""));
    row("huge", Feed::page(good + QByteArray(5'000'000, ' ')),
        failed("The answer is too long for an update feed."));
    row("just too long", Feed::page(good + QByteArray(4097 - good.size(), ' ')),
        failed("The answer is too long for an update feed."));
    row("just short enough", Feed::page(good + QByteArray(4096 - good.size(), ' ')), newer);
    row("never", "", failed("The server did not answer in time."), true);
    row("a drip for ever", Feed::page(good), failed("The server did not answer in time."), true);
    row("missing", "HTTP/1.1 404 Not Found\r\nConnection: close\r\n\r\n", failed(""));
    row("empty success", "HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n",
        failed("The server answered with status 204."));
    row("in circles", "HTTP/1.1 302 Found\r\nLocation: /feed\r\nConnection: close\r\n\r\n",
        failed(""));
    row("to a file", "HTTP/1.1 302 Found\r\nLocation: file:///etc/passwd\r\n\r\n", failed(""));
    row("garbage", "\xff\xfe\x00\x01 what\r\n\r\n"_ba, failed(""));
}

void TestUpdates::check()
{
    Feed feed;
    QFETCH(QByteArray, answer);
    QFETCH(const bool, drips);
    QFETCH(const QString, sentence);
    feed.answer = answer;
    feed.drips = drips;
    UpdateCheck check({kLimits.bytes, drips ? kPatience : kLimits.time, true}, nullptr);
    std::vector<UpdateCheck::Answer> answers;
    check.start(feed.url(), [&](const auto &given) { answers.push_back(given); });
    QVERIFY(answers.empty());
    QTRY_COMPARE(answers.size(), 1);
    const QString shown = UpdateNotice::sentence(answers[0]);
    QVERIFY2(shown.startsWith(sentence), qPrintable(shown));
    QVERIFY(feed.requests <= 4 && !feed.received.contains("Cookie"));
    QTest::qWait(20);
    QCOMPARE(answers.size(), 1);
}

void TestUpdates::addresses_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("allowsOwnMachine");
    for (const char *address : {"", "feed.json", "file:///etc/passwd", "ftp://127.0.0.1/x",
                                "http://localhost/feed", "https:///feed", "https://a:b@127.0.0.1/"})
        QTest::newRow(address) << QString::fromLatin1(address) << true;
    QTest::newRow("plain http in earnest") << u"http://127.0.0.1/feed"_s << false;
}

void TestUpdates::addresses()
{
    QFETCH(const QString, address);
    QFETCH(const bool, allowsOwnMachine);
    UpdateCheck check({4096, kPatience, allowsOwnMachine}, nullptr);
    QString problem;
    check.start(QUrl(address), [&](const auto &given) { problem = given.problem; });
    QTRY_COMPARE(problem, u"The address of the update feed must begin with https://."_s);
}

void TestUpdates::noAnswerAfterTheEnd()
{
    Feed feed;
    feed.answer = Feed::page(R"({"version": "99.1"})");
    int first = 0;
    int second = 0;
    auto check = std::make_unique<UpdateCheck>(kLimits, nullptr);
    check->start(feed.url(), [&](const auto &) { ++first; });
    check->start(feed.url(), [&](const auto &) {
        ++second;
        check.reset(); // from within its answer
    });
    QTRY_COMPARE(second, 1);
    check = std::make_unique<UpdateCheck>(kLimits, nullptr);
    check->start(feed.url(), [&](const auto &) { ++first; });
    check.reset();
    QTest::qWait(50);
    QCOMPARE(first, 0);
}

void TestUpdates::notice()
{
    Feed feed;
    feed.answer = Feed::page(
        R"({"version": "99.1", "page": "http://tavrin.example", "notes": "a\u202eb\n c"})");
    Host host;
    UpdateNotice notice(host, kLimits, nullptr);
    notice.check();
    QCOMPARE(host.calls, L{u"alert: Updates|"_s + UpdateNotice::noFeed() + u"||"_s});
    host.calls.clear();
    notice.checkAtStart();
    UiSettings::setUpdateFeed(feed.url());
    notice.checkAtStart(); // not turned on
    QTest::qWait(50);
    QCOMPARE(feed.requests, 0);
    UiSettings::setLooksForUpdates(true);
    notice.checkAtStart();
    QTRY_COMPARE(host.calls.size(), 1); // a page that is not https is not offered
    QCOMPARE(host.calls[0], u"alert: Updates|Tavrin 99.1 is available. This is " TAVRIN_VERSION
                            ".|a\\xE2\\x80\\xAEb c|"_s);
    notice.checkAtStart(); // not twice a day
    QTest::qWait(50);
    QCOMPARE(feed.requests, 1);
    UiSettings::setLastUpdateDay(0);
    feed.answer = Feed::page("{}");
    notice.checkAtStart(); // a failure at start is no matter for the user
    QTRY_COMPARE(feed.requests, 2);
    QTest::qWait(50);
    QCOMPARE(host.calls.size(), 1);
}

void TestUpdates::theUserWaits_data()
{
    QTest::addColumn<bool>("cancels");
    QTest::newRow("for the answer") << false;
    QTest::newRow("not any longer") << true;
}

void TestUpdates::theUserWaits()
{
    QFETCH(const bool, cancels);
    Feed feed;
    feed.drips = cancels;
    feed.answer = cancels ? QByteArray(" ") : Feed::page(R"({"version": "99.1"})");
    UiSettings::setUpdateFeed(feed.url());
    Host host;
    UpdateNotice notice(host, {kLimits.bytes, cancels ? kPatience : kLimits.time, true}, nullptr);
    notice.check();
    notice.check(); // waits for the same answer
    QPointer<UpdateProgress> progress = WindowTools::shown<UpdateProgress>();
    QVERIFY(progress);
    if (cancels)
        QTest::mouseClick(WindowTools::button(*progress, u"Cancel"_s), Qt::LeftButton);
    QTRY_VERIFY(!progress);
    QTest::qWait(static_cast<int>(kPatience.count()) + 100);
    QCOMPARE(host.calls.size(), cancels ? 0 : 1);
}

void TestUpdates::rating_data()
{
    QTest::addColumn<int>("answer");        // -2: none yet
    QTest::addColumn<QString>("questions"); // at which runs
    QTest::newRow("later") << 0 << u"30 60"_s;
    QTest::newRow("closed") << -1 << u"30 60"_s;
    QTest::newRow("rated") << 1 << u"30"_s;
    QTest::newRow("never") << 2 << u"30"_s;
    QTest::newRow("left open") << -2 << u"30 60"_s;
}

/// Many starts of the program, each with what the last one stored.
void TestUpdates::rating()
{
    QFETCH(const int, answer);
    L questions;
    QUrl page;
    for (int run = 1; run <= 65; ++run) {
        resetSettingsForTests();
        initPreferences();
        RatingQuestion::countRun();
        Host host;
        if (answer >= -1)
            host.answers = {answer, 0};
        for (int i = 0; i < 2; ++i)
            RatingQuestion::askIfDue(host, [&page](const QUrl &url) {
                page = url;
                return true;
            });
        if (!host.calls.isEmpty())
            questions += QString::number(run);
        QVERIFY(host.calls.size() <= 1);
    }
    QTEST(questions.join(u' '), "questions");
    QCOMPARE(page.isEmpty(), answer != 1);
}

void TestUpdates::preferences()
{
    Feed feed;
    feed.answer = Feed::page(R"({"version": "1"})");
    QPointer<PreferencesWindow> window = new PreferencesWindow(kLimits, nullptr, nullptr);
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window));
    const auto popUp = [&window](const QString &name) {
        for (auto *combo : window->findChildren<QComboBox *>()) {
            if (combo->accessibleName() == name)
                return combo;
        }
        return static_cast<QComboBox *>(nullptr);
    };
    QTest::keyClick(popUp(u"Appearance"_s), Qt::Key_End);
    QVERIFY(Theme::scheme() == Theme::Scheme::Dark);
    QCOMPARE(UserDefaults::integerForKey(u"appearance"_s), 2);
    QTest::keyClick(popUp(u"Messages"_s), Qt::Key_End);
    QCOMPARE(logLevel(), 3);
    QTest::keyClick(popUp(u"Language"_s), Qt::Key_End);
    QCOMPARE(UiSettings::language(), u"en"_s);

    auto *field = window->findChild<QLineEdit *>();
    auto *atStart = window->findChild<QCheckBox *>();
    QPushButton *now = nullptr;
    for (auto *button : window->findChildren<QPushButton *>())
        now = button->text() == u"Check &Now"_s ? button : now;
    QVERIFY(!atStart->isEnabled() && !now->isEnabled() && !atStart->isChecked());
    const auto says = [&window](const QString &text) {
        const auto labels = window->findChildren<QLabel *>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel *label) { return label->text().contains(text); });
    };
    QVERIFY(says(UpdateNotice::noFeed()));
    field->setFocus();
    QTest::keyClicks(field, u"no address"_s);
    QTest::mouseClick(now, Qt::LeftButton);
    QVERIFY(says(u"The address must begin with https://."_s) && UiSettings::updateFeed().isEmpty());
    field->clear();
    QTest::keyClicks(field, feed.url().toString());
    QTest::mouseClick(now, Qt::LeftButton);
    QTRY_VERIFY(says(u"is the newest version."_s));
    QTest::mouseClick(atStart, Qt::LeftButton, {}, QPoint(10, atStart->height() / 2));
    QVERIFY(UiSettings::looksForUpdates() && UiSettings::updateFeed() == feed.url());
    QTest::keyClick(window, Qt::Key_Escape);
    QTRY_VERIFY(!window);
    Theme::apply(Theme::Scheme::Light);
}

void TestUpdates::greetings()
{
    int finished = 0;
    QPointer<FirstRunDialog> first = new FirstRunDialog([&finished] { ++finished; });
    first->show();
    QTest::keyClick(first, Qt::Key_Return);
    QTRY_VERIFY(!first);
    QCOMPARE(finished, 1);

    QPointer<WelcomeWindow> welcome = new WelcomeWindow;
    welcome->show();
    auto *atStart = welcome->findChild<QCheckBox *>();
    QVERIFY(atStart->isChecked());
    QTest::mouseClick(atStart, Qt::LeftButton, {}, QPoint(10, atStart->height() / 2));
    QVERIFY(!UiSettings::showsWelcome());
    welcome->close();
    QTRY_VERIFY(!welcome);
}

QTEST_MAIN(TestUpdates)
#include "tst_updates.moc"
