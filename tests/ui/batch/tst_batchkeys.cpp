// SPDX-License-Identifier: GPL-3.0-or-later
#include "BatchFixture.h"

#include <QClipboard>
#include <QLineEdit>

using namespace Qt::StringLiterals;

/// A batch window under the keyboard alone.
class TestBatchKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsAndKeys();
    void noKeyMeansTwoThings();
    void enabledCommands_data();
    void enabledCommands();
    void recipeByKeys();
    void filesMoveByKeys();
    void tabGoesRound();
    void onlyTheChosenFilterIsATabStop();
    void areasByKeys();
    void newRulesHaveTheKeyboard();
    void mirroredRecipesMoveTheirWay();
    void emptiedBatchesBeginAnew();
    void deleteMeansWhatHasTheKeyboard();
    void textFieldsKeepTheirKeys();
    void escapeEndsWork();
};

void TestBatchKeys::commandsAndKeys()
{
    const QString all(
        u"New Batch: Ctrl+N|Add Files...: Ctrl+O|Add Folder...: Ctrl+Shift+O|"
        u"Save Preset...: Ctrl+S|Delete Presets...: |Close: Ctrl+W|Quit: Ctrl+Q|"
        u"Undo: Ctrl+Z|Redo: Ctrl+Shift+Z|Delete: Del|Select All: Ctrl+A|Find: Ctrl+F|"
        u"Preferences...: Ctrl+,|Text: Ctrl+1|RegEx: Ctrl+0|Edit Rule: |Move Left: Alt+Left|"
        u"Move Right: Alt+Right|Extension...: Ctrl+E|Color Code Results: |Live Update: |"
        u"Test Run: F5|Show Test Run Log: Shift+F5|Read Missing Metadata: |Cancel: |"
        u"Rename: Ctrl+Return|Roll Back This Run: |"
        u"Roll Back an Earlier Run...: |Folder Access...: |Metadata Inspector: Ctrl+I|"
        u"Name Elements: Alt+1|Recipe: Alt+2|List of Files: Alt+3|Next Area: F6|"
        u"Previous Area: Shift+F6|Dark: |Full Screen: F11|Tavrin Help: F1|Regular Expressions: "
        u"|Keys: |Welcome: |"
        u"Check for Updates...: |About Tavrin: "_s);
    const QStringList expected = all.split(u'|');
    const BatchFixture batch;
    QStringList found;
    for (const QString &line : expected) {
        const QString text = line.section(u':', 0, 0);
        found +=
            text + ": "_L1 + batch.command(text).shortcut().toString(QKeySequence::PortableText);
    }
    QCOMPARE(found, expected);
}

/// A key that two actions of a window claim does nothing at all, and a letter that two of a menu
/// have only goes from one to the other.
void TestBatchKeys::noKeyMeansTwoThings()
{
    const BatchFixture batch;
    QStringList keys;
    for (const QAction *action : WindowTools::commands(*batch.window->menuBar())) {
        const QObject *const menu = action->associatedObjects().value(0);
        if (const QKeySequence letter = QKeySequence::mnemonic(action->text()); !letter.isEmpty())
            keys += u"%1 of %2"_s.arg(letter.toString()).arg(qintptr(menu), 0, 16);
        for (const QKeySequence &key : action->shortcuts())
            keys += key.toString();
    }
    QStringList once = keys;
    once.removeDuplicates();
    QCOMPARE(keys.size(), once.size());
}

void TestBatchKeys::enabledCommands_data()
{
    QTest::addColumn<int>("files");
    QTest::addColumn<int>("rules");
    QTest::addColumn<QString>("focus");
    QTest::addColumn<QStringList>("disabled");
    const QStringList rules{u"Cut"_s, u"Copy"_s, u"Edit Rule"_s, u"Move Left"_s, u"Move Right"_s};
    const QStringList always{u"Undo"_s, u"Redo"_s, u"Roll Back This Run"_s};
    const QStringList noFiles{u"Sort"_s, u"Folder Access..."_s, u"Find"_s, u"Filter"_s};
    QTest::newRow("empty") << 0 << 0 << u"files"_s
                           << always + rules + noFiles +
                                  QStringList{u"Delete"_s, u"Select All"_s, u"Save Preset..."_s,
                                              u"Show Test Run Log"_s};
    QTest::newRow("files") << 2 << 0 << u"files"_s
                           << rules + QStringList{u"Redo"_s, u"Roll Back This Run"_s, u"Delete"_s,
                                                  u"Save Preset..."_s};
    QTest::newRow("selected files")
        << 2 << 0 << u"selection"_s
        << QStringList{u"Cut"_s,  u"Edit Rule"_s,          u"Move Left"_s,     u"Move Right"_s,
                       u"Redo"_s, u"Roll Back This Run"_s, u"Save Preset..."_s};
    QTest::newRow("a selected rule")
        << 0 << 1 << u"rules"_s
        << QStringList{u"Redo"_s, u"Roll Back This Run"_s, u"Move Left"_s, u"Move Right"_s} +
               noFiles;
    QTest::newRow("last of two rules")
        << 2 << 2 << u"rules"_s << QStringList{u"Redo"_s, u"Roll Back This Run"_s, u"Move Right"_s};
    QTest::newRow("search field") << 2 << 0 << u"search"_s
                                  << QStringList{u"Redo"_s,       u"Roll Back This Run"_s,
                                                 u"Edit Rule"_s,  u"Move Left"_s,
                                                 u"Move Right"_s, u"Save Preset..."_s};
}

void TestBatchKeys::enabledCommands()
{
    QFETCH(const int, files);
    QFETCH(const int, rules);
    QFETCH(const QString, focus);
    QFETCH(QStringList, disabled);
    QStringList names;
    for (int i = 0; i < files; ++i)
        names += u"f%1.txt"_s.arg(i);
    const BatchFixture batch(names);
    for (int i = 0; i < rules; ++i)
        batch.document().addRules({textRule(QString::number(i))}, i);
    if (focus == "rules"_L1)
        batch.recipe().focusRecipe();
    else if (focus == "selection"_L1)
        batch.files().selectAllFiles();
    else if (focus == "search"_L1)
        batch.key(Qt::Key_F, Qt::ControlModifier);
    QApplication::clipboard()->clear();
    QVERIFY(batch.settle());
    QStringList found;
    for (const QAction *action : WindowTools::commands(*batch.window->menuBar())) {
        const QString text = WindowTools::plain(action->text());
        if (!action->isEnabled() && text != "Paste"_L1)
            found += text;
    }
    found.sort();
    disabled += u"New name"_s; // the column that cannot be hidden
    disabled += {u"Read Missing Metadata"_s, u"Cancel"_s};
    disabled.sort();
    QCOMPARE(found, disabled);
}

void TestBatchKeys::recipeByKeys()
{
    const BatchFixture batch({u"b.txt"_s, u"a.txt"_s});
    batch.key(Qt::Key_1, Qt::ControlModifier);
    batch.type(u"Day "_s);
    batch.key(Qt::Key_Return);
    batch.key(Qt::Key_3, Qt::ControlModifier);
    batch.key(Qt::Key_Escape);
    QVERIFY(batch.settle());
    QCOMPARE(batch.targets(), QStringList({u"Day 1"_s, u"Day 2"_s}));
    batch.recipe().focusRecipe();
    batch.key(Qt::Key_Left, Qt::AltModifier);
    QVERIFY(batch.settle());
    QCOMPARE(batch.targets(), QStringList({u"1Day "_s, u"2Day "_s}));
    batch.key(Qt::Key_Delete);
    QVERIFY(batch.settle());
    QCOMPARE(batch.rules(), QStringList(u"Text"_s));
    batch.key(Qt::Key_Z, Qt::ControlModifier);
    batch.key(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(batch.settle());
    QCOMPARE(batch.targets(), QStringList({u"Day 1"_s, u"Day 2"_s}));
    QCOMPARE(batch.command(u"Undo Add Rule"_s).isEnabled(), true);
}

void TestBatchKeys::filesMoveByKeys()
{
    const BatchFixture batch({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s, u"d.txt"_s});
    const auto order = [&] {
        QString names;
        for (const auto &file : batch.document().sourceObjectArray())
            names += file->fileName();
        return names;
    };
    batch.files().selectRows({1, 2});
    batch.files().focusTable();
    batch.key(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(order(), u"adbc"_s);
    batch.key(Qt::Key_Down, Qt::AltModifier); // nothing is below them
    QCOMPARE(order(), u"adbc"_s);
    batch.key(Qt::Key_Up, Qt::AltModifier);
    batch.key(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(order(), u"bcad"_s);
    QCOMPARE(batch.files().selectedRows(), (std::vector<qsizetype>{0, 1}));
    batch.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(order(), u"abcd"_s);
}

void TestBatchKeys::tabGoesRound()
{
    const BatchFixture batch({u"a.txt"_s});
    batch.document().addRules({textRule(u"n"_s)}, 0);
    QVERIFY(batch.settle());
    batch.command(u"Metadata Inspector"_s).trigger();
    for (QLineEdit *field : batch.window->findChildren<QLineEdit *>())
        field->setEnabled(true); // as with a file that has tags to search
    batch.files().focusTable();
    QStringList names;
    for (int i = 0; i < 5; ++i) {
        batch.key(Qt::Key_Tab);
        names += QApplication::focusWidget()->accessibleName();
    }
    QCOMPARE(names, (QStringList{u"Test Run"_s, u"Rename"_s, u"Close Metadata"_s, u"Search tags"_s,
                                 u"Text"_s}));
}

void TestBatchKeys::onlyTheChosenFilterIsATabStop()
{
    const BatchFixture batch({u"a.txt"_s, u"b.txt"_s});
    const auto before = [&] {
        batch.key(Qt::Key_F, Qt::ControlModifier);
        batch.key(Qt::Key_Backtab, Qt::ShiftModifier);
        batch.key(Qt::Key_Backtab, Qt::ShiftModifier);
        return QApplication::focusWidget()->accessibleName().section(u' ', 0, 0);
    };
    QCOMPARE(before(), u"All"_s);
    batch.command(u"Filter"_s).menu()->actions().constLast()->trigger();
    QCOMPARE(before(), u"Problems"_s);
}

void TestBatchKeys::areasByKeys()
{
    const BatchFixture batch({u"a.txt"_s});
    batch.document().addRules({textRule(u"rule"_s)}, 0);
    QVERIFY(batch.settle());
    batch.files().focusTable();
    QStringList areas;
    const auto step = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        batch.key(key, modifiers);
        QTest::qWait(1); // the keyboard follows with the next turn of the event loop
        const QWidget *const now = QApplication::focusWidget();
        areas += now == &batch.files().table() ? u"list"_s : now->accessibleName();
    };
    for (int i = 0; i < 3; ++i)
        step(Qt::Key_F6);
    for (int i = 0; i < 3; ++i)
        step(Qt::Key_F6, Qt::ShiftModifier);
    QCOMPARE(areas, QStringList({u"Text"_s, u"Text: rule"_s, u"list"_s, u"Text: rule"_s, u"Text"_s,
                                 u"list"_s}));
    areas.clear();
    step(Qt::Key_2, Qt::AltModifier);
    batch.key(Qt::Key_Return); // its editor does not stay behind
    step(Qt::Key_3, Qt::AltModifier);
    QCOMPARE(batch.popover(), nullptr);
    batch.document().removeFiles({0});
    step(Qt::Key_1, Qt::AltModifier);
    step(Qt::Key_3, Qt::AltModifier);
    QCOMPARE(areas.mid(1, 2), QStringList({u"list"_s, u"Text"_s}));
    QCOMPARE(QApplication::focusWidget(), WindowTools::button(*batch.window, u"Add Files..."_s));
}

void TestBatchKeys::newRulesHaveTheKeyboard()
{
    const BatchFixture batch({u"a.txt"_s});
    batch.files().focusTable();
    batch.key(Qt::Key_3, Qt::ControlModifier);
    batch.key(Qt::Key_3, Qt::ControlModifier); // while the first one is being edited
    QVERIFY(batch.popover() != nullptr);
    batch.key(Qt::Key_Escape);
    QCOMPARE(batch.popover(), nullptr);
    batch.key(Qt::Key_Delete);
    QCOMPARE(batch.rules().size(), 1);
    batch.key(Qt::Key_Return);
    QVERIFY(batch.popover() != nullptr);
}

void TestBatchKeys::mirroredRecipesMoveTheirWay()
{
    const BatchFixture batch;
    batch.document().addRules({textRule(u"b"_s), textRule(u"a"_s)}, 0);
    batch.window->setLayoutDirection(Qt::RightToLeft);
    batch.recipe().focusRecipe(); // at the first one, which is at the right
    batch.key(Qt::Key_Home);
    QVERIFY(batch.settle());
    QVERIFY(!batch.command(u"Move Right"_s).isEnabled());
    batch.command(u"Move Left"_s).trigger();
    QCOMPARE(batch.document().ruleArray().back()->name(), u"b"_s);
    QVERIFY(batch.settle());
    QVERIFY(!batch.command(u"Move Left"_s).isEnabled());
    batch.command(u"Move Right"_s).trigger();
    QCOMPARE(batch.document().ruleArray().front()->name(), u"b"_s);
}

/// What was looked for in files that have gone is not looked for in the next ones.
void TestBatchKeys::emptiedBatchesBeginAnew()
{
    const BatchFixture batch({u"a.txt"_s, u"b.txt"_s});
    batch.key(Qt::Key_F, Qt::ControlModifier);
    batch.type(u"b"_s);
    batch.key(Qt::Key_Return);
    batch.files().selectAllFiles();
    batch.key(Qt::Key_Delete);
    QCOMPARE(batch.document().sourceObjectArray().size(), 0U);
    QCOMPARE(batch.files().searchField()->text(), QString());
    QCOMPARE(QApplication::focusWidget(), WindowTools::button(*batch.window, u"Add Files..."_s));
}

/// Who has moved on to a button or a list of problems does not look at what is selected behind it.
void TestBatchKeys::deleteMeansWhatHasTheKeyboard()
{
    const BatchFixture batch({u"a.txt"_s, u"b.txt"_s});
    batch.document().addRules({textRule(u"same"_s), textRule(u"name"_s)}, 0);
    QVERIFY(batch.settle());
    batch.command(u"Metadata Inspector"_s).trigger();
    batch.files().selectAllFiles();
    const auto isElsewhere = [&] {
        const QWidget *const focus = QApplication::focusWidget();
        return focus != &batch.files().table() && !batch.recipe().tiles().isAncestorOf(focus);
    };
    batch.files().focusTable();
    for (int i = 0; i < 12; ++i) { // all the way round
        batch.key(Qt::Key_Tab);
        QTest::qWait(1); // the command follows with the next turn of the event loop
        if (isElsewhere())
            batch.key(Qt::Key_Delete);
    }
    batch.files().showProblems(1);
    batch.key(Qt::Key_Delete);
    batch.key(Qt::Key_Escape);
    QCOMPARE(batch.document().sourceObjectArray().size(), 2U);
    QCOMPARE(batch.rules().size(), 2);
    batch.files().focusTable();
    QVERIFY(batch.settle());
    batch.command(u"Copy"_s).trigger();
    QCOMPARE(QApplication::clipboard()->text(), u"a.txt\nb.txt"_s);
    batch.command(u"Remove from List"_s).trigger();
    QCOMPARE(batch.document().sourceObjectArray().size(), 0U);
    batch.recipe().selectAllRules();
    QVERIFY(batch.settle());
    batch.command(u"Delete from Recipe"_s).trigger();
    QCOMPARE(batch.rules().size(), 0);
}

/// In a text field the keys of the menus belong to the text.
void TestBatchKeys::textFieldsKeepTheirKeys()
{
    const BatchFixture batch({u"a.txt"_s});
    batch.files().selectAllFiles();
    batch.key(Qt::Key_1, Qt::ControlModifier);
    auto *field = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QVERIFY(field != nullptr);
    field->setText(u"abc"_s);
    field->setCursorPosition(0);
    batch.key(Qt::Key_Delete);
    QCOMPARE(field->text(), u"bc"_s);
    QVERIFY(batch.settle());
    batch.command(u"Delete"_s).trigger();
    QCOMPARE(field->text(), u"c"_s);
    batch.command(u"Select All"_s).trigger();
    batch.command(u"Cut"_s).trigger();
    QCOMPARE(QApplication::clipboard()->text(), u"c"_s);
    QCOMPARE(batch.document().sourceObjectArray().size(), 1U);
    QCOMPARE(batch.rules(), QStringList(u"Text"_s));
}

void TestBatchKeys::escapeEndsWork()
{
    QStringList names;
    for (int i = 0; i < 5000; ++i)
        names += u"f%1.txt"_s.arg(i);
    const BatchFixture batch(names);
    batch.document().addRules({makeRule(u"Original"_s), makeRule(u"Counter"_s)}, 0);
    QVERIFY(batch.settle());
    batch.key(Qt::Key_E, Qt::ControlModifier);
    batch.document().testRun();
    batch.key(Qt::Key_Escape);
    QVERIFY(batch.popover() == nullptr); // which was nearer
    QVERIFY(batch.document().hasWorkToCancel());
    batch.key(Qt::Key_Escape);
    QVERIFY(!batch.document().hasWorkToCancel());
    QVERIFY(batch.settle());
    QVERIFY(batch.popover() == nullptr); // no list of problems follows
}

QTEST_MAIN(TestBatchKeys)
#include "tst_batchkeys.moc"
