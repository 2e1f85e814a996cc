// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecipeWindow.h"
#include "document/TDocumentDrag.h"
#include "ui/tiles/ExtensionTile.h"

#include <QDragEnterEvent>

using namespace Qt::StringLiterals;

/// The recipe under mouse and keys, and what it takes from drags.
class TestRecipe : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPaletteTileIsAddedByKeys();
    void keysEditTheRecipe_data();
    void keysEditTheRecipe();
    void theKeyboardStaysAfterADeletion();
    void selectionFollowsTheMouse();
    void enterAsksForTheEditor();
    void controlCopiesWhereItIsDropped();
    void onlySoundRulesAreTaken_data();
    void onlySoundRulesAreTaken();
    void tilesOutliveAMove();
    void theTabulatorReadsInOrder();
};

void TestRecipe::aPaletteTileIsAddedByKeys()
{
    RecipeWindow w;
    QSignalSpy added(w.palette, &PaletteBar::addRequested);
    QSignalSpy clicks(w.palette, &PaletteBar::tileClicked);
    w.paletteTile(u"Text"_s).setFocus();
    w.press(Qt::Key_Right);
    w.press(Qt::Key_Return);
    w.press(Qt::Key_End);
    w.press(Qt::Key_Space);
    QCOMPARE(added.count(), 2);
    QCOMPARE(added[0][0].toString(), u"Separator"_s);
    QCOMPARE(added[1][0].toString(), u"RegExTag"_s);
    QCOMPARE(clicks.count(), 0);
}

void TestRecipe::keysEditTheRecipe_data()
{
    using Keys = QList<QKeyCombination>;
    QTest::addColumn<int>("start");
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<QString>("rules");
    QTest::addColumn<QString>("selected");
    const auto row = [](const char *name, int start, const Keys &keys, const QString &rules,
                        const QString &selected) {
        QTest::newRow(name) << start << keys << rules << selected;
    };
    row("delete", 1, {Qt::Key_Delete}, u"a c d"_s, u""_s);
    row("delete a range", 1, {Qt::SHIFT | Qt::Key_Right, Qt::Key_Backspace}, u"a d"_s, u""_s);
    row("range shrinks", 1, {Qt::SHIFT | Qt::Key_End, Qt::SHIFT | Qt::Key_Left}, u"a b c d"_s,
        u"b c"_s);
    row("delete all", 0, {Qt::CTRL | Qt::Key_A, Qt::Key_Delete}, u""_s, u""_s);
    row("later", 1, {Qt::ALT | Qt::Key_Right}, u"a c b d"_s, u"b"_s);
    row("later at the end", 3, {Qt::ALT | Qt::Key_Right}, u"a b c d"_s, u"d"_s);
    row("earlier", 3, {Qt::ALT | Qt::Key_Left, Qt::ALT | Qt::Key_Left}, u"a d b c"_s, u"d"_s);
    row("several earlier", 2, {Qt::SHIFT | Qt::Key_Right, Qt::ALT | Qt::Key_Left}, u"a c d b"_s,
        u"c d"_s);
    row("copy and paste", 0,
        {Qt::SHIFT | Qt::Key_Right, Qt::CTRL | Qt::Key_C, Qt::Key_End, Qt::CTRL | Qt::Key_V},
        u"a b c d a b"_s, u"a b"_s);
    row("cut and paste", 0, {Qt::CTRL | Qt::Key_X, Qt::Key_Right, Qt::CTRL | Qt::Key_V},
        u"b c a d"_s, u"a"_s);
    row("cut all and paste", 0, {Qt::CTRL | Qt::Key_A, Qt::CTRL | Qt::Key_X, Qt::CTRL | Qt::Key_V},
        u"a b c d"_s, u""_s);
}

void TestRecipe::keysEditTheRecipe()
{
    QFETCH(int, start);
    QFETCH(QList<QKeyCombination>, keys);
    RecipeWindow w({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    QTest::mouseClick(w.window.windowHandle(), Qt::LeftButton, {}, w.at(w.tile(start)));
    for (const QKeyCombination &key : keys)
        w.press(key.key(), key.keyboardModifiers());
    QTEST(w.rules(), "rules");
    QTEST(w.selected(), "selected");
    QUndoStack &undo = w.batch.document->undoStack();
    while (undo.index() > 1)
        undo.undo();
    QCOMPARE(w.rules(), u"a b c d"_s);
}

void TestRecipe::theKeyboardStaysAfterADeletion()
{
    RecipeWindow w({u"a"_s, u"b"_s, u"c"_s});
    QTest::mouseClick(w.window.windowHandle(), Qt::LeftButton, {}, w.at(w.tile(1)));
    w.press(Qt::Key_Delete);
    QCOMPARE(QApplication::focusWidget(), &w.tile(1));
    for (int left = 2; left > 0; --left)
        w.press(Qt::Key_Delete);
    QCOMPARE(w.rules(), QString());
    QVERIFY(w.recipe->isAncestorOf(QApplication::focusWidget()));
    w.batch.document->undoStack().undo();
    QCOMPARE(QApplication::focusWidget(), &w.tile(0));
}

void TestRecipe::selectionFollowsTheMouse()
{
    RecipeWindow w({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    QSignalSpy changes(w.recipe, &RecipeCard::selectionChanged);
    const auto click = [&](int place, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(w.window.windowHandle(), Qt::LeftButton, modifiers, w.at(w.tile(place)));
        return w.selected();
    };
    QCOMPARE(click(1), u"b"_s);
    QCOMPARE(click(3, Qt::ShiftModifier), u"b c d"_s);
    QCOMPARE(click(2, Qt::ControlModifier), u"b d"_s);
    QCOMPARE(click(3), u"d"_s);
    QVERIFY(changes.count() >= 4);
}

void TestRecipe::enterAsksForTheEditor()
{
    RecipeWindow w({u"a"_s, u"b"_s});
    QStringList &calls = w.batch.host.calls;
    QTest::mouseDClick(w.window.windowHandle(), Qt::LeftButton, {}, w.at(w.tile(0)));
    QVERIFY(calls.contains(u"edit rule a"_s));
    w.press(Qt::Key_Right);
    w.press(Qt::Key_Return);
    QVERIFY(calls.contains(u"edit rule b"_s));

    QSignalSpy extension(w.recipe, &RecipeCard::extensionEditRequested);
    w.recipe->extensionTile()->setFocus();
    w.press(Qt::Key_Return);
    QTest::mouseClick(w.recipe->extensionTile(), Qt::LeftButton);
    QCOMPARE(extension.count(), 2);
}

void TestRecipe::controlCopiesWhereItIsDropped()
{
    RecipeWindow w({u"a"_s, u"b"_s});
    const QRect card = w.recipe->rect();
    const auto data = TDocumentDrag::dataForRulesAt(w.batch.document->ruleArray(), {0},
                                                    w.batch.document->myUUID());
    const auto actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(card.center(), actions, data.get(), Qt::LeftButton, {});
    QCoreApplication::sendEvent(w.recipe, &enter);
    QCOMPARE(enter.dropAction(), Qt::MoveAction);
    QDropEvent drop(card.center(), actions, data.get(), Qt::LeftButton, Qt::ControlModifier);
    QCoreApplication::sendEvent(w.recipe, &drop);
    QCOMPARE(w.rules(), u"a b a"_s);
}

void TestRecipe::onlySoundRulesAreTaken_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("isTaken");
    const QString rules = TDocumentDrag::rulesType();
    const QByteArray sound = TDocumentDrag::dataForTile(u"Date"_s)->data(rules);
    QTest::newRow("a rule") << rules << sound << true;
    QTest::newRow("files") << u"text/uri-list"_s << QByteArray("file:///etc/hosts\r\n") << false;
    QTest::newRow("text") << u"text/plain"_s << QByteArray("Counter") << false;
    QTest::newRow("nothing") << rules << QByteArray() << false;
    QTest::newRow("cut short") << rules << sound.left(sound.size() / 2) << false;
    QTest::newRow("no archive") << rules << QByteArray(5000, 'x') << false;
}

void TestRecipe::onlySoundRulesAreTaken()
{
    QFETCH(QString, type);
    QFETCH(QByteArray, data);
    QFETCH(bool, isTaken);
    RecipeWindow w({u"a"_s});
    QMimeData mime;
    mime.setData(type, data);
    const QPoint place = w.recipe->rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &mime, Qt::LeftButton, {});
    QCoreApplication::sendEvent(w.recipe, &enter);
    QCOMPARE(enter.isAccepted(), isTaken);
    QDropEvent drop(place, Qt::CopyAction, &mime, Qt::LeftButton, {});
    QCoreApplication::sendEvent(w.recipe, &drop);
    QCOMPARE(drop.isAccepted(), isTaken);
    QCOMPARE(w.batch.document->ruleArray().size(), isTaken ? 2U : 1U);
}

void TestRecipe::tilesOutliveAMove()
{
    RecipeWindow w({u"a"_s, u"b"_s, u"c"_s});
    const QPointer<RuleTile> moved = &w.tile(0);
    w.recipe->setEditedTile(moved);
    w.batch.document->moveRules({0}, 3);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(moved.data(), &w.tile(2));
    QCOMPARE(moved->mark(), RuleTile::Mark::Edited);
    QVERIFY(moved->x() > w.tile(1).x());

    const TRulePtr rule = moved->rule();
    rule->setName(u"other"_s);
    w.batch.notifications.post(Notifications::kRuleChanged,
                               {{Notifications::kTheModel, QVariant::fromValue(rule)}});
    QCOMPARE(moved->text(), u"other"_s);
}

void TestRecipe::theTabulatorReadsInOrder()
{
    RecipeWindow w({u"a"_s, u"b"_s});
    w.batch.document->addRules({textRule(u"new"_s)}, 1);
    w.recipe->presetPopUp()->setFocus();
    w.press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), &w.tile(1)); // where the keyboard is in the recipe
    w.press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), w.recipe->extensionTile());
}

QTEST_MAIN(TestRecipe)
#include "tst_recipe.moc"
