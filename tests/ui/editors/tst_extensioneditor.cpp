// SPDX-License-Identifier: GPL-3.0-or-later
#include "EditorStage.h"
#include "commonprocs/RegexReplacer.h"
#include "ui/editors/ExtensionSampler.h"

#include <QTableView>
#include <QThreadPool>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

const QString kSlow = u"(((((((.+)+)+)+)+)+)+)+x"_s;

} // namespace

class TestExtensionEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mapIsEditedInItsTable()
    {
        EditorStage stage;
        QVERIFY(stage.addFiles());
        TExtensionHandler &handler = stage.document->theExtensionHandler();
        handler.setHandlingMethod(TExtensionHandler::kMap);
        const QVariantMap before = stage.document->extensionHandlerProperties();
        QVERIFY(stage.edit(nullptr));
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
        table->setCurrentIndex(table->model()->index(0, 0));
        QTest::keyClick(table, Qt::Key_Delete);
        QCOMPARE(handler.mapArray(), std::vector{jpeg});
        // Undoing while the editor is open shows what was before.
        QTest::keyClick(table, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(stage.document->extensionHandlerProperties(), before);
        QCOMPARE(columnOf(*table->model(), 0), QStringList{u"htm"_s});
    }
    void oneStepBringsBackAllNineSettings()
    {
        EditorStage stage;
        QVERIFY(stage.addFiles());
        TDocument &document = *stage.document;
        const QVariantMap before = document.extensionHandlerProperties();
        QCOMPARE(before.size(), 9);
        QVERIFY(stage.edit(nullptr));
        QVERIFY(stage.use(u"Letters"_s, u"1"_s));
        QVERIFY(stage.use(u"Method"_s, u"1"_s));
        QVERIFY(stage.use(u"New extension"_s, u"x"_s));
        QVERIFY(stage.use(u"Method"_s, u"2"_s));
        QVERIFY(stage.use(u"Ignore upper and lower case"_s));
        QVERIFY(stage.use(u"Others"_s, u"1"_s));
        QTest::keyClick(stage.control<QTableView>(u"Extensions and what they become"_s),
                        Qt::Key_Insert);
        QVERIFY(stage.use(u"Method"_s, u"4"_s));
        QVERIFY(stage.use(u"Find"_s, u"[a"_s));
        QVERIFY(stage.use(u"Replace by"_s, u"b"_s));
        QVERIFY(stage.use(u"Works on"_s, u"0"_s));
        QVERIFY(stage.labels().filter(u"bracket"_s).size() == 1);
        QTRY_COMPARE(stage.preview(), u"IMG_0042.JPG \u2192 IMG_0042"_s);
        stage.close();
        const QVariantMap after = document.extensionHandlerProperties();
        for (auto it = before.cbegin(); it != before.cend(); ++it)
            QVERIFY2(after.value(it.key()) != *it, qPrintable(it.key()));
        document.undoStack().undo();
        QCOMPARE(document.extensionHandlerProperties(), before);
        document.undoStack().redo();
        QCOMPARE(document.extensionHandlerProperties(), after);
    }

    /// A pattern that takes its time holds up nobody, and what it gave is not heard of when
    /// something else was asked meanwhile.
    void slowPatternsAreTriedAside()
    {
        EditorStage stage;
        QVERIFY(stage.addFiles());
        TExtensionHandler &handler = stage.document->theExtensionHandler();
        handler.setHandlingMethod(TExtensionHandler::kRegEx);
        handler.setRegAccess(TExtensionHandler::kWholeName);
        QVERIFY(stage.edit(nullptr));
        QTRY_COMPARE(stage.preview(), u"IMG_0042.JPG \u2192 IMG_0042.IMG_0042.JPG"_s);
        QVERIFY(stage.use(u"Find"_s, kSlow));
        QVERIFY(stage.preview().endsWith(u".JPG"_s)); // not known yet
        QTRY_COMPARE(stage.preview(), RegexReplacer::kTookTooLong.toString());

        const TFileObject &file = *stage.document->sourceObjectArray().front();
        auto sampler = std::make_unique<ExtensionSampler>(nullptr);
        QStringList heard;
        connect(sampler.get(), &ExtensionSampler::answered, this,
                [&heard](const ExtensionSampler::Sample &sample) { heard += sample.extension; });
        for (const QString &pattern : {kSlow, kSlow, u"^.*O"_s, u"^.*J"_s}) {
            handler.setRegEx(pattern);
            sampler->ask(handler, file, 2);
        }
        QTRY_COMPARE(heard, QStringList(u"_PG"_s));
        handler.setRegEx(kSlow);
        sampler->ask(handler, file, 2);
        handler.setHandlingMethod(TExtensionHandler::kUnchanged);
        sampler->ask(handler, file, 2);
        QCOMPARE(heard, (QStringList{u"_PG"_s, u"JPG"_s}));
        handler.setHandlingMethod(TExtensionHandler::kRegEx);
        sampler->ask(handler, file, 2);
        sampler.reset(); // with the work in hand
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QCOMPARE(heard.size(), 2);
    }
};

QTEST_MAIN(TestExtensionEditor)
#include "tst_extensioneditor.moc"
