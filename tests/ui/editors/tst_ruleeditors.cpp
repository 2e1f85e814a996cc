// SPDX-License-Identifier: GPL-3.0-or-later
#include "EditorStage.h"
#include "metadata/TCSVRule.h"
#include "rules/TCountRule.h"
#include "rules/TRegExRule.h"

#include <QHeaderView>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace {

const QVariantMap kPair{{u"match"_s, u"o"_s}, {u"replace"_s, u"0"_s}};
const QVariantMap kPairs{{u"regArray"_s, QVariantList{kPair}}};

/// A batch of three rules over a few files, and the popover with the editor of the last one.
struct Stage : EditorStage
{
    TRulePtr rule;

    Stage(const QString &kind, const QVariantMap &settings, int files = 0)
        : rule(makeRule(kind, settings))
    {
        if (files > 0)
            drop(makeFiles(u"photo%1.jpg"_s, files));
        useRules({textRule(u"Rome "_s), makeRule(u"Counter"_s, {{u"individualFileTypes"_s, true}}),
                  rule});
        open();
    }
    void open() { QVERIFY(show(rule)); }
    QVariantMap settings() const { return rule->properties(); }
};

QStringList texts(const TRegExRule &rule)
{
    QStringList texts;
    for (const auto &pair : *rule.regArray())
        texts += pair->match + u'>' + pair->replace;
    return texts;
}

} // namespace

class RuleEditorsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesOneSettingInOneStep_data()
    {
        Table<QString, QVariantMap, QString, QString, QString, QVariant> table(
            "kind", "settings", "control", "input", "key", "expected");
        const QVariantMap none;
        const auto of = [](QLatin1StringView key, const QVariant &value) {
            return QVariantMap{{key, value}};
        };
        const auto name = u"Original"_s;
        table("text", u"Text"_s, none, u"Text"_s, u"a: b "_s, u"theText"_s, u"a: b "_s);
        table("separator", u"Separator"_s, none, u"Closing brace"_s, u""_s, u"separatorIndex"_s, 9);
        const auto counter = u"Counter"_s;
        table("start", counter, none, u"Start at"_s, u"-9223372036854775808"_s, u"startValue"_s,
              std::numeric_limits<qint64>::min());
        table("step", counter, none, u"Step"_s, u"10"_s, u"increment"_s, 10);
        table("numerals", counter, none, u"Format"_s, u"2"_s, u"counterFormat"_s, 2);
        table("fixed width", counter, none, u"Width"_s, u"1"_s, u"manualPadding"_s, 1);
        table("width", counter, of("manualPadding"_L1, 1), u"Number of characters"_s, u"7"_s,
              u"padding"_s, 7);
        table("fill with x", counter, none, u"Character to fill up with"_s, u"5"_s,
              u"paddingChar"_s, 5);
        table("per extension", counter, none, u"Count each extension on its own"_s, u""_s,
              u"individualFileTypes"_s, true);
        table("total", counter, none, u"Give every file the number of files instead"_s, u""_s,
              u"counterType"_s, 1);
        const auto date = u"Date"_s;
        table("format", date, none, u"Shown as"_s, u"15"_s, u"dateFormat"_s, 15);
        table("twelve hours", date, of("dateFormat"_L1, 11), u"Hours"_s, u"1"_s, u"timeFormat"_s,
              0);
        table("fill", date, none, u"Width to fill up to"_s, u"4"_s, u"padding"_s, 4);
        table("side", date, of("padding"_L1, 2), u"Side to fill up"_s, u"1"_s, u"paddingPosition"_s,
              1);
        table("limit", date, none, u"Not more than"_s, u""_s, u"limitSize"_s, 1);
        table("longest", date, of("limitSize"_L1, 1), u"Most characters"_s, u"3"_s, u"maxSize"_s,
              3);
        table("source", name, none, u"Take"_s, u"4"_s, u"whichProperty"_s, 4);
        table("folders up", name, of("whichProperty"_L1, 1), u"Folders up"_s, u"3"_s,
              u"parentLevel"_s, 2);
        table("unit", name, of("whichProperty"_L1, 2), u"Unit"_s, u"5"_s, u"sizeFormat"_s, 5);
        table("no unit", name, of("whichProperty"_L1, 2), u"Unit after the number"_s, u""_s,
              u"showSizeUnit"_s, false);
        table("no blank", name, of("whichProperty"_L1, 2), u"Blank before the unit"_s, u""_s,
              u"separateUnit"_s, false);
        table("creation", name, of("whichProperty"_L1, 3), u"Date of"_s, u"0"_s, u"whichDate"_s, 0);
        table("drop front", name, none, u"Characters to leave out in front"_s, u"2"_s,
              u"dropFromBeginning"_s, 2);
        table("drop end", name, none, u"Characters to leave out at the end"_s, u"3"_s,
              u"dropFromEnd"_s, 3);
        table("needle", name, none, u"Look for"_s, u"img"_s, u"stringToLookFor"_s, u"img"_s);
        table("replacement", name, of("stringToLookFor"_L1, u"a"_s), u"Replace by"_s, u"b"_s,
              u"stringToReplace"_s, u"b"_s);
        table("exact case", name, of("stringToLookFor"_L1, u"a"_s), u"any case"_s, u""_s,
              u"caseSensitiveSearch"_s, 0);
        table("strip", name, none, u"Remove all of"_s, u"aeiou"_s, u"charsToStrip"_s, u"aeiou"_s);
        table("blanks", name, none, u"Blanks"_s, u"2"_s, u"blankHandling"_s, 2);
        table("letters", name, none, u"Letters"_s, u"1"_s, u"caseConversion"_s, 1);
        table("reads name so far", u"RegExTag"_s, kPairs, u"Read"_s, u"1"_s, u"source"_s, 1);
        table("rewrites", u"RegExTag"_s, of("source"_L1, 1),
              u"Put the result in place of the whole name so far"_s, u""_s, u"replaceAll"_s, 1);
        for (const char *const kind : {"ImageTag", "VideoTag"})
            table(kind, QString::fromLatin1(kind), none, u"Without a value"_s, u"none"_s,
                  u"defaultString"_s, u"none"_s);
        const auto csv = u"CSVTag"_s;
        table("column", csv, none, u"Column"_s, u"3"_s, u"useColumn"_s, 2);
        table("no cell", csv, none, u"Without a cell"_s, u"none"_s, u"defaultText"_s, u"none"_s);
        table("header", csv, none, u"The first row is a header"_s, u""_s, u"skipFirst"_s, true);
        table("no wrapping", csv, none, u"Start again at the top after the last row"_s, u""_s,
              u"wrap"_s, false);
        table("quotation marks", csv, none, u"Take quotation marks off"_s, u""_s, u"trimQuotes"_s,
              false);
        const auto method = [](int number) {
            return QVariantMap{{u"handlingMethod"_s, number}, {u"mapRemainderChoice"_s, 1}};
        };
        const auto add = [&](const QVariantMap &settings, const QString &control,
                             const QString &input, const QString &key, const QVariant &value) {
            table(qPrintable(key + settings.value(u"handlingMethod"_s).toString()), QString(),
                  settings, control, input, key, value);
        };
        add(method(0), u"Method"_s, u"2"_s, u"handlingMethod"_s, 2);
        add(method(9), u"Method"_s, u"0"_s, u"handlingMethod"_s, 0);
        add(method(0), u"Letters"_s, u"2"_s, u"caseHandling"_s, 2);
        add(method(1), u"New extension"_s, u"jpeg"_s, u"replacer"_s, u"jpeg"_s);
        add(method(2), u"Ignore upper and lower case"_s, u""_s, u"ignoreCase"_s, 0);
        add(method(2), u"Others"_s, u"0"_s, u"mapRemainderChoice"_s, 0);
        add(method(2), u"What other extensions become"_s, u"txt"_s, u"replacer"_s, u"txt"_s);
        add(method(4), u"Find"_s, u"[A-Z]"_s, u"regEx"_s, u"[A-Z]"_s);
        add(method(4), u"Replace by"_s, u"$0"_s, u"rePattern"_s, u"$0"_s);
        add(method(4), u"Works on"_s, u"1"_s, u"regAccess"_s, 1);
    }
    void changesOneSettingInOneStep()
    {
        QFETCH(QString, kind);
        QFETCH(QVariantMap, settings);
        QFETCH(QString, control);
        QFETCH(QString, input);
        QFETCH(QString, key);
        QFETCH(QVariant, expected);
        EditorStage stage;
        const TRulePtr rule = kind.isEmpty() ? nullptr : makeRule(kind, settings);
        if (!rule)
            stage.document->theExtensionHandler().setProperties(settings);
        QVERIFY(!rule || stage.useRules({rule}));
        const QVariantMap before = stage.settings(rule);
        QVERIFY(stage.show(rule));
        QCOMPARE(stage.settings(rule), before); // opening changes nothing, odd values included
        QUndoStack &undoStack = stage.document->undoStack();
        const int steps = undoStack.count();
        QVERIFY2(stage.use(control, input), qPrintable(control));
        QVariantMap after = before;
        after[key] = expected;
        after.remove(u"name"_s);
        QVariantMap now = stage.settings(rule);
        now.remove(u"name"_s);
        if (kind == "Separator"_L1)
            after[u"theText"_s] = u"}"_s;
        QCOMPARE(now, after);

        stage.close();
        QCOMPARE(undoStack.count(), steps + 1);
        undoStack.undo();
        QCOMPARE(stage.settings(rule), before);
        // Opened again it shows the former value, and closing it unchanged is no step.
        QVERIFY(stage.show(rule));
        stage.close();
        QCOMPARE(stage.settings(rule), before);
        QVERIFY(undoStack.canRedo());
    }

    void showsWhatApplies_data()
    {
        Table<QString, QVariantMap, QStringList, QStringList> table("kind", "settings", "usable",
                                                                    "unusable");
        const auto property = [](int which) { return QVariantMap{{u"whichProperty"_s, which}}; };
        table("automatic width", u"Counter"_s, QVariantMap(), {u"Step"_s},
              {u"Number of characters"_s});
        table("total", u"Counter"_s, QVariantMap{{u"counterType"_s, 1}}, {u"Format"_s, u"Width"_s},
              {u"Start at"_s, u"Step"_s, u"Count each extension on its own"_s});
        table("no hour", u"Date"_s, QVariantMap(), {u"Width to fill up to"_s},
              {u"Hours"_s, u"Side to fill up"_s, u"Most characters"_s});
        table("name", u"Original"_s, property(0), {u"Look for"_s, u"Letters"_s, u"Not more than"_s},
              {u"Replace by"_s, u"any case"_s, u"Folders up"_s, u"Unit"_s, u"Date of"_s});
        table("folder", u"Original"_s, property(1), {u"Folders up"_s, u"Remove all of"_s},
              {u"Look for"_s, u"Replace by"_s, u"Unit"_s});
        table("size", u"Original"_s, property(2), {u"Unit"_s, u"Width to fill up to"_s},
              {u"Not more than"_s, u"Side to fill up"_s, u"Letters"_s, u"Folders up"_s});
        table("date", u"Original"_s, property(3), {u"Date of"_s, u"Shown as"_s, u"Not more than"_s},
              {u"Hours"_s, u"Letters"_s, u"Look for"_s, u"Unit"_s});
        table("unknown source", u"Original"_s, property(9), {u"Take"_s},
              {u"Letters"_s, u"Unit"_s, u"Not more than"_s});
        table("file's name", u"RegExTag"_s, kPairs, {u"Read"_s, u"Pattern 1"_s},
              {u"Put the result in place of the whole name so far"_s, u"Move pair up"_s});
    }
    void showsWhatApplies()
    {
        QFETCH(QString, kind);
        QFETCH(QVariantMap, settings);
        const Stage stage(kind, settings);
        const auto isUsable = [&stage](const QString &name) {
            const QWidget *control = stage.control(name);
            return control != nullptr && control->isEnabled();
        };
        QFETCH(QStringList, usable);
        for (const QString &name : usable)
            QVERIFY2(isUsable(name), qPrintable(name));
        QFETCH(QStringList, unusable);
        for (const QString &name : unusable)
            QVERIFY2(!isUsable(name), qPrintable(name));
    }

    void showsExamples_data()
    {
        Table<QString, QVariantMap, int, QString> table("kind", "settings", "files", "expected");
        const auto with = [](QLatin1StringView key, const QVariant &value) {
            return QVariantMap{{key, value}};
        };
        const auto counter = u"Counter"_s;
        table("text", u"Text"_s, with("theText"_L1, u"a:\nb"_s), 1, u"a_\\x0Ab");
        table("counter", counter, {}, 12, u"01 02 03 \u2026 12");
        table("few", counter, with("increment"_L1, -1), 4, u"01 00 -1 -2");
        table("per extension", counter, with("individualFileTypes"_L1, true), 2, u".jpg 1 .jpg 2");
        table("total", counter, with("counterType"_L1, 1), 12, u"12");
        table("no files", counter, {}, 0, u"1 2 3 \u2026");
        table("name", u"Original"_s, with("caseConversion"_L1, 1), 2,
              u"photo0000.jpg \u2192 PHOTO0000");
        table("pattern", u"RegExTag"_s, kPairs, 2,
              u"photo0000 \u2192 ph0t00000\nphoto0001 \u2192 ph0t00001");
        QVariantMap rewriting = kPairs;
        rewriting[u"source"_s] = 1;
        table("name so far", u"RegExTag"_s, rewriting, 2,
              u"Rome 1 \u2192 R0me 1\nRome 2 \u2192 R0me 2");
    }
    void showsExamples()
    {
        QFETCH(QString, kind);
        QFETCH(QVariantMap, settings);
        QFETCH(int, files);
        Stage stage(kind, settings, files);
        const auto colors = stage.rule->theColor();
        QTEST(stage.preview(), "expected");
        QCOMPARE(stage.rule->theColor(), colors);
    }

    void leadsTheKeyboardThroughInReadingOrder_data()
    {
        Table<QVariantMap, int> table("settings", "controls");
        table("Text", {}, 1);
        table("Separator", {}, 1); // arrow keys go on from the one that is down
        table("Counter", {{u"manualPadding"_s, 1}}, 8);
        table("Date", {{u"dateFormat"_s, 11}}, 7);
        table("Original", {}, 14);
        table("RegExTag", {{u"regArray"_s, QVariantList{kPair, kPair}}}, 12);
        table("ImageTag", {}, 10);
        table("AudioTag", {}, 9);
        table("CSVTag", {}, 7);
        table("map", {{u"handlingMethod"_s, 2}}, 9);
        table("pattern", {{u"handlingMethod"_s, 4}}, 4);
    }
    void leadsTheKeyboardThroughInReadingOrder()
    {
        constexpr int kSameLine = 8;
        QFETCH(QVariantMap, settings);
        EditorStage stage;
        const QString kind = QString::fromLatin1(QTest::currentDataTag());
        const bool isRule = TRuleKinds::identifiers().contains(kind);
        if (!isRule)
            stage.document->theExtensionHandler().setProperties(settings);
        const TRulePtr rule = isRule ? makeRule(kind, settings) : nullptr;
        if (kind == "CSVTag"_L1)
            static_cast<TCSVRule &>(*rule).setTheRows(
                std::make_shared<TStringTable>(TStringTable{{u"a"_s}}));
        QWidget *editor = stage.edit(rule);
        QPoint last(-1, -1);
        int controls = 0;
        for (QWidget *next = editor->nextInFocusChain(); editor->isAncestorOf(next);
             next = next->nextInFocusChain()) {
            if ((next->focusPolicy() & Qt::TabFocus) == 0 || !next->isVisible() ||
                next->focusProxy() != nullptr || qobject_cast<QScrollBar *>(next) != nullptr ||
                qobject_cast<QHeaderView *>(next) != nullptr)
                continue;
            const QPoint place = next->mapTo(editor, QPoint(0, next->height() / 2));
            const QString name = EditorStage::nameOf(next);
            QVERIFY2(place.y() > last.y() + kSameLine ||
                         (place.y() > last.y() - kSameLine && place.x() > last.x()),
                     qPrintable(name));
            QVERIFY(!name.isEmpty());
            last = place;
            ++controls;
        }
        QTEST(controls, "controls");
    }

    void keepsValuesThatItDoesNotOffer()
    {
        Stage stage(u"Counter"_s, {{u"counterFormat"_s, 7}, {u"paddingChar"_s, 9}});
        QCOMPARE(stage.control<QComboBox>(u"Format"_s)->placeholderText(), u"7"_s);
        QCOMPARE(stage.control<QComboBox>(u"Character to fill up with"_s)->currentText(), u"x"_s);
        QVERIFY(stage.use(u"Step"_s, u"2"_s));
        QCOMPARE(stage.settings().value(u"counterFormat"_s), 7);
        QCOMPARE(stage.settings().value(u"paddingChar"_s), 9);
    }

    void choosesSeparatorsWithArrowKeys()
    {
        Stage stage(u"Separator"_s, {});
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Left, Qt::Key_Down})
            QTest::keyClick(QApplication::focusWidget(), key);
        QCOMPARE(stage.rule->name(), u"!"_s);
        QVERIFY(stage.control<QPushButton>(u"Exclamation mark"_s)->isChecked());
    }

    void followsUndoWhileOpen()
    {
        Stage stage(u"Counter"_s, {});
        QVERIFY(stage.use(u"Start at"_s, u"5"_s));
        stage.close();
        stage.open();
        QVERIFY(stage.use(u"Format"_s, u"1"_s));
        // The key press undoes what was done since the editor was opened, then what was before.
        auto *format = stage.control<QComboBox>(u"Format"_s);
        auto *total = stage.control(u"Give every file the number of files instead"_s);
        QTest::keySequence(total, QKeySequence::Undo);
        QCOMPARE(format->currentIndex(), 0);
        QTest::keySequence(total, QKeySequence::Undo);
        QCOMPARE(stage.control<QLineEdit>(u"Start at"_s)->text(), u"1"_s);
        // The same from outside, with a change pending.
        QTest::keySequence(total, QKeySequence::Redo);
        QCOMPARE(stage.control<QLineEdit>(u"Start at"_s)->text(), u"5"_s);
        stage.document->undoStack().undo();
        QCOMPARE(stage.control<QLineEdit>(u"Start at"_s)->text(), u"1"_s);
        stage.close();
        QVERIFY2(stage.document->undoStack().canRedo(), "closing made a step of what was undone");
    }

    void takesNumbersOnlyOnceTheyAreOnes()
    {
        Stage stage(u"Counter"_s, {{u"startValue"_s, 8}, {u"manualPadding"_s, 1}});
        QVERIFY(stage.use(u"Number of characters"_s, u"9999"_s));
        QCOMPARE(stage.settings().value(u"padding"_s), 255);
        auto *start = stage.control<NumberField>(u"Start at"_s);
        start->setFocus();
        start->selectAll();
        QTest::keyClicks(start, u"x-"_s);
        QCOMPARE(stage.settings().value(u"startValue"_s), 8);
        stage.control(u"Step"_s)->setFocus();
        QCOMPARE(start->text(), u"8"_s);
        QTest::keyClick(start, Qt::Key_Up);
        QTest::keyClick(start, Qt::Key_PageDown);
        QCOMPARE(stage.settings().value(u"startValue"_s), -1);
    }

    void editsPairsAsNewLists()
    {
        Stage stage(u"RegExTag"_s, kPairs);
        const auto &rule = static_cast<const TRegExRule &>(*stage.rule);
        const TRegExPairsPtr original = rule.regArray();
        QVERIFY(stage.use(u"Pattern 1"_s, u"[ae]"_s));
        QVERIFY(stage.use(u"Add Pair"_s, {}));
        QTest::keyClicks(QApplication::focusWidget(),
                         u"x"_s); // over the pattern that it starts with
        QCOMPARE(texts(rule), QStringList({u"[ae]>0"_s, u"x>replace with this"_s}));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(texts(rule), QStringList({u"x>replace with this"_s, u"[ae]>0"_s}));
        QVERIFY(stage.use(u"Remove pair 1"_s, {}));
        QCOMPARE(texts(rule), QStringList(u"[ae]>0"_s));
        QCOMPARE(original->front()->match, u"o"_s);
        stage.close();
        stage.document->undoStack().undo();
        QCOMPARE(rule.regArray(), original);
        QCOMPARE(texts(rule), QStringList(u"o>0"_s));
    }

    void saysWhyAPatternIsWrong()
    {
        Stage stage(u"RegExTag"_s, kPairs, 1);
        const auto problems = [&stage] {
            QStringList found;
            for (const auto *label : stage.popover->findChildren<EditorLabel *>())
                if (label->isVisible() && label->text().contains(u"At character"_s))
                    found += label->text();
            return found;
        };
        const int height = stage.popover->height();
        QVERIFY(stage.use(u"Pattern 1"_s, u"p(h"_s));
        QCOMPARE(problems(), {u"A parenthesis in the pattern has no partner. (At character 3.)"_s});
        QTRY_VERIFY(stage.popover->height() > height);
        QTest::keyClicks(stage.control(u"Pattern 1"_s), u")"_s);
        QCOMPARE(problems(), QStringList());
        QCOMPARE(stage.preview(), u"photo0000 \u2192 0oto0000"_s);
        QTRY_COMPARE(stage.popover->height(), height);
    }

    void writesSnippetsAtTheCursor()
    {
        Stage stage(u"RegExTag"_s, kPairs);
        QVERIFY(stage.use(u"Pattern 1"_s, u"img"_s));
        QVERIFY(stage.use(u"Help"_s, {}));
        QVERIFY(stage.use(u"a group to reuse"_s, {}));
        QTest::keyClicks(QApplication::focusWidget(), u".+"_s);
        QVERIFY(stage.use(u"replacement: group 1"_s, {}));
        QCOMPARE(texts(static_cast<const TRegExRule &>(*stage.rule)), {u"img(.+)>0$1"_s});
    }

    void staysQuickWithPatternsThatExplode()
    {
        Stage stage(
            u"RegExTag"_s,
            {{u"regArray"_s, QVariantList{QVariantMap{{u"match"_s, u"(((((((.+)+)+)+)+)+)+)+x"_s},
                                                      {u"replace"_s, u""_s}}}}},
            1);
        QVERIFY2(stage.preview().contains(u"takes long"_s), qPrintable(stage.preview()));
    }
};

QTEST_MAIN(RuleEditorsTest)
#include "tst_ruleeditors.moc"
