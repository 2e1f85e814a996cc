// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/Sandboxing.h"
#include "platform/QtMainThread.h"
#include "rollback/RollbackLog.h"
#include "support/TemporaryTree.h"
#include "ui/controls/Popover.h"
#include "ui/windows/FilePanel.h"
#include "ui/windows/FolderAccessView.h"
#include "ui/windows/LogDelegate.h"
#include "ui/windows/RecordsModel.h"
#include "ui/windows/RollBackChooserWindow.h"
#include "ui/windows/RollBackWindow.h"
#include "ui/windows/RowDelegate.h"
#include "ui/windows/WindowDialogHost.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFile>
#include <QListView>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>

using namespace Qt::StringLiterals;
using L = QStringList;

namespace {

constexpr int kMany = 100'000;

/// What the windows over real logs need; logs are lists of "old>new", "old!new" for incomplete.
struct Desk
{
    TemporaryTree tree;
    QtMainThread mainThread;
    Notifications notifications;
    DiskFileManager disk;
    QWidget window;
    WindowDialogHost host{&window};
    WorkerQueue worker;
    int ends = 0;
    TDoRollBackWindowController runner{{host, mainThread, worker, notifications, disk},
                                       [this](int) { ++ends; }};

    explicit Desk(const QStringList &files = {})
    {
        qputenv("XDG_DATA_HOME", tree.path().toUtf8());
        for (const QString &file : files)
            tree.file(file);
        window.show();
    }
    TFileURL url(const QString &name) const { return TFileURL::fileURLWithPath(tree.path(name)); }
    void load(const QStringList &moves)
    {
        auto writer = RollbackLogWriter::create(tree.folder(u"L"_s)).value();
        for (const QString &move : moves) {
            const qsizetype sign = std::max(move.indexOf(u'>'), move.indexOf(u'!'));
            TRenameTRX record = TRenameTRX::TRXWithSource(url(move.first(sign)));
            record.renamedURL = url(move.sliced(sign + 1));
            record.renameComplete = move[sign] == u'>';
            writer->append(record);
        }
        runner.loadLog(TFileURL::fileURLWithPath(writer->finish(TDate::fromSeconds(1)).value()));
    }
};

QPushButton *button(const QWidget &window, const QString &text)
{
    for (auto *button : window.findChildren<QPushButton *>()) {
        if (button->text().remove(u'&') == text)
            return button;
    }
    return nullptr;
}

void click(QAbstractItemView &view, const QModelIndex &index)
{
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index).center());
}

} // namespace

class TestRollbackViews : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dates_data();
    void dates();
    void chooser_data();
    void chooser();
    void rollingBack();
    void problems();
    void reverseOrder_data();
    void reverseOrder();
    void manyRecords();
    void folders_data();
    void folders();
};

void TestRollbackViews::dates_data()
{
    QTest::addColumn<QString>("log");
    QTest::addColumn<QString>("date");
    const QString name = u"Rename Batch Run - %1 (rollback data)"_s;
    const QString today = QDate::currentDate().toString(Qt::ISODate) + ", 14.05.09"_L1;
    QTest::newRow("today") << name.arg(today) << u"Today, 14:05:09"_s;
    QTest::newRow("a day") << name.arg(u"2025-07-03, 14.05.09"_s)
                           << u"Thursday, 3 July 2025, 14:05:09"_s;
    QTest::newRow("no day") << name.arg(u"2025-02-30, 14.05.09"_s) << QString();
    QTest::newRow("no time") << name.arg(u"2025-07-03, 25.05.09"_s) << QString();
    QTest::newRow("own name") << u"Holiday"_s << QString();
}

void TestRollbackViews::dates()
{
    QFETCH(const QString, log);
    QTEST(LogDelegate::readableDate(log), "date");
}

void TestRollbackViews::chooser_data()
{
    QTest::addColumn<QString>("does");
    QTest::addColumn<QString>("chosen"); // null: none
    QTest::newRow("click, Choose") << u"click 0,Choose"_s << u"b"_s;
    QTest::newRow("double click") << u"double 1"_s << u"a"_s;
    QTest::newRow("arrow keys, Return") << u"down,down,return"_s << u"a"_s;
    QTest::newRow("arrow key after Tab") << u"tab,back,down,return"_s << u"b"_s;
    QTest::newRow("Return picks the newest") << u"return,escape"_s << QString();
    QTest::newRow("and chooses it") << u"return,return"_s << u"b"_s;
    QTest::newRow("below the last row") << u"click 0,below,Choose,Cancel"_s << QString();
    QTest::newRow("closed") << u"click 0,close"_s << QString();
}

void TestRollbackViews::chooser()
{
    QFETCH(const QString, does);
    Desk desk;
    for (const QString &name : {u"a"_s, u"b"_s}) { // the later one is the newer one
        QFile log(desk.tree.file(u"Tavrin/Logs/%1.renameLog"_s.arg(name)));
        QVERIFY(log.open(QIODevice::ReadWrite));
        log.setFileTime(QDateTime::fromSecsSinceEpoch(name == u"a"_s ? 1000 : 2000),
                        QFileDevice::FileModificationTime);
    }
    const QHash<QString, Qt::Key> keys{{u"down"_s, Qt::Key_Down},
                                       {u"return"_s, Qt::Key_Return},
                                       {u"escape"_s, Qt::Key_Escape},
                                       {u"tab"_s, Qt::Key_Tab},
                                       {u"back"_s, Qt::Key_Backtab}};
    std::vector<QString> ends;
    TRollBackWindowController controller(
        desk.mainThread, desk.worker, [&ends](const std::optional<TFileURL> &log) {
            ends.push_back(log ? log->lastPathComponent().first(1) : QString());
        });
    RollBackChooserWindow window(controller);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(window.windowModality() == Qt::ApplicationModal);
    auto *list = window.findChild<QListView *>();
    QTRY_COMPARE(list->model()->rowCount(), 2);
    for (const QString &step : does.split(u',')) {
        const QModelIndex index = list->model()->index(step.last(1).toInt(), 0);
        const bool isDouble = step.startsWith("double"_L1);
        if (step.startsWith("click"_L1) || isDouble)
            click(*list, index);
        if (isDouble)
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, {},
                               list->visualRect(index).center());
        if (step == "below"_L1)
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              QPoint(9, list->viewport()->height() - 5));
        else if (step == "close"_L1)
            window.close();
        else if (QPushButton *pressed = button(window, step))
            QTest::mouseClick(pressed, Qt::LeftButton);
        else if (keys.contains(step))
            QTest::keyClick(list, keys[step]);
    }
    QFETCH(const QString, chosen);
    QCOMPARE(ends, std::vector{chosen});
}

/// From the log to the files, with what is shown on the way.
void TestRollbackViews::rollingBack()
{
    Desk desk({u"new.txt"_s});
    RollBackWindow window(desk.runner);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const QAbstractItemModelTester tester(window.findChild<QTableView *>()->model());
    auto *bar = window.findChild<QProgressBar *>();
    auto *start = button(window, u"Roll Back"_s);
    QVERIFY(bar->isVisible() && !start->isEnabled());
    desk.load({u"old.txt>new.txt"_s, u"x>gone"_s});
    QTRY_VERIFY(start->isEnabled());
    const auto *table = window.findChild<QTableView *>();
    const auto shown = [&](int row, int role) {
        L cells;
        for (int column = 0; column < 3; ++column)
            cells += table->model()->index(row, column).data(role).toString();
        return cells;
    };
    QCOMPARE(shown(0, Qt::DisplayRole), (L{u"old.txt"_s, u"new.txt"_s, u""_s}));
    QCOMPARE(shown(0, Qt::AccessibleTextRole)[2], u"Will be moved back"_s);
    QCOMPARE(shown(1, RowDelegate::kInkRole), (L{u"1"_s, u"1"_s, u"0"_s}));
    QVERIFY(!bar->isVisible() && window.findChildren<QCheckBox *>().last()->isHidden());
    QTest::keyClick(window.focusWidget(), Qt::Key_Return); // in the table it starts nothing
    QVERIFY(!desk.tree.exists(u"old.txt"_s) && start->isEnabled());
    QTest::mouseClick(start, Qt::LeftButton);
    QTRY_COMPARE(start->text(), u"&Roll Back Complete"_s);
    QVERIFY(button(window, u"Close"_s)->hasFocus());
    QVERIFY(desk.tree.exists(u"old.txt"_s) && !start->isEnabled() && !bar->isVisible());
    QCOMPARE(shown(0, Qt::AccessibleTextRole)[2], u"Moved back"_s);
    QTest::mouseClick(button(window, u"Close"_s), Qt::LeftButton);
    window.close();
    QCOMPARE(desk.ends, 1);
    QVERIFY(window.isVisible()); // until its owner takes it away
}

void TestRollbackViews::problems()
{
    Desk desk({u"new.txt"_s});
    RollBackWindow window(desk.runner);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    desk.load({u"x>gone"_s, u"old.txt>new.txt"_s});
    auto *table = window.findChild<QTableView *>();
    QTRY_COMPARE(table->model()->rowCount(), 2);
    const auto open = [&window] {
        const auto *popover = window.findChild<Popover *>();
        return popover == nullptr ? QString() : popover->accessibleName();
    };
    click(*table, table->model()->index(0, RecordsModel::Original));
    QCOMPARE(open(), QString());
    click(*table, table->model()->index(0, RecordsModel::Current));
    QCOMPARE(open(), u"1 critical problem"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QTRY_COMPARE(open(), QString());
    QCOMPARE(desk.ends, 0); // Escape closed the popover, not the window
    QTest::keyClick(table, Qt::Key_Down);
    QTest::keyClick(table, Qt::Key_Space);
    QCOMPARE(open(), u"No problem: it can get its old name back."_s);
    auto *others = window.findChild<QCheckBox *>();
    QTest::mouseClick(others, Qt::LeftButton, {}, QPoint(10, others->height() / 2));
    QTRY_COMPARE(open(), QString());
    QCOMPARE(others->text(), u"Show only the &other files (1)"_s);
    QCOMPARE(table->model()->rowCount(), 1);
    QTest::keyClick(table, Qt::Key_Space); // the first row is the current one
    QCOMPARE(open(), u"1 critical problem"_s);
    QTest::mouseClick(button(window, u"Roll Back"_s), Qt::LeftButton);
    QTRY_COMPARE(open(), QString());
}

void TestRollbackViews::reverseOrder_data()
{
    QTest::addColumn<bool>("reverse");
    QTest::newRow("as the run went") << false;
    QTest::newRow("from the last") << true;
}

void TestRollbackViews::reverseOrder()
{
    QFETCH(const bool, reverse);
    Desk desk({u"2.txt"_s, u"3.txt"_s});
    RollBackWindow window(desk.runner);
    window.show();
    desk.load({u"2.txt>3.txt"_s, u"1.txt>2.txt"_s});
    auto *order = window.findChildren<QCheckBox *>().last();
    QTRY_VERIFY(order->isVisible());
    QVERIFY(!order->isChecked());
    if (reverse)
        QTest::mouseClick(order, Qt::LeftButton, {}, QPoint(10, order->height() / 2));
    QTest::mouseClick(button(window, u"Roll Back"_s), Qt::LeftButton);
    QTRY_VERIFY(button(window, u"Roll Back Complete"_s) != nullptr);
    QCOMPARE(desk.tree.exists(u"1.txt"_s) && desk.tree.exists(u"2.txt"_s), reverse);
}

/// Rows are asked for as they come into view, not all at once.
void TestRollbackViews::manyRecords()
{
    Desk desk;
    RollBackWindow window(desk.runner);
    window.show();
    desk.load(L(kMany, u"a>b"_s));
    auto *table = window.findChild<QTableView *>();
    QTRY_COMPARE_WITH_TIMEOUT(table->model()->rowCount(), kMany, 60'000);
    QElapsedTimer timer;
    timer.start();
    table->scrollToBottom();
    window.grab();
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
}

void TestRollbackViews::folders_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("click") << false;
    QTest::newRow("Return") << true;
}

void TestRollbackViews::folders()
{
    qputenv("APP_SANDBOX_CONTAINER_ID", "com.zel.tavrin");
    initSandbox();
    Desk desk({u"open/1"_s, u"shut/2"_s});
    TFolderAccessList list;
    list.addFolder(desk.url(u"open"_s), true);
    list.addFolder(desk.url(u"shut"_s), false);
    QPointer<FolderAccessView> view =
        new FolderAccessView(list, desk.host, desk.notifications, &desk.window);
    view->show();
    QVERIFY(QTest::qWaitForWindowActive(view));
    auto *table = view->findChild<QTableView *>();
    const auto grants = [table] {
        return L{table->model()->index(0, 2).data().toString(),
                 table->model()->index(1, 2).data().toString()};
    };
    QCOMPARE(grants(), (L{u""_s, u"Grant..."_s}));
    click(*table, table->model()->index(0, 2));
    QVERIFY(desk.window.findChild<FilePanel *>() == nullptr);
    QFETCH(const bool, byKey);
    click(*table, table->model()->index(1, byKey ? 1 : 2));
    if (byKey)
        QTest::keyClick(table, Qt::Key_Return);
    QCOMPARE(desk.window.findChildren<FilePanel *>().size(), 1);
    QTest::mouseClick(button(*desk.window.findChild<FilePanel *>(), u"Grant access to shut"_s),
                      Qt::LeftButton);
    QTRY_COMPARE(grants(), (L{u""_s, u""_s}));
    view->close();
    QTRY_VERIFY(!view);
    qunsetenv("APP_SANDBOX_CONTAINER_ID");
    initSandbox();
}

QTEST_MAIN(TestRollbackViews)
#include "tst_rollbackviews.moc"
