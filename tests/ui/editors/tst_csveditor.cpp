// SPDX-License-Identifier: GPL-3.0-or-later
#include "EditorStage.h"
#include "metadata/TCSVRule.h"
#include "support/WindowTools.h"
#include "ui/editors/CSVProgress.h"
#include "ui/editors/CSVTableModel.h"

#include <QAbstractItemModelTester>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QHeaderView>
#include <QMimeData>
#include <QTableView>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

class TestCSVEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void csvTableIsLoadedAside()
    {
        EditorStage stage;
        QVERIFY(stage.addFiles());
        QByteArray csv = "Title,City\n";
        for (int i = 0; i < 100'000; ++i)
            csv += "\"Photo " + QByteArray::number(i) + "\",Rome" + (i < 99'999 ? "\n" : "");
        const TRulePtr rule = makeRule(u"CSVTag"_s);
        QVERIFY(stage.edit(rule));
        qint64 longest = 0;
        QElapsedTimer sinceBeat;
        QTimer heart;
        QObject::connect(&heart, &QTimer::timeout, &heart,
                         [&] { longest = std::max(longest, sinceBeat.restart()); });
        heart.start(5);
        sinceBeat.start();
        dropFile(stage, stage.tree.file(u"places.csv"_s, csv));
        auto &csvRule = static_cast<TCSVRule &>(*rule);
        QTRY_VERIFY_WITH_TIMEOUT(csvRule.theRows(), 60'000);
        QTest::qWait(20);
        heart.stop();
        qInfo("longest pause of the main thread: %lld ms", longest);
        QVERIFY(longest < 1000); // some milliseconds, but for a busy machine
        QCOMPARE(csvRule.theRows()->size(), 100'001U);
        QCOMPARE(stage.posts, 1);
        QVERIFY(stage.labels().contains(u"places.csv, UTF-8"_s));

        auto *table = stage.control<QTableView>(u"Rows of the CSV file"_s);
        QVERIFY(stage.use(u"The first row is a header"_s));
        QCOMPARE(table->model()->rowCount(), 100'000);
        QCOMPARE(table->model()->headerData(1, Qt::Horizontal).toString(), u"2 \u00b7 City"_s);
        QCOMPARE(stage.preview(), u"IMG_0042.JPG \u2192 Photo 0"_s);
        auto *header = table->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(1) + 9, header->height() / 2));
        QCOMPARE(csvRule.useColumn(), 1);
        QCOMPARE(rule->name(), u"CSV: Col(2)"_s);
        QCOMPARE(stage.preview(), u"IMG_0042.JPG \u2192 Rome"_s);
        QCOMPARE(table->accessibleDescription(), u"Uses column 2 \u00b7 City"_s);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(table->model()->index(2, 0)).center());
        QCOMPARE(csvRule.useColumn(), 0);
        QTest::keyClick(table, Qt::Key_Right); // moves, and chooses nothing yet
        QCOMPARE(csvRule.useColumn(), 0);
        stage.close();
        stage.document->undoStack().undo();
        QVERIFY(!csvRule.theRows());
        stage.document->undoStack().redo();
        QVERIFY(stage.show(rule));
        QVERIFY(stage.labels().contains(u"places.csv, UTF-8"_s));
    }
    void rowsOfALargeTableComeInPortions()
    {
        constexpr int kRows = 450'000;
        TStringTable rows(kRows, {u"cell"_s});
        rows.back() = {u"last"_s};
        CSVTableModel model(nullptr);
        const QAbstractItemModelTester tester(&model);
        model.setTable(newStringTable(std::move(rows)), 1);
        QVERIFY(model.rowCount() < kRows);
        model.setHasHeader(true); // while they come
        const auto last = [&model] { return model.index(model.rowCount() - 1, 0).data(); };
        QTRY_COMPARE(model.rowCount(), kRows - 1);
        QCOMPARE(last(), u"last"_s);
        model.setHasHeader(false);
        QCOMPARE(model.rowCount(), kRows);
        QCOMPARE(last(), u"last"_s);
        model.setHasHeader(true);
        QCOMPARE(model.rowCount(), kRows - 1);
        model.setTable(newStringTable({{u"only"_s}}), 1);
        QCOMPARE(model.rowCount(), 0);
        model.setHasHeader(false);
        QCOMPARE(last(), u"only"_s);
    }
    /// Until the new table is there, a rename would be one with the table from before.
    void longReadingsKeepTheWindowWaiting()
    {
        EditorStage stage;
        const TRulePtr rule = makeRule(u"CSVTag"_s);
        QVERIFY(stage.edit(rule));
        dropFile(stage,
                 stage.tree.file(u"t.csv"_s, QByteArray("some,cells\n").repeated(4'000'000)));
        QTRY_VERIFY(WindowTools::shown<CSVProgress>() != nullptr);
        auto *const sheet = WindowTools::shown<CSVProgress>();
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QTest::keyClick(sheet, Qt::Key_Escape);
        QVERIFY(!sheet->isVisible());
        QVERIFY(stage.labels().contains(u"No file is loaded."_s));
        QVERIFY(!static_cast<TCSVRule &>(*rule).theRows());
    }
    void csvFilesThatGiveNoTable_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("said");
        QTest::newRow("malformed") << QByteArray("a,b\nc, \"d\"")
                                   << u"t.csv: Unexpected delimiter. Expected ',' (0x2C), but got "
                                      "'\"' (0x22) (row 2)"_s;
        QTest::newRow("no text") << QByteArray("\x00\x00\xFE\xFF\x00\x7F\x00\x00", 8)
                                 << u"t.csv: The file is not valid UTF-32. Save it as UTF-8 and "
                                    "load it again. (The first bad byte is number 5.)"_s;
        QTest::newRow("gone")
            << QByteArray()
            << u"t.csv: The file is no longer there. Add it again if it was moved or "
               "renamed."_s;
    }
    void csvFilesThatGiveNoTable()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, said);
        EditorStage stage;
        const TRulePtr rule = makeRule(u"CSVTag"_s);
        auto &csvRule = static_cast<TCSVRule &>(*rule);
        const auto rows = std::make_shared<TStringTable>(TStringTable{{u"old"_s}});
        csvRule.setTheRows(rows);
        QVERIFY(stage.edit(rule));
        dropFile(stage, content.isNull() ? stage.tree.path(u"t.csv"_s)
                                         : stage.tree.file(u"t.csv"_s, content));
        const auto alerts = [&] { return stage.host.callsOf(u"stop sheet: No CSV Data|"_s); };
        QTRY_VERIFY(!alerts().isEmpty());
        QCOMPARE(alerts().front().section(u'|', 1),
                 u"I was unable to read CSV data from the file you fed me. Please try again|"_s +
                     said + u'|');
        QVERIFY(stage.labels().contains(said));
        QCOMPARE(csvRule.theRows(), rows);
        QCOMPARE(stage.posts, 1);
    }
    void onlyOneCsvFileIsTaken_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<bool>("isTaken");
        QTest::newRow("one") << QStringList{u"a.CSV"_s} << true;
        QTest::newRow("two") << QStringList{u"a.csv"_s, u"b.csv"_s} << false;
        QTest::newRow("another kind") << QStringList{u"a.txt"_s} << false;
    }
    void onlyOneCsvFileIsTaken()
    {
        QFETCH(QStringList, names);
        EditorStage stage;
        QVERIFY(stage.edit(makeRule(u"CSVTag"_s)));
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &name : names)
            urls += QUrl::fromLocalFile(stage.tree.path(name));
        data.setUrls(urls);
        QDragEnterEvent enter({}, Qt::CopyAction, &data, Qt::LeftButton, {});
        enter.ignore();
        QApplication::sendEvent(stage.popover->content(), &enter);
        QTEST(enter.isAccepted(), "isTaken");
    }
    void csvFilesAreRemarkedOn_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("label");
        QTest::newRow("UTF-16") << QByteArray("\xFF\xFE\xE9\x00", 4) << u"t.csv, UTF-16"_s;
        QTest::newRow("guessed") << QByteArray("\x8E,aaaa") << u"t.csv, Mac OS Roman"_s;
        QTest::newRow("NUL") << QByteArray("\u00e9\n1,\0,2", 8)
                             << u"t.csv: Row 2 has a NUL character. The table ends with it. Is "
                                "the file UTF-16? Then save it as UTF-8."_s;
        QTest::newRow("cut off") << QByteArray("\u00e9\n1,\"2,3\n4")
                                 << u"t.csv: A quotation mark in row 2 is never closed. The table "
                                    "ends with it."_s;
    }
    void csvFilesAreRemarkedOn()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, label);
        EditorStage stage;
        QVERIFY(stage.edit(makeRule(u"CSVTag"_s)));
        dropFile(stage, stage.tree.file(u"t.csv"_s, content));
        QTRY_VERIFY2(stage.labels().contains(label), qPrintable(stage.labels().join(u'|')));
        const auto *table = stage.control<QTableView>(u"Rows of the CSV file"_s);
        QCOMPARE(columnOf(*table->model(), 0).front(), u"\u00e9"_s);
    }
    void aCsvFileIsChosenInAPanel()
    {
        EditorStage stage;
        QVERIFY(stage.edit(makeRule(u"CSVTag"_s)));
        auto *choose = stage.popover->findChild<QPushButton *>();
        QTest::keyClick(choose, Qt::Key_Return);
        QCOMPARE(stage.popover->findChildren<QFileDialog *>().size(), 1);
        QTest::mouseClick(choose, Qt::LeftButton);
        const auto panels = stage.popover->findChildren<QFileDialog *>();
        QCOMPARE(panels.size(), 1);
        QCOMPARE(panels.front()->labelText(QFileDialog::Accept), u"Choose CSV"_s);
        QCOMPARE(panels.front()->windowModality(), Qt::WindowModal);
        panels.front()->selectFile(stage.tree.file(u"t.csv"_s, "a,b,c"));
        QMetaObject::invokeMethod(panels.front(), "accept");
        QTRY_VERIFY(stage.labels().contains(u"of 3"_s));
        stage.close(); // with whatever is left of the panel
    }

private:
    static void dropFile(const EditorStage &stage, const QString &path)
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QWidget *editor = stage.popover->content();
        const QPoint place = editor->rect().center();
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(editor, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(editor, &drop);
        QVERIFY(drop.isAccepted());
    }
};

QTEST_MAIN(TestCSVEditor)
#include "tst_csveditor.moc"
