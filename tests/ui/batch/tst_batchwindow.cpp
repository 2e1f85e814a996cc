// SPDX-License-Identifier: GPL-3.0-or-later
#include "BatchFixture.h"
#include "document/RollbackNotice.h"
#include "support/Table.h"
#include "ui/batch/SortButton.h"
#include "ui/batch/StatusLine.h"
#include "ui/controls/BadgeButton.h"
#include "ui/controls/PillButton.h"
#include "ui/table/FileTableView.h"
#include "ui/tiles/SampleLine.h"
#include "ui/windows/AddPanel.h"
#include "ui/windows/ErrorLogView.h"
#include "ui/windows/FolderAccessView.h"
#include "ui/windows/LogWindow.h"
#include "ui/windows/QuestionDialog.h"

#include <QClipboard>
#include <QDropEvent>
#include <QHelpEvent>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QScreen>
#include <QSignalSpy>
#include <QUrl>

using namespace Qt::StringLiterals;

class TestBatchWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filtersByMenu();
    void editorsComeOneAtATime();
    void rulesGoFromWindowToWindow();
    void sorting_data();
    void sorting();
    void addPanels_data();
    void addPanels();
    void options();
    void filesDroppedAnywhere();
    void renameAndItsLog();
    void questionsWaitForTheSheet();
    void renameButtonTellsWhy_data();
    void renameButtonTellsWhy();
    void problemsAreListed();
    void problemsLeadToTheirFiles();
    void oldNamesSaySo();
    void closingDuringARename();
    void comesBackWhereItWas_data();
    void comesBackWhereItWas();
    void fitsASmallScreen();
};

void TestBatchWindow::filtersByMenu()
{
    const BatchFixture batch({u"a.txt"_s, u"b.txt"_s});
    const QAction &filters = batch.command(u"Filter"_s);
    const QList<QAction *> actions = filters.menu()->actions();
    actions.last()->trigger();
    Q_EMIT filters.menu()->aboutToShow();
    QStringList checked;
    for (const QAction *action : actions) {
        if (action->isChecked())
            checked += action->text();
    }
    QCOMPARE(checked, QStringList(u"Problems"_s));
    QCOMPARE(WindowTools::button(batch.files(), u"Problems"_s)->isChecked(), true);
}

void TestBatchWindow::editorsComeOneAtATime()
{
    BatchFixture batch;
    batch.document().addRules({textRule(u"x"_s), makeRule(u"Counter"_s)}, 0);
    const TRuleList rules = batch.document().ruleArray();
    for (const TRulePtr &rule : rules) {
        batch.notifications.post(QString(TDocument::kRuleDoubleClicked),
                                 {{Notifications::kTheModel, QVariant::fromValue(rule)},
                                  {TDocument::kTheData, QVariant::fromValue(&batch.document())}});
        QCOMPARE(batch.popover()->anchor(), batch.recipe().tileOf(rule));
    }
    batch.key(Qt::Key_E, Qt::ControlModifier);
    QCOMPARE(batch.popover()->anchor(), batch.recipe().extensionTile());
    batch.key(Qt::Key_Escape);
    QVERIFY(batch.popover() == nullptr);
    batch.key(Qt::Key_3, Qt::ControlModifier);
    batch.document().undoStack().undo(); // what was being edited is gone
    QTRY_VERIFY(batch.popover() == nullptr);
}

void TestBatchWindow::rulesGoFromWindowToWindow()
{
    const BatchFixture from;
    from.document().addRules({textRule(u"x"_s), makeRule(u"Date"_s)}, 0);
    from.recipe().focusRecipe();
    from.key(Qt::Key_A, Qt::ControlModifier);
    from.key(Qt::Key_X, Qt::ControlModifier);
    QVERIFY(from.settle());
    QCOMPARE(from.rules(), QStringList());
    const BatchFixture to;
    to.key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(to.rules(), QStringList({u"Text"_s, u"Date"_s}));
    QApplication::clipboard()->setText(u"text"_s); // neither rules nor files
    QVERIFY(to.settle());
    QCOMPARE(to.command(u"Paste"_s).isEnabled(), false);
}

void TestBatchWindow::sorting_data()
{
    QTest::addColumn<QString>("first");
    QTest::newRow("Name, Ascending, Ignoring Case") << u"a"_s;
    QTest::newRow("Name, Ascending, Case Sensitive") << u"B"_s;
    QTest::newRow("Name, Descending, Ignoring Case") << u"c"_s;
    QTest::newRow("New Name, Descending") << u"c"_s;
    QTest::newRow("Size, Ascending") << u"a"_s;
    QTest::newRow("Problems, Descending") << u"a"_s;
}

void TestBatchWindow::sorting()
{
    QFETCH(const QString, first);
    const BatchFixture batch({u"a.txt"_s, u"c.txt"_s, u"B.txt"_s});
    batch.document().addRules({makeRule(u"Original"_s)}, 0);
    QVERIFY(batch.settle());
    auto *const popUp = batch.files().findChild<SortButton *>();
    QTest::mouseClick(popUp, Qt::LeftButton);
    auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    for (QAction *action : WindowTools::commands(*menu)) {
        if (action->text() == QLatin1StringView(QTest::currentDataTag()))
            action->trigger();
    }
    menu->close();
    QVERIFY(batch.settle());
    QCOMPARE(batch.document().sourceObjectArray().front()->fileName(), first);
}

/// What the panels give, also of names that Qt's own panels pass over.
void TestBatchWindow::addPanels_data()
{
    const Table<QString, QString, QString, QStringList> row("command", "typed", "press", "added");
    const QString raw(QChar(0xDCE9));
    const QString files = u"Add Files..."_s;
    const QString folder = u"Add Folder..."_s;
    const QString in = raw + u"-in"_s;
    row("file", files, u"a.txt", u"Add", {u"a"_s});
    row("unshown file", files, u"", u"Add It", {raw});
    row("both", files, u"a.txt", u"Add It", {raw, u"a"_s});
    row("folder", folder, u".", u"Add", {u"a"_s, in, raw});
    row("unshown folder", folder, u"", u"Add It", {in});
}

void TestBatchWindow::addPanels()
{
    QFETCH(const QString, typed);
    QFETCH(const QString, press);
    BatchFixture batch;
    const QString folder = batch.tree.folder(u"files"_s);
    const QChar raw(0xDCE9);
    for (const QString &path :
         {u"a.txt"_s, raw + u".txt"_s, u".hidden"_s + raw, raw + u"/"_s + raw + u"-in.txt"_s})
        batch.tree.file(u"files/"_s + path);
    QFETCH(const QString, command);
    batch.command(command).trigger();
    QPointer<AddPanel> panel = batch.window->findChild<AddPanel *>();
    QVERIFY(panel);
    panel->setDirectory(folder);
    if (!typed.isEmpty())
        panel->findChild<QLineEdit *>()->setText(folder + u'/' + typed);
    QTRY_VERIFY(WindowTools::button(*panel, u"Add It"_s) != nullptr);
    QTest::mouseClick(WindowTools::button(*panel, press), Qt::LeftButton);
    QTRY_VERIFY(!panel);
    QVERIFY(batch.settle());
    QStringList added;
    for (const auto &file : batch.document().sourceObjectArray())
        added += file->fileName();
    QTEST(added, "added");
}

void TestBatchWindow::options()
{
    BatchFixture batch({u"a.txt"_s});
    const auto toggle = [&batch](const QString &text) {
        QAction &action = batch.command(text);
        action.trigger();
        return action.isChecked();
    };
    QCOMPARE(toggle(u"Replace \":\" and \"/\" by \"_\""_s), false);
    QCOMPARE(batch.document().theOptions().compliance, 1);
    QCOMPARE(toggle(u"Allow Leading Periods"_s), true);
    QCOMPARE(batch.document().theOptions().allowLeadingPeriod, 1);
    QCOMPARE(toggle(u"Duplicate Names Are Critical"_s), true);
    QCOMPARE(batch.document().duplicatesAreCritical(), true);
    QCOMPARE(toggle(u"Use a Log"_s), true);
    QCOMPARE(batch.document().theOptions().useLog, 1);
    QCOMPARE(toggle(u"Color Code Results"_s), false);
    QCOMPARE(batch.document().colorCode(), false);
    QCOMPARE(toggle(u"Live Update"_s), false);
    QCOMPARE(batch.document().liveUpdate(), false);
    QCOMPARE(toggle(u"Leave Unchanged Names Alone"_s), true);
    batch.open(); // of all options, a new batch knows this one
    QCOMPARE(batch.document().theOptions(), (TOptions{0, 0, {}, 0, true}));
    QVERIFY(!batch.document().isAnalysing() && !batch.document().errorLog());
    QCOMPARE(batch.command(u"Leave Unchanged Names Alone"_s).isChecked(), true);
}

void TestBatchWindow::filesDroppedAnywhere()
{
    const BatchFixture batch;
    QMimeData data;
    data.setUrls({QUrl(u"https://example.org/a.txt"_s)});
    QDragEnterEvent remote({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(batch.window.get(), &remote);
    QCOMPARE(remote.isAccepted(), false);
    batch.tree.file(u"files/sub/a.txt"_s);
    data.setUrls({QUrl::fromLocalFile(batch.tree.path(u"files"_s))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(batch.window.get(), &enter);
    QCOMPARE(enter.isAccepted(), true);
    QDropEvent drop({5, 5}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(batch.window.get(), &drop);
    QCOMPARE(drop.dropAction(), Qt::CopyAction); // never one after which the source is deleted
    QVERIFY(batch.settle());
    QCOMPARE(batch.document().sourceObjectArray().size(), 1U);
}

void TestBatchWindow::renameAndItsLog()
{
    BatchFixture batch({u"b.txt"_s, u"a.txt"_s});
    batch.document().addRules({textRule(u"n"_s), makeRule(u"Counter"_s)}, 0);
    QVERIFY(batch.settle());
    batch.key(Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(WindowTools::answer<QuestionDialog>(u"Rename"_s));
    QTRY_VERIFY(WindowTools::shown<LogWindow>() != nullptr);
    QVERIFY(batch.settle());
    QCOMPARE(batch.names(), QStringList({u"n1.txt"_s, u"n2.txt"_s}));
    auto *const sample = batch.window->findChild<SampleLine *>();
    QCOMPARE(sample->accessibleDescription(),
             u"b.txt becomes n1.txt\nRenamed 2 files. Roll Back takes it back."_s);
    QTest::mouseClick(WindowTools::button(*batch.window, u"Roll Back"_s), Qt::LeftButton);
    QCOMPARE(batch.commands.calls, QStringList(u"roll back renameLog"_s));
    for (const QString &news : {u"1 of 2 files have their old names back."_s,
                                u"The old names are back. Add the files again to rename them."_s}) {
        batch.notifications.post(RollbackNotice::kRolledBack,
                                 {{RollbackNotice::kLog, batch.document().rollbackURL().path()},
                                  {RollbackNotice::kRestored, 1LL}});
        QTRY_COMPARE(sample->accessibleDescription().section(u'\n', 1), news);
    }
    batch.window->close();
    QTRY_VERIFY(WindowTools::shown<LogWindow>() == nullptr);
}

/// What was asked for earlier may come while the user is at something else.
void TestBatchWindow::questionsWaitForTheSheet()
{
    const BatchFixture batch;
    batch.command(u"Add Files..."_s).trigger();
    QVERIFY(WindowTools::shown<AddPanel>() != nullptr);
    batch.document().paletteButtonClicked();
    QVERIFY(WindowTools::shown<QuestionDialog>() == nullptr);
    WindowTools::shown<AddPanel>()->reject();
    QVERIFY(WindowTools::answer<QuestionDialog>(u"OK"_s));
}

void TestBatchWindow::renameButtonTellsWhy_data()
{
    const Table<QString, QString> row("before", "expected");
    row("nothing there", u"", u"There is nothing to rename yet");
    row("no rules", u"files", u"Critical problems stand in the way");
    row("no files", u"rules", u"Done! ...");
    row("ready", u"files rules", u"Renames the files on disk");
}

void TestBatchWindow::renameButtonTellsWhy()
{
    QFETCH(const QString, before);
    QFETCH(const QString, expected);
    const BatchFixture batch(before.contains("files"_L1) ? QStringList(u"a.txt"_s) : QStringList());
    if (before.contains("rules"_L1))
        batch.document().addRules({textRule(u"new"_s)}, 0);
    QVERIFY(batch.settle());
    QWidget *const rename = batch.window->findChild<StatusLine *>()->renameButton();
    QHelpEvent hover(QEvent::ToolTip, {20, 20}, rename->mapToGlobal(QPoint(20, 20)));
    QApplication::sendEvent(rename, &hover);
    QVERIFY2(rename->toolTip().startsWith(expected), qUtf8Printable(rename->toolTip()));
    QCOMPARE(rename->isEnabled(), true);
}

void TestBatchWindow::problemsAreListed()
{
    const BatchFixture batch({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s});
    batch.document().addRules({textRule(u"same"_s)}, 0);
    QVERIFY(batch.settle());
    QAbstractButton *const count = WindowTools::button(*batch.window, u"2 warnings"_s);
    QVERIFY(count != nullptr);
    QTest::mouseClick(count, Qt::LeftButton);
    QVERIFY(qobject_cast<ErrorLogView *>(batch.popover()->content()) != nullptr);
    QCOMPARE(batch.popover()->anchor(), count);
    batch.document().setDuplicatesAreCritical(true);
    QVERIFY(batch.settle());
    QVERIFY(WindowTools::button(*batch.window, u"2 critical"_s) != nullptr);
    QCOMPARE(batch.window->findChild<StatusLine *>()->renameButton()->badge(), 2);
    batch.command(u"Folder Access..."_s).trigger();
    QVERIFY(WindowTools::shown<FolderAccessView>() != nullptr);
}

/// By key, by click and as a filter; whatever the filter hides and however the files are sorted.
void TestBatchWindow::problemsLeadToTheirFiles()
{
    const BatchFixture batch({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s, u"d.txt"_s});
    const auto content = [&batch] { return batch.popover()->content(); };
    const auto selected = [&batch] { return batch.files().selectedRows(); };
    const auto rows = [&batch] {
        return static_cast<const FileTableView &>(batch.files().table()).model()->rowCount();
    };
    using Rows = std::vector<qsizetype>;
    batch.window->resize(1400, 700);
    batch.document().addRules({textRule(u"same"_s)}, 0); // the first file alone is sound
    QVERIFY(batch.settle());
    batch.key(Qt::Key_F5);
    const auto *const wide = content()->findChild<QListView *>();
    QVERIFY(wide->visualRect(wide->model()->index(0, 0)).height() <
            2 * wide->fontMetrics().lineSpacing());
    batch.key(Qt::Key_Down);
    batch.key(Qt::Key_Down);
    batch.key(Qt::Key_Return);
    QTRY_VERIFY(batch.popover() == nullptr);
    QCOMPARE(selected(), Rows{2});
    QVERIFY(batch.files().table().hasFocus());
    batch.files().filters()[2]->click(); // Unchanged
    QTRY_COMPARE(rows(), 0);
    batch.key(Qt::Key_F5, Qt::ShiftModifier);
    auto *const list = content()->findChild<QListView *>();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualRect(list->model()->index(2, 0)).center());
    QTRY_COMPARE(selected(), Rows{3});
    QVERIFY(batch.files().filters()[0]->isChecked());
    batch.key(Qt::Key_F5, Qt::ShiftModifier);
    QTest::mouseClick(WindowTools::button(*content(), u"Show Only Files With Problems"_s),
                      Qt::LeftButton);
    QTRY_VERIFY(batch.popover() == nullptr);
    QTRY_COMPARE(rows(), 3);
    // Problems that name no file lead to theirs in the order of the list.
    batch.document().undoStack().undo();
    batch.document().addRules({textRule(u" "_s)}, 0);
    QVERIFY(batch.settle());
    batch.key(Qt::Key_F5);
    for (int i = 0; i < 4; ++i) // past those of the first two, and that the second is a duplicate
        batch.key(Qt::Key_Down);
    batch.key(Qt::Key_Return);
    QTRY_VERIFY(batch.popover() == nullptr);
    QCOMPARE(selected(), Rows{2});
    const BatchFixture empty;
    empty.key(Qt::Key_F5);
    QCOMPARE(empty.popover()->accessibleName(),
             u"There is nothing to test yet: add files first."_s);
}

void TestBatchWindow::oldNamesSaySo()
{
    const BatchFixture batch({u"a.txt"_s, u"b.txt"_s});
    batch.document().addRules({textRule(u"n"_s), makeRule(u"Original"_s)}, 0);
    QVERIFY(batch.settle());
    const auto *const sample = batch.window->findChild<SampleLine *>();
    const auto &table = static_cast<const FileTableView &>(batch.files().table());
    const QModelIndex cell = table.model()->index(1, FileTableModel::NewName);
    const auto words = [&] { return cell.data(Qt::AccessibleTextRole).toString(); };
    const auto looks = [&] { return table.viewport()->grab().toImage(); };
    QTRY_COMPARE(sample->accessibleDescription(), u"a.txt becomes na.txt"_s);
    const QImage before = looks();
    batch.document().setLiveUpdate(false);
    batch.document().deleteRule(batch.document().ruleArray()[0]);
    QTRY_COMPARE(sample->accessibleDescription(),
                 u"a.txt becomes na.txt\nOut of date: Test Run (F5) shows the new names"_s);
    QCOMPARE(words(), u"nb.txt (out of date)"_s);
    QVERIFY(looks() != before);
    batch.document().undoStack().undo();
    batch.key(Qt::Key_F5);
    batch.key(Qt::Key_Escape);
    QTRY_COMPARE(sample->accessibleDescription(), u"a.txt becomes na.txt"_s);
    QCOMPARE(words(), u"nb.txt"_s);
    QTRY_COMPARE(looks(), before);
}

/// The window is gone at once; the file in hand is finished, the log written, the rest left alone.
void TestBatchWindow::closingDuringARename()
{
    BatchFixture batch({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s});
    batch.document().addRules({textRule(u"n"_s), makeRule(u"Counter"_s)}, 0);
    QVERIFY(batch.settle());
    QSignalSpy finished(batch.window.get(), &BatchWindow::finished);
    std::atomic<bool> wasHidden = false;
    batch.disk.before(
        FaultyFileManager::Call::RenameNoReplace,
        [&batch, &wasHidden] {
            QMetaObject::invokeMethod(
                batch.window.get(),
                [&] {
                    batch.window->close();
                    wasHidden = !batch.window->isVisible();
                },
                Qt::BlockingQueuedConnection);
        },
        "b.txt");
    batch.command(u"Rename"_s).trigger();
    QVERIFY(WindowTools::answer<QuestionDialog>(u"Rename"_s));
    QVERIFY(finished.wait(20'000));
    QCOMPARE(wasHidden.load(), true);
    QCOMPARE(batch.names(), QStringList({u"c.txt"_s, u"n1.txt"_s, u"n2.txt"_s}));
    QCOMPARE(batch.tree.list(u"Logs"_s).filter(u".renameLog"_s).size(), 1);
    QVERIFY(WindowTools::shown<LogWindow>() == nullptr);
}

void TestBatchWindow::comesBackWhereItWas_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("then");
    QTest::newRow("as it was") << QSize(740, 640) << QSize(740, 640);
    // The offscreen platform's screen has 800 by 800, and a frame needs room, too.
    QTest::newRow("from a larger screen") << QSize(1600, 1000) << QSize(792, 764);
}

void TestBatchWindow::comesBackWhereItWas()
{
    QFETCH(const QSize, size);
    BatchFixture batch;
    batch.window->resize(size);
    QVERIFY(batch.window->close());
    batch.open();
    QTEST(batch.window->size(), "then");
    QVERIFY(batch.window->screen()->availableGeometry().contains(batch.window->frameGeometry()));
    batch.command(u"Metadata Inspector"_s).trigger();
    QVERIFY(batch.window->close());
    batch.open();
    QCOMPARE(batch.command(u"Metadata Inspector"_s).isChecked(), true);
}

void TestBatchWindow::fitsASmallScreen()
{
    const BatchFixture batch({u"a.txt"_s});
    for (int i = 0; i < 12; ++i)
        batch.document().addRules({makeRule(u"Original"_s)}, i);
    QVERIFY(batch.settle());
    const QSize room(1024, 560);
    batch.window->resize(room);
    QTRY_COMPARE(batch.window->size(), room);
    QVERIFY(batch.files().height() > 150);
}

QTEST_MAIN(TestBatchWindow)
#include "tst_batchwindow.moc"
