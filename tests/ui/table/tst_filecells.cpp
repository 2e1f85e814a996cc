// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Table.h"
#include "ui/table/FileCells.h"
#include "ui/table/NameLine.h"
#include "ui/table/RowRanges.h"

#include <QImage>
#include <QPainter>
#include <QRandomGenerator>

#include <set>

using namespace Qt::StringLiterals;

namespace {

TFileObject entry(const QString &name)
{
    return TFileObject(TFileItem{TFileURL::fileURLWithPath(u"/folder/"_s + name), {}});
}

} // namespace

class TestFileCells : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rangesAreSets();
    void newNames_data();
    void newNames();
    void linesFitTheirRoom_data();
    void linesFitTheirRoom();
};

/// Every operation does what it does to a plain set of numbers.
void TestFileCells::rangesAreSets()
{
    QRandomGenerator random(7);
    using Operation = RowRanges::Operation;
    const auto some = [&random] {
        std::set<qsizetype> rows;
        for (int i = random.bounded(12); i > 0; --i)
            rows.insert(random.bounded(20));
        return rows;
    };
    const auto ranges = [](const std::set<qsizetype> &rows) {
        return RowRanges::fromRows({rows.begin(), rows.end()});
    };
    for (int turn = 0; turn < 2000; ++turn) {
        const auto a = some();
        const auto b = some();
        const qsizetype first = random.bounded(20);
        const qsizetype last = first + random.bounded(4);
        std::set<qsizetype> united = a;
        united.insert(b.begin(), b.end());
        std::set<qsizetype> subtracted, toggled, inserted, removed, mirrored;
        std::vector<qsizetype> newRows(20, -1);
        for (const qsizetype row : united) {
            if (a.contains(row) && !b.contains(row))
                subtracted.insert(row);
            if (a.contains(row) != b.contains(row))
                toggled.insert(row);
        }
        for (const qsizetype row : a) {
            inserted.insert(row < first ? row : row + 3);
            if (row < first || row > last)
                removed.insert(row < first ? row : row - (last - first + 1));
            if (!b.contains(row))
                mirrored.insert(newRows[static_cast<std::size_t>(row)] = 19 - row);
        }
        const RowRanges rows = ranges(a);
        QCOMPARE(rows.rows(), std::vector(a.begin(), a.end()));
        QCOMPARE(rows.contains(first), a.contains(first));
        QVERIFY(rows.combined(Operation::Unite, ranges(b)) == ranges(united));
        QVERIFY(rows.combined(Operation::Subtract, ranges(b)) == ranges(subtracted));
        QVERIFY(rows.combined(Operation::Toggle, ranges(b)) == ranges(toggled));
        QVERIFY(rows.afterInsertion(first, 3) == ranges(inserted));
        QVERIFY(rows.afterRemoval(first, last) == ranges(removed));
        QVERIFY(rows.mapped(newRows) == ranges(mirrored));
    }
}

void TestFileCells::newNames_data()
{
    const Table<QString, QString, QString, QString, bool, QString, QString> row(
        "name", "target", "extension", "final", "isUnchanged", "note", "seen");
    row("nothing known", u"a.txt", u"b", u"", QString(), false, u"", u"kept .txt");
    row("as shown", u"a.txt", u"b", u"", u"b.txt", false, u"", u"kept .txt");
    row("taken", u"a.txt", u"b", u"", u"b-1.txt", false, u"\u21b3 saved as b-1.txt", u"kept .txt");
    row("unchanged", u"a.txt", u"a", u"", QString(), true, u"", u"kept .txt");
    row("unchanged but numbered", u"a.txt", u"a", u"", u"a-1.txt", true, u"\u21b3 saved as a-1.txt",
        u"kept .txt");
    row("blanks go", u"a.txt", u" a ", u"", u"a.txt", true, u"\u21b3 saved as a.txt", u"kept .txt");
    row("other extension", u"a.txt", u"a", u".md", u"a.md", false, u"", u".md");
    row("same extension", u"a.txt", u"a", u".txt", u"a.txt", true, u"", u".txt");
    row("stripped", u"a.txt", u"a", u".", u"a", false, u"", u"");
    row("stripped of nothing", u"a", u"a", u".", u"a", true, u"", u"");
    row("letter case", u"a.txt", u"a", u"", u"a.TXT", false, u"", u"kept .TXT");
    row("control character", u"a", u"b", u"", u"b\n1", false, u"\u21b3 saved as b\\x0A1", u"");
}

void TestFileCells::newNames()
{
    QFETCH(QString, name);
    QFETCH(QString, target);
    QFETCH(QString, extension);
    QFETCH(QString, final);
    TFileObject file = entry(name);
    file.setTargetName(target);
    file.setAttributedTargetName(TAttributedString(target));
    file.setAttributedTargetExtension(TAttributedString(extension));
    FileCells::Forecast forecast{{final, {}, false}};
    TExtensionHandler handler;
    handler.setCaseHandling(final.endsWith(".TXT"_L1) ? TExtensionHandler::kUpperCase
                                                      : TExtensionHandler::kCaseAsItIs);
    const auto seen = NameGeneration::extensionForPeople(file, handler);
    QTEST(QString((seen.isKept ? u"kept "_s : QString()) + seen.text), "seen");
    QTEST(FileCells::isUnchanged(file, forecast), "isUnchanged");
    QTEST(FileCells::note(file, forecast, seen).text, "note");
    QCOMPARE(FileCells::level(file, forecast), 0);
    forecast = {{u"x"_s, u"It cannot be."_s, false}};
    QVERIFY(FileCells::note(file, forecast, seen).isRefusal);
    QCOMPARE(FileCells::level(file, forecast), TErrorTypes::kWarning);
    QVERIFY(FileCells::newNameInFull(file, forecast, seen).contains(u"It cannot be."_s));
    QVERIFY(FileCells::stateToolTip(file, {}).isEmpty());
    file.setHasBeenProcessed(true);
    QCOMPARE(FileCells::stateText(file, {}), u"Processed"_s);
    QVERIFY(FileCells::stateToolTip(file, {}).contains(u"when files are added"_s));
    QCOMPARE(FileCells::stateText(file, forecast), u"Warning"_s);
}

void TestFileCells::linesFitTheirRoom_data()
{
    const Table<QString, bool> row("text", "isElided");
    row("short", u"a", false);
    row("empty", u"", false);
    row("2,000 letters", QString(2000, u'm'), true);
    row("2,000 narrow letters", QString(2000, u'i'), true);
    row("2,000 marks on one letter", u'e' + QString(2000, QChar(0x301)), false);
    row("from right to left", u"שלום", false);
    row("long, from right to left", QString(u"שלום "_s).repeated(400), true);
    row("both directions", QString(u"abc שלום 12 "_s).repeated(100), true);
    row("surrogates", QString(u"😀"_s).repeated(500), true);
    row("half a surrogate", QString(300, QChar(0xd83d)), true);
}

void TestFileCells::linesFitTheirRoom()
{
    QFETCH(QString, text);
    QFETCH(bool, isElided);
    constexpr int kRoom = 200;
    constexpr int kLeft = 20;
    const QString half = text.left(text.size() / 2);
    NameLine line({{half, Qt::yellow, Qt::black}, {text.mid(half.size()), Qt::cyan, Qt::black}},
                  QFont(), kRoom);
    QCOMPARE(line.isElided(), isElided);
    QVERIFY2(line.width() <= kRoom, qPrintable(QString::number(line.width())));
    QImage image(kRoom + 2 * kLeft, 24, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    line.paint(painter, {kLeft, 0}, 24);
    painter.end();
    QCOMPARE(image.pixelColor(kLeft + kRoom + 4, 12), QColor(Qt::white));
    // Both halves lie on their tiles, unless the second one is cut off.
    const int middle = kLeft + static_cast<int>(line.width() / 2);
    if (!text.isEmpty())
        QVERIFY(image.pixelColor(middle, 4) != QColor(Qt::white));
}

QTEST_MAIN(TestFileCells)

#include "tst_filecells.moc"
