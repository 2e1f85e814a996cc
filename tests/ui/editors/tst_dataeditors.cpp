// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/EXIFSupport.h"
#include "metadata/TCSVRule.h"
#include "support/DocumentFixture.h"
#include "ui/controls/Popover.h"
#include "ui/editors/RuleEditors.h"
#include "ui/editors/SamplePreview.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString kPhoto = u"IMG_0042.JPG"_s;
const QString kSong = u"song.mp3"_s;

/// A photo and a song with metadata in a document, and a window in which editors are open.
struct Stage : DocumentFixture
{
    QWidget window;
    QPushButton tile{u"tile"_s, &window};
    QPointer<Popover> popover;
    QString sample = kPhoto;
    int posts = 0;
    Notifications::Subscription subscription = notifications.subscribe(
        Notifications::kRuleChanged, [this](const QVariantMap &) { ++posts; });

    Stage()
    {
        metadata.byName[kPhoto] = {
            TMetadata::fromVariantMap(
                {{u"PixelWidth"_s, 4032},
                 {u"{Exif}"_s,
                  QVariantMap{{u"ISOSpeedRatings"_s, QVariantList{200}}, {u"Shadows"_s, 1.5}}}}),
            {}};
        metadata.byName[kSong] = {{}, TMetadata::fromVariantMap({{u"artist"_s, u"Bill Evans"_s}})};
        window.resize(1000, 700);
        tile.setGeometry(400, 20, 100, 30);
        window.show();
        window.activateWindow();
    }
    bool addFiles()
    {
        tree.file(kPhoto);
        tree.file(kSong);
        return drop({kPhoto, kSong});
    }
    EditorContext context()
    {
        return {*document, notifications, [this]() -> std::shared_ptr<TFileObject> {
                    for (const auto &file : document->sourceObjectArray())
                        if (file->sourceURL().lastPathComponent() == sample)
                            return file;
                    return nullptr;
                }};
    }
    QWidget *edit(const TRulePtr &rule)
    {
        useRules({rule});
        return show(RuleEditors::editorFor(rule, context()));
    }
    QWidget *editExtensions() { return show(RuleEditors::extensionEditor(context())); }
    QWidget *show(QWidget *editor)
    {
        popover = Popover::open(editor, &tile);
        return QTest::qWaitForWindowActive(&window) ? editor : nullptr;
    }
    void close() const { popover->dismiss(); }
    template <class Control>
    Control *control(const QString &name) const
    {
        for (auto *each : popover->findChildren<Control *>())
            if (each->isVisible() && nameOf(*each) == name)
                return each;
        return nullptr;
    }
    static QString nameOf(const QWidget &control)
    {
        const auto *box = qobject_cast<const QCheckBox *>(&control);
        return box != nullptr ? box->text().remove(u'&') : control.accessibleName();
    }
    /// Focuses a control and types into it; "~" stands for the down key, a blank for the space bar.
    bool type(const QString &name, const QString &keys) const
    {
        auto *target = control<QWidget>(name);
        if (target == nullptr)
            return false;
        target->setFocus();
        if (auto *field = qobject_cast<QLineEdit *>(target))
            field->selectAll();
        for (const QChar key : keys) {
            if (key == u'~')
                QTest::keyClick(target, Qt::Key_Down);
            else
                QTest::keyClick(target, key.toLatin1());
        }
        return true;
    }
    QString preview() const { return popover->findChild<SamplePreview *>()->text(); }
    QStringList labels() const
    {
        QStringList texts;
        for (const auto *label : popover->findChildren<QLabel *>())
            if (label->isVisible())
                texts += label->text();
        return texts;
    }
};

QStringList columnOf(const QAbstractItemModel &model, int column)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts += model.index(row, column).data().toString();
    return texts;
}

void clickCell(QAbstractItemView *view, int row, int column)
{
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      view->visualRect(view->model()->index(row, column)).center());
}

} // namespace

class TestDataEditors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tagsShowTheValuesOfTheFile_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QVariantMap>("settings");
        QTest::addColumn<QString>("sample");
        QTest::addColumn<QString>("typed"); // into the filter
        QTest::addColumn<QStringList>("tags");
        QTest::addColumn<QStringList>("values");
        QTest::addColumn<QString>("chosen"); // after a step down
        QTest::addColumn<QString>("remark");
        const QVariantMap exif{{u"category"_s, u"Exif"_s}, {u"theTag"_s, u"Shadows"_s}};
        const QVariantMap none;
        QTest::newRow("image, top level")
            << u"ImageTag"_s << none << kPhoto << u"pixel"_s
            << QStringList{u"PixelWidth"_s, u"PixelHeight"_s} << QStringList{u"4032"_s, u""_s}
            << u"PixelHeight"_s << u"Values of IMG_0042.JPG"_s;
        QTest::newRow("by value") << u"ImageTag"_s << exif << kPhoto << u"200"_s
                                  << QStringList{u"ISOSpeedRatings"_s} << QStringList{u"200"_s}
                                  << u"ISOSpeedRatings"_s << u"Values of IMG_0042.JPG"_s;
        QTest::newRow("a tag that is not on offer")
            << u"ImageTag"_s << exif << kPhoto << u"hadow"_s << QStringList{u"Shadows"_s}
            << QStringList{u"1.5"_s} << u"Shadows"_s << u"Values of IMG_0042.JPG"_s;
        QTest::newRow("audio") << u"AudioTag"_s << none << kSong << u"art"_s
                               << QStringList{u"artist"_s} << QStringList{u"Bill Evans"_s}
                               << u"artist"_s << u"Values of song.mp3"_s;
        QTest::newRow("video rule, audio file")
            << u"VideoTag"_s << none << kSong << u"artist"_s << QStringList{u"artist"_s}
            << QStringList{u""_s} << u"artist"_s << u"song.mp3 is not a video file."_s;
        QTest::newRow("no file") << u"AudioTag"_s << none << u""_s << u"artist"_s
                                 << QStringList{u"artist"_s} << QStringList{u""_s} << u"artist"_s
                                 << u"With files in the batch, their values are shown here."_s;
    }
    void tagsShowTheValuesOfTheFile()
    {
        QFETCH(QString, kind);
        QFETCH(QVariantMap, settings);
        QFETCH(QString, typed);
        Stage stage;
        QVERIFY(stage.addFiles());
        stage.sample = *static_cast<const QString *>(QTest::qData("sample", QMetaType::QString));
        const TRulePtr rule = makeRule(kind, settings);
        const QVariantMap before = rule->properties();
        QVERIFY(stage.edit(rule));
        auto *list = stage.control<QTreeView>(u"Tags"_s);
        // The keyboard is in the filter from the start.
        for (const QChar key : typed)
            QTest::keyClick(QApplication::focusWidget(), key.toLatin1());
        QTEST(columnOf(*list->model(), 0), "tags");
        QTEST(columnOf(*list->model(), 1), "values");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QTEST(rule->properties().value(u"theTag"_s).toString(), "chosen");
        QCOMPARE(stage.posts, rule->properties() == before ? 0 : 1);
        QFETCH(QString, remark);
        QVERIFY2(stage.labels().contains(remark), qPrintable(stage.labels().join(u'|')));
        const bool isChanged = rule->properties() != before;
        stage.close();
        QCOMPARE(stage.document->undoStack().canUndo(), true); // adding the rule, at least
        if (isChanged)
            stage.document->undoStack().undo();
        QCOMPARE(rule->properties(), before);
    }
    void categoriesOfferTheirTags()
    {
        Stage stage;
        QVERIFY(stage.addFiles());
        const TRulePtr rule = makeRule(
            u"ImageTag"_s, {{u"category"_s, u"Odd"_s}, {u"theTag"_s, u"ISOSpeedRatings"_s}});
        QVERIFY(stage.edit(rule));
        const QAbstractItemModel &tags = *stage.control<QTreeView>(u"Tags"_s)->model();
        QCOMPARE(columnOf(tags, 0), QStringList{u"Please Choose a Tag Category"_s});
        QVERIFY(!tags.index(0, 0).flags().testFlag(Qt::ItemIsEnabled));
        QCOMPARE(rule->properties().value(u"category"_s), u"Odd"_s);
        QVERIFY(stage.type(u"Category"_s, u"~"_s)); // General
        QCOMPARE(rule->name(), u"General:ISOSpeedRatings"_s);
        QCOMPARE(columnOf(tags, 0), EXIFSupport::tagsForCategory(u"{General}"_s)
                                        << u"ISOSpeedRatings"_s);
        QVERIFY(stage.type(u"Category"_s, u"~"_s)); // Exif
        QCOMPARE(columnOf(tags, 0), EXIFSupport::tagsForCategory(u"{Exif}"_s));
        QVERIFY(stage.type(u"Only tags this file has"_s, u" "_s));
        QCOMPARE(columnOf(tags, 0), QStringList{u"ISOSpeedRatings"_s});
        QCOMPARE(stage.preview(), u"IMG_0042.JPG \u2192 200"_s);
    }
    void valuesComeWithTheMetadata()
    {
        Stage stage;
        stage.metadata.holdBack = true;
        stage.tree.file(kPhoto);
        stage.document->addFiles(stage.urls({kPhoto}), 0);
        QVERIFY(stage.pumpUntil([&] { return !stage.metadata.held.empty(); }));
        const TRulePtr rule = makeRule(u"ImageTag"_s);
        stage.document->addRules({rule}, 0);
        stage.show(RuleEditors::editorFor(rule, stage.context()));
        QVERIFY(stage.labels().contains(u"The metadata of IMG_0042.JPG is being read."_s));
        stage.metadata.held.front()();
        QVERIFY(stage.settle());
        QVERIFY(stage.labels().contains(u"Values of IMG_0042.JPG"_s));
        QCOMPARE(stage.preview(), u"IMG_0042.JPG \u2192 4032"_s);
    }

    void controlsSetTheirProperty_data()
    {
        QTest::addColumn<QString>("kind"); // none: the extension handler
        QTest::addColumn<QVariantMap>("settings");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("value");
        const auto row = [](const QString &kind, const QVariantMap &settings, const QString &name,
                            const QString &keys, const QString &property, const QVariant &value) {
            QTest::addRow("%s %s", qPrintable(kind), qPrintable(property + name))
                << kind << settings << name << keys << property << value;
        };
        for (const QString &kind : {u"ImageTag"_s, u"VideoTag"_s}) {
            row(kind, {}, u"Without a value"_s, u"none"_s, u"defaultString"_s, u"none"_s);
            row(kind, {}, u"Width to fill up to"_s, u"8"_s, u"padding"_s, 8);
        }
        row(u"CSVTag"_s, {}, u"Column"_s, u"3"_s, u"useColumn"_s, 2);
        row(u"CSVTag"_s, {}, u"Without a cell"_s, u"none"_s, u"defaultText"_s, u"none"_s);
        row(u"CSVTag"_s, {}, u"The first row is a header"_s, u" "_s, u"skipFirst"_s, true);
        row(u"CSVTag"_s, {}, u"Start again at the top after the last row"_s, u" "_s, u"wrap"_s,
            false);
        row(u"CSVTag"_s, {}, u"Take quotation marks off"_s, u" "_s, u"trimQuotes"_s, false);
        const auto method = [](int number) {
            return QVariantMap{{u"handlingMethod"_s, number}, {u"mapRemainderChoice"_s, 1}};
        };
        row({}, method(0), u"Method"_s, u"~~"_s, u"handlingMethod"_s, 2);
        row({}, method(9), u"Method"_s, u"~"_s, u"handlingMethod"_s, 0);
        row({}, method(0), u"Letter case"_s, u"~~"_s, u"caseHandling"_s, 2);
        row({}, method(1), u"New extension"_s, u"jpeg"_s, u"replacer"_s, u"jpeg"_s);
        row({}, method(2), u"Ignore upper and lower case"_s, u" "_s, u"ignoreCase"_s, 0);
        row({}, method(2), u"Others"_s, u"S"_s, u"mapRemainderChoice"_s, 0);
        row({}, method(2), u"What other extensions become"_s, u"txt"_s, u"replacer"_s, u"txt"_s);
        row({}, method(4), u"Find"_s, u"[A-Z]"_s, u"regEx"_s, u"[A-Z]"_s);
        row({}, method(4), u"Replace by"_s, u"$0"_s, u"rePattern"_s, u"$0"_s);
        row({}, method(4), u"Works on"_s, u"N"_s, u"regAccess"_s, 1);
    }
    void controlsSetTheirProperty()
    {
        QFETCH(QString, kind);
        QFETCH(QVariantMap, settings);
        QFETCH(QString, name);
        QFETCH(QString, keys);
        QFETCH(QString, property);
        Stage stage;
        QVERIFY(stage.addFiles());
        const TRulePtr rule = kind.isEmpty() ? nullptr : makeRule(kind, settings);
        TDocument &document = *stage.document;
        document.theExtensionHandler().setProperties(settings);
        const auto properties = [&] {
            return rule ? rule->properties() : document.extensionHandlerProperties();
        };
        const QVariantMap before = properties();
        QVERIFY(rule ? stage.edit(rule) : stage.editExtensions());
        QCOMPARE(properties(), before); // opening changes nothing, odd values included
        QVERIFY(stage.type(name, keys));
        QVariantMap expected = before;
        QFETCH(QVariant, value);
        expected[property] = value;
        for (auto it = expected.cbegin(); it != expected.cend(); ++it)
            QVERIFY2(properties().value(it.key()).toString() == it->toString(),
                     qPrintable(it.key()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QVERIFY(!stage.popover || !stage.popover->isVisible());
        document.undoStack().undo();
        QCOMPARE(properties(), before);
    }

    void theKeyboardGoesThroughInReadingOrder_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("method");
        QTest::newRow("image") << u"ImageTag"_s << 0;
        QTest::newRow("audio") << u"AudioTag"_s << 0;
        QTest::newRow("table") << u"CSVTag"_s << 0;
        QTest::newRow("map") << QString() << 2;
        QTest::newRow("pattern") << QString() << 4;
    }
    void theKeyboardGoesThroughInReadingOrder()
    {
        QFETCH(QString, kind);
        QFETCH(int, method);
        Stage stage;
        stage.document->theExtensionHandler().setHandlingMethod(method);
        const TRulePtr rule = kind.isEmpty() ? nullptr : makeRule(kind);
        if (kind == u"CSVTag"_s)
            static_cast<TCSVRule &>(*rule).setTheRows(
                std::make_shared<TStringTable>(TStringTable{{u"a"_s}}));
        QWidget *editor = rule ? stage.edit(rule) : stage.editExtensions();
        QPoint last(-1, -1);
        int controls = 0;
        for (QWidget *next = editor->nextInFocusChain(); editor->isAncestorOf(next);
             next = next->nextInFocusChain()) {
            if ((next->focusPolicy() & Qt::TabFocus) == 0 || next->focusProxy() != nullptr ||
                !next->isVisible() || qobject_cast<QScrollBar *>(next) != nullptr ||
                qobject_cast<QHeaderView *>(next) != nullptr)
                continue;
            const QPoint place = next->mapTo(editor, next->rect().center());
            const bool isBelow = place.y() > last.y() + 8;
            const bool isBeside = place.y() > last.y() - 8 && place.x() > last.x();
            QVERIFY2(isBelow || isBeside, qPrintable(Stage::nameOf(*next)));
            QVERIFY(!Stage::nameOf(*next).isEmpty() || qobject_cast<QPushButton *>(next));
            last = place;
            ++controls;
        }
        QVERIFY(controls >= 4);
    }

    void csvTableIsLoadedAside()
    {
        Stage stage;
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
        QVERIFY(stage.type(u"The first row is a header"_s, u" "_s));
        QCOMPARE(table->model()->rowCount(), 100'000);
        QCOMPARE(table->model()->headerData(1, Qt::Horizontal).toString(), u"2 \u00b7 City"_s);
        QCOMPARE(stage.preview(), u"IMG_0042.JPG \u2192 Photo 0"_s);
        auto *header = table->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(1) + 9, header->height() / 2));
        QCOMPARE(csvRule.useColumn(), 1);
        QCOMPARE(rule->name(), u"CSV: Col(2)"_s);
        QCOMPARE(stage.preview(), u"IMG_0042.JPG \u2192 Rome"_s);
        clickCell(table, 2, 0);
        QCOMPARE(csvRule.useColumn(), 0);
        QTest::keyClick(table, Qt::Key_Right); // moves, and chooses nothing yet
        QCOMPARE(csvRule.useColumn(), 0);
        stage.close();
        stage.document->undoStack().undo();
        QVERIFY(!csvRule.theRows());
        stage.document->undoStack().redo();
        QVERIFY(stage.edit(rule));
        QVERIFY(stage.labels().contains(u"places.csv, UTF-8"_s));
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
        Stage stage;
        const TRulePtr rule = makeRule(u"CSVTag"_s);
        auto &csvRule = static_cast<TCSVRule &>(*rule);
        const auto rows = std::make_shared<TStringTable>(TStringTable{{u"old"_s}});
        csvRule.setTheRows(rows);
        QVERIFY(stage.edit(rule));
        dropFile(stage, content.isNull() ? stage.tree.path(u"t.csv"_s)
                                         : stage.tree.file(u"t.csv"_s, content));
        QMessageBox *alert = nullptr;
        QTRY_VERIFY((alert = stage.popover->findChild<QMessageBox *>()) != nullptr);
        QCOMPARE(alert->text(), u"No CSV Data"_s);
        QVERIFY(alert->informativeText().startsWith(
            u"I was unable to read CSV data from the file you fed me. Please try again"_s));
        QVERIFY2(alert->informativeText().endsWith(said), qPrintable(alert->informativeText()));
        QTest::keyClick(alert, Qt::Key_Return);
        QVERIFY(stage.popover->isVisible());
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
        Stage stage;
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
    void csvEncodingsAreNamed_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("label");
        QTest::newRow("UTF-16") << QByteArray("\xFF\xFE\xE9\x00", 4) << u"t.csv, UTF-16"_s;
        QTest::newRow("guessed") << QByteArray("\x8E,aaaa") << u"t.csv, Mac OS Roman"_s;
    }
    void csvEncodingsAreNamed()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, label);
        Stage stage;
        QVERIFY(stage.edit(makeRule(u"CSVTag"_s)));
        dropFile(stage, stage.tree.file(u"t.csv"_s, content));
        QTRY_VERIFY2(stage.labels().contains(label), qPrintable(stage.labels().join(u'|')));
        const auto *table = stage.control<QTableView>(u"Rows of the CSV file"_s);
        QCOMPARE(columnOf(*table->model(), 0), QStringList{u"\u00e9"_s});
    }
    void aCsvFileIsChosenInAPanel()
    {
        Stage stage;
        QVERIFY(stage.edit(makeRule(u"CSVTag"_s)));
        auto *choose = stage.popover->findChild<QPushButton *>();
        QTest::mouseClick(choose, Qt::LeftButton);
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

    void mapIsEditedInItsTable()
    {
        Stage stage;
        QVERIFY(stage.addFiles());
        TExtensionHandler &handler = stage.document->theExtensionHandler();
        handler.setHandlingMethod(TExtensionHandler::kMap);
        const QVariantMap before = stage.document->extensionHandlerProperties();
        QVERIFY(stage.editExtensions());
        auto *table = stage.control<QTableView>(u"Extensions and what they become"_s);
        const auto press = [&](const QString &name) {
            QTest::mouseClick(stage.control<QToolButton>(name), Qt::LeftButton);
        };
        press(u"Add a pair (Insert)"_s);
        QTest::keyClicks(QApplication::focusWidget(), u"jpg"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::keyClicks(QApplication::focusWidget(), u"jpeg"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        const TExtensionMap jpeg{u"jpg"_s, u"jpeg"_s};
        const TExtensionMap html{u"htm"_s, u"html"_s};
        QTRY_COMPARE(handler.mapArray(), (std::vector{html, jpeg}));
        QVERIFY(stage.popover && stage.popover->isVisible());
        QCOMPARE(stage.preview(), u"IMG_0042.JPG \u2192 IMG_0042.jpeg"_s);
        QTest::keyClick(table, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(handler.mapArray(), (std::vector{jpeg, html}));
        press(u"Move the pair down (Alt+Down)"_s);
        QCOMPARE(handler.mapArray(), (std::vector{html, jpeg}));
        clickCell(table, 0, 0);
        QTest::keyClick(table, Qt::Key_Delete);
        QCOMPARE(handler.mapArray(), std::vector{jpeg});
        // Undoing while the editor is open shows what was before.
        QTest::keyClick(table, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(stage.document->extensionHandlerProperties(), before);
        QCOMPARE(columnOf(*table->model(), 0), QStringList{u"htm"_s});
    }
    void oneStepBringsBackAllNineSettings()
    {
        Stage stage;
        QVERIFY(stage.addFiles());
        TDocument &document = *stage.document;
        const QVariantMap before = document.extensionHandlerProperties();
        QCOMPARE(before.size(), 9);
        QVERIFY(stage.editExtensions());
        QVERIFY(stage.type(u"Letter case"_s, u"~"_s));
        QVERIFY(stage.type(u"Method"_s, u"~"_s));
        QVERIFY(stage.type(u"New extension"_s, u"x"_s));
        QVERIFY(stage.type(u"Method"_s, u"~"_s));
        QVERIFY(stage.type(u"Ignore upper and lower case"_s, u" "_s));
        QVERIFY(stage.type(u"Others"_s, u"~"_s));
        QTest::keyClick(stage.control<QTableView>(u"Extensions and what they become"_s),
                        Qt::Key_Insert);
        QVERIFY(stage.type(u"Method"_s, u"~~"_s));
        QVERIFY(stage.type(u"Find"_s, u"[a"_s));
        QVERIFY(stage.type(u"Replace by"_s, u"b"_s));
        QVERIFY(stage.type(u"Works on"_s, u"W"_s));
        QVERIFY(stage.labels().filter(u"bracket"_s).size() == 1);
        QCOMPARE(stage.preview(), u"IMG_0042.JPG \u2192 IMG_0042"_s);
        stage.close();
        const QVariantMap after = document.extensionHandlerProperties();
        for (auto it = before.cbegin(); it != before.cend(); ++it)
            QVERIFY2(after.value(it.key()) != *it, qPrintable(it.key()));
        document.undoStack().undo();
        QCOMPARE(document.extensionHandlerProperties(), before);
        document.undoStack().redo();
        QCOMPARE(document.extensionHandlerProperties(), after);
    }

private:
    static void dropFile(const Stage &stage, const QString &path)
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

QTEST_MAIN(TestDataEditors)
#include "tst_dataeditors.moc"
