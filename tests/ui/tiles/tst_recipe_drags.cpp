// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecipeWindow.h"
#include "ui/tiles/RecipeDrag.h"

using namespace Qt::StringLiterals;

/// Palette and recipe under drags with the events of a real mouse, through the drags' own loops.
class TestRecipeDrags : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPaletteTileIsDraggedIn();
    void whatIsCarriedHidesNothing();
    void tilesAreDragged_data();
    void tilesAreDragged();
    void tilesAreDraggedOut_data();
    void tilesAreDraggedOut();
    void severalTilesAreDraggedTogether();
    void aControlDragAsksForACopy();
};

void TestRecipeDrags::aPaletteTileIsDraggedIn()
{
    RecipeWindow w({u"a"_s, u"b"_s});
    QSignalSpy clicks(w.palette, &PaletteBar::tileClicked);
    w.drag(w.at(w.paletteTile(u"Counter"_s)), w.at(w.tile(1), -0.4));
    QCOMPARE(w.rules(), u"a 1, 2, 3 b"_s);
    QCOMPARE(w.selected(), u"1, 2, 3"_s);
    QCOMPARE(clicks.count(), 0);

    QTest::mouseClick(&w.paletteTile(u"Date"_s), Qt::LeftButton);
    QCOMPARE(clicks.count(), 1);
    w.batch.document->undoStack().undo();
    QCOMPARE(w.rules(), u"a b"_s);
}

/// Where a tile would come is to be seen at the pointer, and through what hangs from it.
void TestRecipeDrags::whatIsCarriedHidesNothing()
{
    QPixmap tiles(40, 20);
    tiles.fill(Qt::red);
    const RecipeDrag::Picture carried = RecipeDrag::hung(tiles, 30);
    QCOMPARE(carried.hotSpot.x(), 30);
    QVERIFY(carried.hotSpot.y() < 0);
    const QColor color = carried.pixmap.toImage().pixelColor(30, 10);
    QCOMPARE(color.red(), 255);
    QVERIFY(color.alphaF() < 0.8F);
}

void TestRecipeDrags::tilesAreDragged_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("onto");
    QTest::addColumn<double>("part"); // of the tile's width from its middle
    QTest::addColumn<bool>("isMirrored");
    QTest::addColumn<QString>("expected");
    QTest::newRow("to the front") << 2 << 0 << -0.3 << false << u"c a b d"_s;
    QTest::newRow("behind the last") << 0 << 3 << 0.3 << false << u"b c d a"_s;
    QTest::newRow("between") << 0 << 2 << -0.3 << false << u"b a c d"_s;
    QTest::newRow("onto itself") << 1 << 1 << 0.3 << false << u"a b c d"_s;
    QTest::newRow("mirrored") << 0 << 2 << -0.3 << true << u"b c a d"_s;
}

void TestRecipeDrags::tilesAreDragged()
{
    QFETCH(int, from);
    QFETCH(int, onto);
    QFETCH(double, part);
    QFETCH(bool, isMirrored);
    RecipeWindow w({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    w.window.setLayoutDirection(isMirrored ? Qt::RightToLeft : Qt::LeftToRight);
    QCoreApplication::processEvents();
    w.drag(w.at(w.tile(from)), w.at(w.tile(onto), part));
    QTEST(w.rules(), "expected");
}

void TestRecipeDrags::tilesAreDraggedOut_data()
{
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<bool>("isGivenUp");
    QTest::addColumn<QString>("expected");
    QTest::newRow("within the window") << QPoint(450, 390) << false << u"a c d"_s;
    QTest::newRow("out of the window") << QPoint(450, 600) << false << u"a c d"_s;
    QTest::newRow("given up") << QPoint(450, 390) << true << u"a b c d"_s;
}

void TestRecipeDrags::tilesAreDraggedOut()
{
    QFETCH(QPoint, to);
    QFETCH(bool, isGivenUp);
    RecipeWindow w({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    w.drag(w.at(w.tile(1)), to, isGivenUp ? RecipeWindow::End::GiveUp : RecipeWindow::End::Drop);
    QTEST(w.rules(), "expected");
    if (!isGivenUp)
        w.batch.document->undoStack().undo();
    QCOMPARE(w.rules(), u"a b c d"_s);
    QVERIFY(!w.window.acceptDrops());
}

void TestRecipeDrags::severalTilesAreDraggedTogether()
{
    RecipeWindow w({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    QTest::mouseClick(w.window.windowHandle(), Qt::LeftButton, {}, w.at(w.tile(0)));
    QTest::mouseClick(w.window.windowHandle(), Qt::LeftButton, Qt::ControlModifier,
                      w.at(w.tile(2)));
    w.drag(w.at(w.tile(2)), w.at(w.tile(3), 0.3));
    QCOMPARE(w.rules(), u"b d a c"_s);
    QCOMPARE(w.selected(), u"a c"_s);
}

void TestRecipeDrags::aControlDragAsksForACopy()
{
    RecipeWindow w({u"a"_s, u"b"_s});
    const QPoint end = w.at(w.tile(1), 0.3);
    w.drag(w.at(w.tile(0)), end, RecipeWindow::End::Drop, Qt::ControlModifier);
    QVERIFY(w.batch.host.calls.contains(u"drag copy of a"_s));
    QCOMPARE(w.rules(), u"a b"_s);
    w.finishDrag(end, RecipeWindow::End::Drop,
                 [&] { w.recipe->startDupeDrag(w.batch.document->ruleArray().front()); });
    QCOMPARE(w.rules(), u"a b a"_s);
}

QTEST_MAIN(TestRecipeDrags)
#include "tst_recipe_drags.moc"
