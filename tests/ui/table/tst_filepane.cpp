// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentDrag.h"
#include "settings/UserDefaults.h"
#include "support/DocumentFixture.h"
#include "support/Table.h"
#include "ui/controls/PillButton.h"
#include "ui/controls/Popover.h"
#include "ui/table/EmptyInvitation.h"
#include "ui/table/FilePane.h"
#include "ui/table/FileTableHeader.h"
#include "ui/table/FileTableView.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Rows = std::vector<qsizetype>;
using Column = FileTableModel::Column;

/// Hands the document's wishes to the pane, as a batch window does.
class PaneHost : public ScriptedHost
{
public:
    FilePane *pane = nullptr;
    void selectFiles(const Rows &rows) override { pane->selectRows(rows); }
    void focusFileTable() override { pane->focusTable(); }
};

/// A pane that is shown, over a document with real files.
struct Shown
{
    DocumentFixture batch;
    PaneHost host;
    std::unique_ptr<TDocument> document;
    std::unique_ptr<FilePane> pane;
    FileTableView *table = nullptr;
    FileTableModel *model = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester;

    explicit Shown(const QStringList &files = {})
    {
        qputenv("XDG_CONFIG_HOME", batch.tree.path(u"config"_s).toUtf8());
        batch.document = batch.makeDocument(host);
        showPane();
        for (const QString &file : files)
            batch.tree.file(file, QByteArray(file.size(), 'x'));
        if (!files.isEmpty())
            drop(files);
    }
    ~Shown()
    {
        pane.reset();
        batch.document.reset(); // before the host that it tells
    }
    TDocument &doc() const { return *batch.document; }
    void showPane()
    {
        tester.reset();
        pane.reset(); // what it remembers is stored by now
        pane = std::make_unique<FilePane>(doc());
        host.pane = pane.get();
        table = pane->findChild<FileTableView *>();
        model = static_cast<FileTableModel *>(table->model());
        tester = std::make_unique<QAbstractItemModelTester>(
            model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        pane->resize(900, 400);
        pane->show();
        pane->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(pane.get()));
    }
    void drop(const QStringList &files) { QVERIFY(batch.drop(files)); }
    QStringList names() const { return batch.names(); }
    /// Of the rows that are shown.
    QStringList shown() const
    {
        QStringList names;
        for (int row = 0; row < model->rowCount(); ++row)
            names += model->index(row, Column::Name).data().toString();
        return names;
    }
    QStringList selected() const
    {
        QStringList names;
        for (const qsizetype row : pane->selectedRows())
            names += this->names()[row];
        return names;
    }
    PillButton &pill(const QString &text) const
    {
        for (PillButton *pill : pane->findChildren<PillButton *>()) {
            if (pill->text() == text)
                return *pill;
        }
        qFatal("no such filter");
    }
    QPoint at(int row, int column = Column::Name) const
    {
        return table->visualRect(model->index(row, column)).center();
    }
    void click(int row, Qt::KeyboardModifiers modifiers = {}, int column = Column::Name) const
    {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers, at(row, column));
    }
    void clickTitle(int column) const
    {
        FileTableHeader &header = table->header();
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                          {header.sectionViewportPosition(column) + 20, 10});
    }
    QAction *command(const QString &text) const
    {
        Q_EMIT table->contextMenuRequested({});
        for (QAction *action :
             pane->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly)->actions()) {
            if (action->text().remove(u'&') == text)
                return action;
        }
        return nullptr;
    }
};

/// Drags something over a widget and drops it there; true when it was taken.
bool dragAndDrop(QWidget &target, QPoint place, const QMimeData &data, Qt::DropActions actions,
                 Qt::DropAction *action = nullptr)
{
    QDragEnterEvent enter(place, actions, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &enter);
    if (!enter.isAccepted())
        return false;
    QDragMoveEvent move(place, actions, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &move);
    QDropEvent drop(place, actions, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &drop);
    if (action != nullptr)
        *action = drop.dropAction();
    return drop.isAccepted();
}

/// Receives what would be opened by the desktop.
class Desktop : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened += url; }
};

} // namespace

class TestFilePane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dropsFromOutside_data();
    void dropsFromOutside();
    void invitationTakesFilesAndGoes();
    void rowsMoveByDragging();
    void titlesSort();
    void filtersFollowNames();
    void selectionFollowsFiles();
    void scatteredSelection();
    void search();
    void contextMenu();
    void problemsOpenBesideTheirRow();
    void columnsAreRemembered_data();
    void columnsAreRemembered();
    void narrowTablesShowAllColumns();
    void namesReadAlikeInMirroredWindows();
};

void TestFilePane::dropsFromOutside_data()
{
    const Table<QString, QByteArray, Qt::DropActions, bool> row("format", "data", "actions",
                                                                "isTaken");
    const QString urls = u"text/uri-list"_s;
    row("copy", urls, "# from a file manager\r\nfile://%1/new\r\n", Qt::CopyAction, true);
    row("copy or move", urls, "file://%1/new", Qt::CopyAction | Qt::MoveAction, true);
    row("link", urls, "file://%1/new\r\n", Qt::LinkAction, true);
    row("move only", urls, "file://%1/new\r\n", Qt::MoveAction, false);
    row("remote", urls, "https://example.org/new\r\n", Qt::CopyAction, false);
    row("text", u"text/plain"_s, "file://%1/new", Qt::CopyAction, false);
    row("rows of another window", TDocumentDrag::fileTableType(), "other", Qt::MoveAction, false);
    row("entries", TDocumentDrag::fileObjectsType(), "entries", Qt::CopyAction, false);
}

void TestFilePane::dropsFromOutside()
{
    QFETCH(QString, format);
    QFETCH(QByteArray, data);
    QFETCH(Qt::DropActions, actions);
    QFETCH(bool, isTaken);
    Shown shown({u"a"_s, u"b"_s});
    shown.batch.tree.file(u"new"_s);
    QMimeData mime;
    mime.setData(format, data.replace("%1", shown.batch.tree.path().toUtf8()));
    Qt::DropAction action = Qt::IgnoreAction;
    // Just below the middle of the first row: between both.
    const QPoint place = shown.at(0) + QPoint(0, 4);
    QCOMPARE(dragAndDrop(*shown.table->viewport(), place, mime, actions, &action), isTaken);
    QVERIFY(action != Qt::MoveAction);
    QVERIFY(shown.batch.settle());
    QCOMPARE(shown.shown(),
             isTaken ? QStringList({u"a"_s, u"new"_s, u"b"_s}) : QStringList({u"a"_s, u"b"_s}));
}

void TestFilePane::invitationTakesFilesAndGoes()
{
    Shown shown;
    auto *invitation = shown.pane->findChild<EmptyInvitation *>();
    QVERIFY(invitation->isVisible());
    QVERIFY(!shown.table->isVisible());
    QSignalSpy folders(shown.pane.get(), &FilePane::addFoldersRequested);
    for (auto *button : invitation->findChildren<QAbstractButton *>())
        button->click();
    QCOMPARE(folders.count(), 1);
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &file : shown.batch.makeFiles(u"%1.txt"_s, 300))
        urls += QUrl::fromLocalFile(file);
    data.setUrls(urls);
    QVERIFY(dragAndDrop(*invitation, {50, 50}, data, Qt::CopyAction));
    QVERIFY(shown.batch.settle());
    QVERIFY(shown.table->isVisible());
    QVERIFY(!invitation->isVisible());
    QCOMPARE(shown.model->rowCount(), 300);
    shown.pane->selectAllFiles();
    QCOMPARE(shown.table->selection().rows().ranges().size(), 1U);
    QTest::keyClick(shown.table, Qt::Key_Delete);
    QVERIFY(invitation->isVisible());
}

void TestFilePane::rowsMoveByDragging()
{
    Shown shown({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s});
    shown.pane->selectRows({0, 3});
    const auto drag = [&](QPoint place) {
        const auto data =
            TDocumentDrag::dataForFileRows(shown.pane->selectedRows(), shown.doc().myUUID());
        return dragAndDrop(*shown.table->viewport(), place, *data, Qt::MoveAction);
    };
    QVERIFY(drag(shown.at(1) + QPoint(0, 5)));
    QCOMPARE(shown.shown(), QStringList({u"b"_s, u"a"_s, u"d"_s, u"c"_s, u"e"_s}));
    QCOMPARE(shown.selected(), QStringList({u"a"_s, u"d"_s}));
    QVERIFY(drag({40, shown.table->viewport()->height() - 2}));
    QCOMPARE(shown.shown(), QStringList({u"b"_s, u"c"_s, u"e"_s, u"a"_s, u"d"_s}));
    shown.doc().undoStack().undo();
    shown.doc().undoStack().undo();
    QCOMPARE(shown.shown(), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}));
}

void TestFilePane::titlesSort()
{
    Shown shown({u"b"_s, u"ccc"_s, u"aa"_s});
    const FileTableHeader &header = shown.table->header();
    shown.clickTitle(Column::Name);
    QCOMPARE(shown.shown(), QStringList({u"aa"_s, u"b"_s, u"ccc"_s}));
    shown.clickTitle(Column::Name);
    QCOMPARE(shown.shown(), QStringList({u"ccc"_s, u"b"_s, u"aa"_s}));
    QVERIFY(header.sortedColumn() == Column::Name && !header.isAscending());
    shown.clickTitle(Column::Size);
    QCOMPARE(shown.shown(), QStringList({u"b"_s, u"aa"_s, u"ccc"_s}));
    QVERIFY(header.sortedColumn() == Column::Size && header.isAscending());
    QVERIFY(shown.batch.settle()); // new names leave the order as it is
    QCOMPARE(header.sortedColumn(), int{Column::Size});
    shown.doc().undoStack().undo();
    QCOMPARE(header.sortedColumn(), -1);
    shown.clickTitle(Column::Status); // the worst first
    QVERIFY(header.sortedColumn() == Column::Status && !header.isAscending());
}

void TestFilePane::filtersFollowNames()
{
    Shown shown({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s, u"d.txt"_s});
    QVERIFY(shown.batch.settle());
    QTRY_COMPARE(shown.pill(u"Unchanged"_s).count(), 4); // there is no recipe
    QVERIFY(shown.batch.useRules({patternRule(u"^[ab]"_s, u"x"_s)}));
    QTRY_COMPARE(shown.pill(u"Changed"_s).count(), 2);
    QCOMPARE(shown.pill(u"All"_s).count(), 4);
    QCOMPARE(shown.pill(u"Unchanged"_s).count(), 2);
    QTRY_COMPARE(shown.pill(u"Problems"_s).count(), 1); // two files become x.txt
    shown.pill(u"Problems"_s).click();
    QCOMPARE(shown.shown(), QStringList({u"b.txt"_s}));
    QCOMPARE(shown.model->documentRow(0), 1);
    shown.pill(u"Unchanged"_s).click();
    QCOMPARE(shown.shown(), QStringList({u"c.txt"_s, u"d.txt"_s}));

    // Rows come, move and go beneath a filter.
    shown.pane->selectRows({3});
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(shown.batch.tree.file(u"0.txt"_s))});
    QVERIFY(
        dragAndDrop(*shown.table->viewport(), shown.at(0) + QPoint(0, 5), data, Qt::CopyAction));
    QVERIFY(shown.batch.settle());
    QCOMPARE(shown.names()[3], u"0.txt"_s); // between both that are shown
    QCOMPARE(shown.shown(), QStringList({u"c.txt"_s, u"0.txt"_s, u"d.txt"_s}));
    shown.doc().sortNow(3); // names descending
    QCOMPARE(shown.shown(), QStringList({u"d.txt"_s, u"c.txt"_s, u"0.txt"_s}));
    shown.doc().removeFiles({1});
    QTRY_COMPARE(shown.shown(), QStringList({u"d.txt"_s, u"0.txt"_s}));
    QVERIFY(shown.batch.settle());
    shown.pill(u"All"_s).click();
    QCOMPARE(shown.shown(), QStringList({u"d.txt"_s, u"b.txt"_s, u"a.txt"_s, u"0.txt"_s}));
    QVERIFY(shown.batch.useRules({textRule(u"y"_s)}));
    QTRY_COMPARE(shown.pill(u"Unchanged"_s).count(), 0);
    shown.pill(u"Unchanged"_s).click(); // which has no rows, and says so
    QVERIFY(shown.shown().isEmpty());
    const QImage said = shown.table->viewport()->grab().toImage();
    shown.table->setHint(u"No file keeps its name."_s);
    QCOMPARE(said, shown.table->viewport()->grab().toImage());
    shown.table->setHint({});
    QVERIFY(said != shown.table->viewport()->grab().toImage());
}

void TestFilePane::selectionFollowsFiles()
{
    Shown shown({u"b"_s, u"d"_s, u"a"_s, u"c"_s});
    QSignalSpy current(shown.pane.get(), &FilePane::currentFileChanged);
    shown.click(1);
    shown.click(2, Qt::ControlModifier);
    QCOMPARE(shown.selected(), QStringList({u"d"_s, u"a"_s}));
    const auto file = shown.pane->currentFile();
    QCOMPARE(file->fileName(), u"a"_s);
    current.clear();
    shown.doc().sortNow(1);
    QCOMPARE(shown.selected(), QStringList({u"a"_s, u"d"_s}));
    shown.doc().undoStack().undo();
    QCOMPARE(shown.selected(), QStringList({u"d"_s, u"a"_s}));
    shown.doc().removeFiles({0});
    shown.pane->selectRows({0, 1});
    shown.doc().undoStack().undo(); // "b" comes back before them
    QCOMPARE(shown.names(), QStringList({u"b"_s, u"d"_s, u"a"_s, u"c"_s}));
    QCOMPARE(shown.selected(), QStringList({u"d"_s, u"a"_s}));
    QCOMPARE(shown.pane->currentFile(), file);
    QCOMPARE(current.count(), 0);
}

void TestFilePane::scatteredSelection()
{
    Shown shown;
    shown.drop(shown.batch.makeFiles(u"%1"_s, 300));
    Rows even;
    for (qsizetype row = 0; row < 300; row += 2)
        even.push_back(row);
    shown.pane->selectRows(even);
    QCOMPARE(shown.pane->selectedRows(), even);
    shown.table->scrollToBottom();
    // The last rows are beyond what Qt's selection is told.
    QTest::mousePress(shown.table->viewport(), Qt::LeftButton, {}, shown.at(298));
    QCOMPARE(shown.pane->selectedRows(), even);
    QTest::mouseRelease(shown.table->viewport(), Qt::LeftButton, {}, shown.at(298));
    QCOMPARE(shown.pane->selectedRows(), Rows({298}));
    shown.pane->selectRows(even);
    shown.click(298, Qt::ControlModifier);
    even.pop_back();
    QCOMPARE(shown.pane->selectedRows(), even);
    shown.click(299, Qt::ControlModifier);
    QTest::keyClick(shown.table, Qt::Key_Up, Qt::ShiftModifier);
    even.insert(even.end(), {298, 299});
    QCOMPARE(shown.pane->selectedRows(), even);
    shown.pane->removeSelected();
    QCOMPARE(shown.model->rowCount(), 149);
    QVERIFY(shown.pane->selectedRows().empty());
}

void TestFilePane::search()
{
    Shown shown({u"Rome 1"_s, u"Oslo"_s, u"rome 2"_s, u"ROME 3"_s});
    QLineEdit *field = shown.pane->searchField();
    field->setFocus();
    QTest::keyClicks(field, u"rome"_s);
    QTRY_COMPARE(shown.pane->selectedRows(), Rows({0, 2, 3}));
    QVERIFY(field->hasFocus()); // typing goes on
    QTest::keyClick(field, Qt::Key_Return);
    QVERIFY(shown.table->hasFocus());
    QCOMPARE(shown.pane->currentFile()->fileName(), u"Rome 1"_s);
    for (const auto *name : {u"rome 2", u"ROME 3", u"Rome 1"}) {
        QTest::keyClick(shown.table, Qt::Key_Return);
        QCOMPARE(shown.pane->currentFile()->fileName(), QString::fromUtf16(name));
    }
    QCOMPARE(shown.pane->selectedRows(), Rows({0, 2, 3}));
    QTest::keyClick(shown.table, Qt::Key_F, Qt::ControlModifier);
    QVERIFY(field->hasFocus());
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(field->text().isEmpty());
    QVERIFY(shown.pane->selectedRows().empty());
    QTest::keyClick(field, Qt::Key_X);
    QTRY_COMPARE(field->accessibleDescription(), u"No name matches"_s);
    shown.pane->filters()[1]->click(); // Changed
    QVERIFY(field->accessibleDescription().isEmpty());
    QTest::keyClick(field, Qt::Key_Backspace);
    QTest::keyClick(field, Qt::Key_O);
    QTRY_COMPARE(field->accessibleDescription(), u"Hidden by the filter"_s);
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(field->accessibleDescription().isEmpty());
}

void TestFilePane::contextMenu()
{
    Shown shown({u"in/a.txt"_s, u"in/b.txt"_s});
    QVERIFY(shown.batch.useRules({textRule(u"new"_s)}));
    QVERIFY(shown.batch.pumpUntil(
        [&] { return shown.doc().forecastFor(*shown.doc().sourceObjectArray()[1]).has_value(); }));
    shown.pane->selectRows({0, 1});
    const auto trigger = [&shown](const QString &text) {
        QAction *action = shown.command(text);
        QVERIFY2(action != nullptr, qPrintable(text));
        action->trigger();
        delete action->parent();
    };
    trigger(u"Copy Name"_s);
    QCOMPARE(QApplication::clipboard()->text(), u"a.txt\nb.txt"_s);
    QApplication::clipboard()->clear();
    QTest::keyClick(shown.table, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), u"a.txt\nb.txt"_s);
    trigger(u"Copy New Name"_s);
    QCOMPARE(QApplication::clipboard()->text(), u"new.txt\nnew-1.txt"_s);
    QSignalSpy metadata(shown.pane.get(), &FilePane::metadataRequested);
    trigger(u"Show Metadata"_s);
    QCOMPARE(metadata.count(), 1);
    Desktop desktop;
    QDesktopServices::setUrlHandler(u"file"_s, &desktop, "open");
    trigger(u"Reveal in File Manager"_s);
    QDesktopServices::unsetUrlHandler(u"file"_s);
    QCOMPARE(desktop.opened, QList({QUrl::fromLocalFile(shown.batch.tree.path(u"in/"_s))}));
    trigger(u"Remove from List"_s);
    QVERIFY(shown.names().isEmpty());
}

void TestFilePane::problemsOpenBesideTheirRow()
{
    Shown shown({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s});
    QVERIFY(shown.batch.useRules({textRule(u"<i>x</i>"_s)}));
    shown.click(0, {}, Column::Status);
    QVERIFY(shown.pane->findChild<Popover *>() == nullptr);
    shown.click(1, {}, Column::Status);
    QPointer<Popover> popover = shown.pane->findChild<Popover *>();
    QVERIFY(popover != nullptr);
    QStringList texts;
    for (const QLabel *label : popover->findChildren<QLabel *>()) {
        QVERIFY(label->textFormat() == Qt::PlainText || label->text().isEmpty());
        texts += label->text();
    }
    const QString problem =
        shown.doc().sourceObjectArray()[1]->errLog().entries().front().errDesc.toString();
    QVERIFY2(texts.contains(problem), qPrintable(texts.join(u'|')));
    const QString tip = shown.model->index(1, Column::Status).data(Qt::ToolTipRole).toString();
    QVERIFY2(tip.contains(problem.toHtmlEscaped()), qPrintable(tip));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTRY_VERIFY(!popover);
    QCOMPARE(shown.table->currentIndex().row(), 2);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QTRY_VERIFY(shown.pane->findChild<Popover *>() == nullptr);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(shown.pane->findChild<Popover *>()->findChild<QLabel *>()->text(), u"c.txt"_s);
}

void TestFilePane::columnsAreRemembered_data()
{
    QTest::addColumn<bool>("isMirrored");
    QTest::newRow("left to right") << false;
    QTest::newRow("right to left") << true;
}

void TestFilePane::columnsAreRemembered()
{
    Shown shown({u"a"_s});
    FileTableHeader *header = &shown.table->header();
    QVERIFY(header->isSectionHidden(Column::Created));
    for (QAction *action : shown.pane->columnsMenu()->actions()) {
        if (action->text() == u"Size"_s || action->text() == u"Created"_s)
            action->trigger();
    }
    header->resizeSection(Column::Name, 333);
    shown.pane->focusTable();
    QTest::keyClick(shown.table, Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(header->hasFocus());
    QFETCH(bool, isMirrored);
    shown.pane->setLayoutDirection(isMirrored ? Qt::RightToLeft : Qt::LeftToRight);
    const auto forward = isMirrored ? Qt::Key_Left : Qt::Key_Right;
    const auto back = isMirrored ? Qt::Key_Right : Qt::Key_Left;
    QTest::keyClick(header, forward);
    QTest::keyClick(header, forward, Qt::ControlModifier);
    const int width = header->sectionSize(Column::Name);
    QVERIFY(width > 333);
    QTest::keyClick(header, Qt::Key_End);
    QTest::keyClick(header, Qt::Key_Return);
    QCOMPARE(header->accessibleName(), u"Folder, sorted ascending"_s);
    for (int i = 0; i < 4; ++i) // past the hidden size
        QTest::keyClick(header, back, Qt::AltModifier);
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_A}) // nothing for the rows
        QTest::keyClick(header, key);
    QTest::keyClick(header, Qt::Key_Escape);
    QVERIFY(shown.table->hasFocus());
    QCOMPARE(shown.model->rowCount(), 1);
    shown.showPane();
    header = &shown.table->header();
    QVERIFY(header->isSectionHidden(Column::Size));
    QVERIFY(!header->isSectionHidden(Column::Created));
    QCOMPARE(header->visualIndex(Column::Folder), 1);
    QCOMPARE(header->sectionSize(Column::Name), width);
    shown.pane->columnsMenu()->actions().last()->trigger(); // standard columns
    QVERIFY(!header->isSectionHidden(Column::Size));
    QCOMPARE(header->visualIndex(Column::Name), int{Column::Name});
    UserDefaults::setValue(u"fileTableColumns"_s, {});
}

void TestFilePane::narrowTablesShowAllColumns()
{
    Shown shown({u"a"_s});
    const FileTableHeader &header = shown.table->header();
    shown.pane->resize(660, 400);
    QTRY_COMPARE(shown.table->horizontalScrollBar()->maximum(), 0);
    for (int column = 0; column < Column::ColumnCount; ++column)
        QVERIFY(header.sectionSize(column) >= header.sectionSizeHint(column)); // no title is cut
    const QFontMetrics metrics = shown.table->fontMetrics();
    QVERIFY(header.sectionSize(Column::NewName) > metrics.averageCharWidth() * 28);
    const int narrow = header.sectionSize(Column::Modified);
    shown.pane->resize(1100, 400);
    QTRY_VERIFY(header.sectionSize(Column::Modified) > narrow);
}

/// Only where it stands differs: "01 a.txt" never becomes "txt.01 a".
void TestFilePane::namesReadAlikeInMirroredWindows()
{
    Shown shown({u"01 a.txt"_s, u"b.txt"_s});
    shown.doc().theExtensionHandler().setHandlingMethod(TExtensionHandler::kReplace);
    QVERIFY(shown.batch.useRules({textRule(u"02 "_s), makeRule(u"Original"_s)}));
    const auto newName = [&shown] {
        // Without the lines around the row.
        const QRect cell = shown.table->visualRect(shown.model->index(0, Column::NewName));
        const QImage image = shown.table->viewport()->grab(cell.adjusted(2, 3, -2, -3)).toImage();
        const QRgb ground = image.pixel(image.width() / 2, 0);
        QRect drawn;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixel(x, y) != ground)
                    drawn |= QRect(x, y, 1, 1);
        return image.copy(drawn);
    };
    const QImage before = newName();
    shown.pane->setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(newName(), before);
}

QTEST_MAIN(TestFilePane)

#include "tst_filepane.moc"
