// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecipeWindow.h"
#include "ui/controls/Theme.h"
#include "ui/tiles/ColouredText.h"
#include "ui/tiles/PresetPopUp.h"
#include "ui/tiles/RecipeScroll.h"
#include "ui/tiles/SampleLine.h"
#include "ui/tiles/TileDrawing.h"

#include <QAbstractItemView>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

/// How tiles look and where they stand, the preset pop-up and the sample line.
class TestTiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreLegible_data();
    void textsAreLegible();
    void oddNamesHaveBoundedTiles_data();
    void oddNamesHaveBoundedTiles();
    void manyTilesWrapAndScroll();
    void narrowWindowsKeepEverythingInside_data();
    void narrowWindowsKeepEverythingInside();
    void thePopUpCountsAsTheDocument();
    void onlyTheListOfThePopUpChooses();
    void theSampleFollowsTheBatch();
    void longSamplesKeepBothEnds_data();
    void longSamplesKeepBothEnds();
};

void TestTiles::textsAreLegible_data()
{
    QTest::addColumn<int>("scheme");
    QTest::newRow("light") << int(Theme::Scheme::Light);
    QTest::newRow("dark") << int(Theme::Scheme::Dark);
}

void TestTiles::textsAreLegible()
{
    QFETCH(int, scheme);
    Theme::apply(static_cast<Theme::Scheme>(scheme));
    const QPalette palette = QApplication::palette();
    TRuleList rules(5);
    std::generate(rules.begin(), rules.end(), [] { return textRule(u"x"_s); });
    rules.push_back(textRule(u"without a colour"_s));
    rules.back()->setTheColor({});
    rules.push_back(textRule(u"a middling colour"_s));
    rules.back()->setTheColor(TColor(0x76, 0x76, 0x76));
    for (const TRulePtr &rule : rules) {
        const TileDrawing tile = TileDrawing::of(*rule, palette);
        QVERIFY2(Theme::contrast(tile.fill, tile.ink) >= 4.5, qPrintable(rule->theColor().hex()));
    }
    const ThemeColors colors = ThemeColors::of(palette);
    QVERIFY(Theme::contrast(colors.extension, colors.card) >= 4.5);
    Theme::apply(Theme::Scheme::Light);
}

void TestTiles::oddNamesHaveBoundedTiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("plain") << u"Holiday"_s << u"Holiday"_s;
    QTest::newRow("empty") << u""_s << u"\u201c\u201d"_s;
    QTest::newRow("blanks at the end") << u"a  "_s << u"\u201ca  \u201d"_s;
    QTest::newRow("line break") << u"a\nb"_s << u"a\\x0Ab"_s;
    QTest::newRow("2,000 characters") << QString(2000, u'W') << QString(200, u'W') + u'\u2026';
    const QString rightToLeft = u"\u05e9\u05dc\u05d5\u05dd"_s;
    QTest::newRow("right to left") << rightToLeft << rightToLeft;
}

void TestTiles::oddNamesHaveBoundedTiles()
{
    QFETCH(QString, name);
    RecipeWindow w({name});
    const RuleTile &tile = w.tile(0);
    QTEST(tile.text(), "shown");
    QVERIFY(tile.width() <= w.strip().fontMetrics().averageCharWidth() * 30 + 80);
    QVERIFY(tile.accessibleName().startsWith(u"Text: "_s));
    QVERIFY(tile.toolTip().size() < 1200);
}

void TestTiles::manyTilesWrapAndScroll()
{
    QStringList names;
    for (int i = 0; i < 200; ++i)
        names += u"Part %1"_s.arg(i);
    RecipeWindow w(names);
    const auto *scroll = w.recipe->findChild<RecipeScroll *>();
    QCOMPARE(scroll->height(), w.strip().heightOfLines(3));
    QRect all;
    for (int i = 0; i < 200; ++i)
        all |= w.tile(i).geometry();
    QVERIFY(w.strip().rect().contains(all));

    const auto isInView = [&](int place) {
        const RuleTile &tile = w.tile(place);
        const QRect there(tile.mapTo(scroll->viewport(), QPoint()), tile.size());
        return scroll->viewport()->rect().contains(there);
    };
    for (int i = 200; i < 210; ++i) { // at once, for an editor opens where it stands
        w.batch.document->addRules({textRule(u"Added"_s)}, i);
        w.recipe->setEditedTile(&w.tile(i));
        QVERIFY(isInView(i));
    }
    w.tile(0).setFocus();
    w.press(Qt::Key_End);
    QVERIFY(isInView(209));
    w.press(Qt::Key_Up);
    QCOMPARE(w.recipe->commands().selected().size(), 1U);
    QVERIFY(w.recipe->commands().selected().front() != w.tile(209).rule());
}

void TestTiles::narrowWindowsKeepEverythingInside_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("direction");
    for (const int width : {560, 700, 1024, 1600}) {
        QTest::addRow("%d", width) << width << int(Qt::LeftToRight);
        QTest::addRow("%d mirrored", width) << width << int(Qt::RightToLeft);
    }
}

void TestTiles::narrowWindowsKeepEverythingInside()
{
    QFETCH(int, width);
    QFETCH(int, direction);
    RecipeWindow w({u"one"_s, u"two"_s, u"three"_s, u"four"_s, u"five"_s}, width);
    w.window.setLayoutDirection(static_cast<Qt::LayoutDirection>(direction));
    QCoreApplication::processEvents();
    QCOMPARE(w.window.width(), width);
    QList<QRect> places;
    for (QWidget *widget : w.palette->findChildren<QWidget *>()) {
        if (widget->isVisible())
            places += QRect(widget->mapTo(&w.window, QPoint()), widget->size());
    }
    for (QWidget *widget : {w.recipe->presetPopUp(), w.recipe->extensionTile()})
        places += QRect(widget->mapTo(&w.window, QPoint()), widget->size());
    places += QRect(w.strip().mapTo(&w.window, QPoint()), w.strip().size());
    for (qsizetype i = 0; i < places.size(); ++i) {
        QVERIFY(w.window.rect().contains(places[i]));
        for (qsizetype j = 0; j < i; ++j)
            QVERIFY(!places[i].intersects(places[j]));
    }
}

void TestTiles::thePopUpCountsAsTheDocument()
{
    RecipeWindow w({u"a"_s});
    auto *popUp = qobject_cast<PresetPopUp *>(w.recipe->presetPopUp());
    w.recipe->setPresetNames({u"Mine"_s, u"Songs"_s});
    QStringList items;
    for (int i = 0; i < popUp->count(); ++i)
        items += popUp->itemText(i);
    const QStringList expected{u"Save Preset..."_s, {},        u"Delete Presets..."_s, {},
                               u"Mine"_s,           u"Songs"_s};
    QCOMPARE(items, expected);

    QSignalSpy chosen(w.recipe, &RecipeCard::presetChosen);
    for (const int index : {0, 2, 5}) {
        popUp->showPopup();
        popUp->view()->setCurrentIndex(popUp->model()->index(index, 0));
        QTest::keyClick(popUp->view(), Qt::Key_Return);
        QCOMPARE(chosen.count(), 1);
        QCOMPARE(chosen.takeFirst()[0].toLongLong(), index);
        QCOMPARE(popUp->currentIndex(), -1);
    }
    w.batch.document->deleteRules(w.batch.document->ruleArray());
    QVERIFY(!(popUp->model()->index(0, 0).flags() & Qt::ItemIsEnabled));
}

void TestTiles::onlyTheListOfThePopUpChooses()
{
    RecipeWindow w({u"a"_s});
    w.recipe->setPresetNames({u"Mine"_s, u"Songs"_s});
    QSignalSpy chosen(w.recipe, &RecipeCard::presetChosen);
    w.recipe->presetPopUp()->setFocus();
    QTest::keyClick(w.recipe->presetPopUp(), Qt::Key_S);
    QTest::keyClick(w.recipe->presetPopUp(), Qt::Key_PageDown);
    QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(w.recipe->presetPopUp(), &wheel);
    QCOMPARE(chosen.count(), 0);
}

void TestTiles::theSampleFollowsTheBatch()
{
    RecipeWindow w;
    const auto *sample = w.recipe->findChild<SampleLine *>();
    const auto shown = [&] {
        QCoreApplication::processEvents();
        return sample->accessibleDescription();
    };
    QCOMPARE(shown(), QString());
    QVERIFY(w.batch.drop({w.batch.tree.file(u"one.JPG"_s), w.batch.tree.file(u"two\n.JPG"_s)}));
    QCOMPARE(shown(), u"one.JPG"_s);
    QVERIFY(w.batch.useRules({textRule(u"N\nw"_s)}));
    QCOMPARE(shown(), u"one.JPG becomes N\\x0Aw.JPG"_s);

    w.recipe->setSampleFile(w.batch.document->sourceObjectArray().back());
    TExtensionHandler &handler = w.batch.document->theExtensionHandler();
    handler.setCaseHandling(TExtensionHandler::kLowerCase);
    w.batch.document->extensionHandlerEdited();
    QVERIFY(w.batch.settle());
    QCOMPARE(shown(), u"two\\x0A.JPG becomes N\\x0Aw.jpg"_s);
    handler.setHandlingMethod(TExtensionHandler::kReplace);
    handler.setReplacer(u"jpeg"_s);
    w.batch.document->extensionHandlerEdited();
    QVERIFY(w.batch.settle());
    QCOMPARE(shown(), u"two\\x0A.JPG becomes N\\x0Aw.jpeg"_s);

    w.batch.document->removeFiles({1});
    QVERIFY(w.batch.settle());
    QCOMPARE(shown(), u"one.JPG becomes N\\x0Aw.jpeg"_s);
    w.batch.document->removeFiles({0});
    QCOMPARE(shown(), QString());
}

void TestTiles::longSamplesKeepBothEnds_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("latin") << QString(300, u'n');
    QTest::newRow("surrogates") << u"\U0001F600"_s.repeated(300);
    QTest::newRow("combining") << u"e\u0301"_s.repeated(300);
}

void TestTiles::longSamplesKeepBothEnds()
{
    QFETCH(QString, name);
    const QFont font;
    ColouredText text;
    text.append(u"Start"_s + name, Qt::black, Qt::yellow);
    text.append(u".jpeg"_s, Qt::red);
    const ColouredText cut = text.elided(font, 200, Qt::gray);
    QVERIFY(cut.width(font) <= 201);
    QVERIFY(cut.width(font) > 150);
    const QString shown = cut.text();
    QVERIFY(shown.startsWith(u"Start"_s) && shown.endsWith(u".jpeg"_s));
    const QStringList ends = shown.split(u'\u2026');
    QCOMPARE(ends.size(), 2);
    QVERIFY(!ends[0].back().isHighSurrogate());
    QVERIFY(!ends[1].front().isLowSurrogate() && !ends[1].front().isMark());
    QCOMPARE(text.elided(font, 100'000, Qt::gray).text(), text.text());
}

QTEST_MAIN(TestTiles)
#include "tst_tiles.moc"
