// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TRuleKinds.h"
#include "settings/Preferences.h"
#include "support/TemporaryTree.h"
#include "support/WindowTools.h"
#include "ui/application/ApplicationHost.h"
#include "ui/controls/Popover.h"
#include "ui/table/FilePane.h"
#include "ui/tiles/RecipeCard.h"
#include "ui/windows/AboutDialog.h"
#include "ui/windows/FirstRunDialog.h"
#include "ui/windows/LogWindow.h"
#include "ui/windows/QuestionDialog.h"
#include "ui/windows/RollBackChooserWindow.h"
#include "ui/windows/RollBackWindow.h"
#include "ui/windows/UiSettings.h"
#include "ui/windows/WelcomeWindow.h"

#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTableView>
#include <QUrl>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

/// The whole program in this process, with settings and data of its own.
struct Program
{
    TemporaryTree tree;
    std::unique_ptr<ApplicationHost> host;

    explicit Program(const QStringList &files = {}, bool isFirstRun = false)
    {
        qputenv("XDG_CONFIG_HOME", tree.path(u"config"_s).toUtf8());
        qputenv("XDG_DATA_HOME", tree.path(u"data"_s).toUtf8());
        resetSettingsForTests();
        if (!isFirstRun) {
            initPreferences();
            thePreferences().firstRun = false;
            WritePreferences(thePreferences());
            UiSettings::setShowsWelcome(false);
        }
        TFileURLs urls;
        for (const QString &file : files)
            urls += TFileURL::fileURLWithPath(tree.file(u"files/"_s + file));
        host = std::make_unique<ApplicationHost>();
        host->start(urls);
        (void)QTest::qWaitFor([this] { return window() != nullptr && isIdle(); }, 20'000);
    }
    BatchWindow *window() const { return WindowTools::shown<BatchWindow>(); }
    bool isIdle() const
    {
        const TDocument &doc = window()->document();
        return !doc.isReceivingDrop() && doc.remainingAOps() == 0 && !doc.isAnalysing() &&
               !doc.isRenaming();
    }
    void trigger(const QString &command) const
    {
        QTest::qWait(1); // menus follow with the next turn of the event loop
        WindowTools::command(*window(), command)->trigger();
    }
    QStringList names() const { return tree.list(u"files"_s); }
};

void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

} // namespace

class TestApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newcomersRoad();
    void earlierRunsAreRolledBack();
    void firstStart();
    void beginsWithAPreset();
    void furtherWindowsAreInSight();
    void laterStarts();
    void contextMenusByKey_data();
    void contextMenusByKey();
    void endsWithTheLastWindow();
    void quitsFromEveryWindow_data();
    void quitsFromEveryWindow();
    void sheetsKeepTheKeyboard();
    void quitsDuringARename();
};

/// Drop, two rules, look, rename, change one's mind.
void TestApplication::newcomersRoad()
{
    const Program program;
    const QStringList before{u"a/one.txt"_s, u"a/two.txt"_s, u"three.txt"_s};
    for (const QString &name : before)
        program.tree.file(u"files/"_s + name);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(program.tree.path(u"files"_s))});
    QWidget *const list = program.window()->findChild<FilePane *>();
    QDragEnterEvent enter({200, 200}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(program.window(), &enter);
    QDropEvent drop(QPointF(200, 200), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(program.window(), &drop);
    QVERIFY(list->isVisible());
    QTRY_COMPARE(program.window()->document().sourceObjectArray().size(), 3U);
    program.window()->activateWindow();
    list->setFocus();
    key(Qt::Key_1, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), u"Holiday "_s);
    key(Qt::Key_Return);
    key(Qt::Key_3, Qt::ControlModifier);
    key(Qt::Key_Escape);
    QTRY_VERIFY(program.isIdle());
    QCOMPARE(program.window()->document().sourceObjectArray().front()->targetName(),
             u"Holiday 1"_s);
    key(Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(WindowTools::answer<QuestionDialog>(u"Rename"_s));
    QTRY_VERIFY(WindowTools::shown<LogWindow>() != nullptr);
    QCOMPARE(program.names().filter(u"Holiday"_s).size(), 3);
    QVERIFY(!program.names().contains(u"three.txt"_s));
    program.trigger(u"Roll Back This Run"_s);
    QVERIFY(WindowTools::answer<RollBackWindow>(u"Roll Back"_s));
    QTRY_COMPARE(program.names(), (QStringList{u"a/"_s} + before));
    QTRY_VERIFY(WindowTools::button(*WindowTools::shown<RollBackWindow>(), u"Close"_s) != nullptr);
    WindowTools::shown<RollBackWindow>()->close();
    QTRY_VERIFY(WindowTools::shown<RollBackWindow>() == nullptr);
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
}

void TestApplication::earlierRunsAreRolledBack()
{
    const Program program({u"a.txt"_s});
    program.window()->document().addRules({TRuleKinds::ruleForIdentifier(u"Counter"_s)}, 0);
    QTRY_VERIFY(program.isIdle());
    program.trigger(u"Rename"_s);
    QVERIFY(WindowTools::answer<QuestionDialog>(u"Rename"_s));
    QTRY_VERIFY(WindowTools::shown<LogWindow>() != nullptr); // which takes the keyboard
    QCOMPARE(program.names(), QStringList(u"1.txt"_s));
    program.trigger(u"Roll Back an Earlier Run..."_s);
    QTRY_VERIFY(WindowTools::shown<RollBackChooserWindow>() != nullptr);
    auto *logs = WindowTools::shown<RollBackChooserWindow>()->findChild<QAbstractItemView *>();
    QTRY_COMPARE(logs->model()->rowCount(), 1);
    QTest::mouseClick(logs->viewport(), Qt::LeftButton, {},
                      logs->visualRect(logs->model()->index(0, 0)).center());
    QTest::keyClick(logs, Qt::Key_Return);
    QVERIFY(WindowTools::answer<RollBackWindow>(u"Roll Back"_s));
    QTRY_COMPARE(program.names(), QStringList(u"a.txt"_s));
}

void TestApplication::firstStart()
{
    const Program program({}, true);
    QTRY_VERIFY(WindowTools::shown<FirstRunDialog>() != nullptr);
    QVERIFY(WindowTools::shown<WelcomeWindow>() == nullptr); // one after the other
    WindowTools::shown<FirstRunDialog>()->accept();
    QTRY_VERIFY(WindowTools::shown<WelcomeWindow>() != nullptr);
    WindowTools::shown<WelcomeWindow>()->close();
    qputenv("TAVRIN_METADATA_HELPER", TAVRIN_METADATA);
    program.trigger(u"About Tavrin"_s);
    program.trigger(u"About Tavrin"_s);
    QTRY_VERIFY(WindowTools::shown<AboutDialog>() != nullptr);
    QCOMPARE(program.window()->findChildren<AboutDialog *>().size(), 1);
    const AboutDialog &about = *WindowTools::shown<AboutDialog>();
    QTRY_VERIFY(about.details().contains(u"\nTagLib 1"_s) ||
                about.details().contains(u"\nTagLib 2"_s));
}

void TestApplication::beginsWithAPreset()
{
    Program program;
    BatchWindow &window = *program.window();
    QTRY_VERIFY(!window.document().thePresets().empty());
    const auto &[name, rules] = window.document().thePresets().back();
    const std::size_t count = rules.size();
    window.usePreset(QString(name));
    QTRY_COMPARE(window.document().ruleArray().size(), count);
    window.usePreset(u"Nonesuch"_s);
    QVERIFY(WindowTools::answer<QuestionDialog>(u"OK"_s));
    QCOMPARE(window.document().ruleArray().size(), count);
}

void TestApplication::furtherWindowsAreInSight()
{
    const Program program;
    const QRect room = program.window()->screen()->availableGeometry();
    program.window()->resize(room.size() - QSize(40, 60));
    program.window()->move(room.topLeft() + QPoint(4, 4));
    QTRY_VERIFY(room.contains(program.window()->frameGeometry()));
    for (int i = 0; i < 3; ++i) {
        const QWidget *const before = QApplication::activeWindow();
        program.trigger(u"New Batch"_s);
        QTRY_VERIFY(QApplication::activeWindow() != before);
        QVERIFY(room.contains(QApplication::activeWindow()->frameGeometry()));
    }
}

/// Their files go to the window in use, not to another one.
void TestApplication::laterStarts()
{
    const Program program({u"a.txt"_s});
    BatchWindow *const first = program.window();
    program.trigger(u"New Batch"_s);
    QTRY_VERIFY(QApplication::activeWindow() != first);
    first->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), static_cast<QWidget *>(first));
    first->findChild<FilePane *>()->focusTable();
    program.host->open({TFileURL::fileURLWithPath(program.tree.file(u"files/b.txt"_s))});
    QTRY_COMPARE(first->document().sourceObjectArray().size(), 2U);
}

void TestApplication::contextMenusByKey_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("tile") << u"Duplicate"_s;
    QTest::newRow("file") << u"Copy New Name"_s;
    QTest::newRow("text field") << u"Select All"_s;
}

void TestApplication::contextMenusByKey()
{
    QFETCH(const QString, command);
    const Program program({u"a.txt"_s});
    BatchWindow &window = *program.window();
    window.document().addRules({TRuleKinds::ruleForIdentifier(u"Counter"_s)}, 0);
    auto &files = *window.findChild<FilePane *>();
    files.selectAllFiles();
    const QLatin1StringView place(QTest::currentDataTag());
    if (place == "tile"_L1)
        window.findChild<RecipeCard *>()->focusRecipe();
    else if (place == "file"_L1)
        files.focusTable();
    else
        files.searchField()->setFocus();
    key(Qt::Key_F10, Qt::ShiftModifier);
    const QWidget *const menu = QApplication::activePopupWidget();
    QVERIFY(menu != nullptr);
    QStringList texts;
    for (const QAction *action : menu->actions())
        texts += WindowTools::plain(action->text());
    QVERIFY(texts.contains(command));
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
}

void TestApplication::endsWithTheLastWindow()
{
    const Program program;
    QSignalSpy quitting(program.host.get(), &ApplicationHost::quitting);
    program.trigger(u"New Batch"_s);
    program.window()->close();
    QTest::qWait(10); // nothing may come of it
    QCOMPARE(quitting.size(), 0);
    QVERIFY(program.window() != nullptr);
    program.window()->close();
    QTRY_COMPARE(quitting.size(), 1);
}

void TestApplication::quitsFromEveryWindow_data()
{
    QTest::addColumn<QString>("command");
    for (const char *const command :
         {"New Batch", "Add Files...", "Delete Presets...", "Preferences...", "Tavrin Help",
          "Welcome", "About Tavrin", "Roll Back an Earlier Run..."})
        QTest::newRow(command) << QString::fromLatin1(command);
}

/// Ctrl+W closes what the command has opened, Ctrl+Q everything.
void TestApplication::quitsFromEveryWindow()
{
    QFETCH(const QString, command);
    const Program program;
    QSignalSpy quitting(program.host.get(), &ApplicationHost::quitting);
    const QWidget *const batch = program.window();
    for (const Qt::Key pressed : {Qt::Key_W, Qt::Key_Q}) {
        program.trigger(command);
        QTRY_VERIFY(QApplication::activeWindow() != nullptr &&
                    QApplication::activeWindow() != batch);
        QCOMPARE(quitting.size(), 0);
        const QPointer<QWidget> opened = QApplication::activeWindow();
        QTest::keyClick(opened, pressed, Qt::ControlModifier);
        QTRY_VERIFY(!opened || !opened->isVisible());
    }
    QTRY_COMPARE(quitting.size(), 1);
}

void TestApplication::sheetsKeepTheKeyboard()
{
    const Program program;
    BatchWindow &batch = *program.window();
    program.trigger(u"Delete Presets..."_s);
    QTRY_VERIFY(QApplication::activeWindow() != &batch);
    const QWidget *const sheet = QApplication::activeWindow();
    QSignalSpy moves(qApp, &QGuiApplication::focusWindowChanged);
    batch.windowHandle()->requestActivate(); // as a click on it does
    QTRY_COMPARE(moves.size(), 2);           // there and back
    QCOMPARE(QApplication::activeWindow(), sheet);
}

void TestApplication::quitsDuringARename()
{
    QStringList files;
    for (int i = 0; i < 400; ++i)
        files += u"f%1.txt"_s.arg(i, 3, 10, QLatin1Char('0'));
    const Program program(files);
    program.window()->document().addRules({TRuleKinds::ruleForIdentifier(u"Counter"_s)}, 0);
    QTRY_VERIFY(program.isIdle());
    TDocument &document = program.window()->document();
    QSignalSpy quitting(program.host.get(), &ApplicationHost::quitting);
    connect(&document, &TDocument::renamingChanged, program.host.get(),
            [&program](bool isRenaming) {
                if (isRenaming)
                    program.host->quitRequested();
            });
    program.trigger(u"Rename"_s);
    QVERIFY(WindowTools::answer<QuestionDialog>(u"Rename"_s));
    QTRY_VERIFY(!program.host->hasOpenDocuments());
    QCOMPARE(quitting.size(), 1);
    QCOMPARE(program.names().size(), files.size()); // whatever was renamed, nothing is lost
    QCOMPARE(program.tree.list(u"data/Tavrin/Logs"_s).filter(u".renameLog"_s).size(), 1);
}

QTEST_MAIN(TestApplication)
#include "tst_application.moc"
