// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TOriginalRule.h"
#include "support/Rules.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

namespace {

constexpr TDate kCreation = TDate::fromSeconds(1'168'212'600);     // 2007-01-07
constexpr TDate kModification = TDate::fromSeconds(1'751'544'309); // 2025-07-03

enum Property : qint64 { FileName, ParentFolder, FileSize, FileDate, Extension };

QString evaluated(const QVariantMap &settings, const QString &path, qint64 size = 0)
{
    TFileFacts facts;
    facts.size = size;
    facts.creation = kCreation;
    facts.modification = kModification;
    TFileObject file(TFileItem{TFileURL::fileURLWithPath(path), facts});
    TErrorLog log;
    TRuleDict dict;
    const QString text = makeRule(u"Original"_s, settings)->processWithFileObject(file, &log, dict);
    return log.isEmpty() && file.errLog().isEmpty() ? text : u"reported a problem"_s;
}

QVariantMap of(Property property, QVariantMap settings = {})
{
    settings.insert(u"whichProperty"_s, static_cast<qint64>(property));
    return settings;
}

} // namespace

class TestOriginalRule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameSteps_data()
    {
        Table<QVariantMap, QString, QString>("settings", "name", "expected");
        const auto row = [](const char *name, const QVariantMap &settings, const QString &fileName,
                            const QString &expected) {
            QTest::newRow(name) << settings << fileName << expected;
        };
        const auto drop = [](qint64 front, qint64 end) {
            return QVariantMap{{u"dropFromBeginning"_s, front}, {u"dropFromEnd"_s, end}};
        };
        const auto replace = [](const QString &from, const QString &to, qint64 ignoreCase) {
            return QVariantMap{{u"stringToLookFor"_s, from},
                               {u"stringToReplace"_s, to},
                               {u"caseSensitiveSearch"_s, ignoreCase}};
        };
        const auto strip = [](const QString &characters) {
            return QVariantMap{{u"charsToStrip"_s, characters}};
        };
        const auto blanks = [](qint64 handling) {
            return QVariantMap{{u"blankHandling"_s, handling}};
        };
        const auto toCase = [](qint64 to) { return QVariantMap{{u"caseConversion"_s, to}}; };

        row("as it is", {}, u"My Photo.jpg"_s, u"My Photo"_s);
        row("colons and backslashes go by default", {}, u"a:b\\c.jpg"_s, u"abc"_s);
        row("strip others", strip(u"aeiou"_s), u"education.jpg"_s, u"dctn"_s);

        row("drop both", drop(2, 2), u"Holiday.jpg"_s, u"lid"_s);

        row("not 0 ignores case", replace(u"img"_s, u"Photo"_s, 1), u"IMG_1.jpg"_s, u"Photo_1"_s);
        row("0 regards case", replace(u"img"_s, u"Photo"_s, 0), u"IMG_1 img.jpg"_s,
            u"IMG_1 Photo"_s);

        row("remove blanks only", blanks(1), u"a b\tc\u00A0d.jpg"_s, u"ab\tc\u00A0d"_s);
        row("insert blanks", blanks(2), u"myHolidayPhoto.jpg"_s, u"my Holiday Photo"_s);
        row("upper case", toCase(1), u"straße.jpg"_s, u"STRASSE"_s);
        row("lower case", toCase(2), u"ÄB.jpg"_s, u"äb"_s);

        // Every step sees what the one before it left.
        QVariantMap all = drop(1, 1);
        all.insert(replace(u"ab"_s, u":B"_s, 1));
        all.insert(blanks(2));
        all.insert(toCase(1));
        all.insert(
            {{u"padding"_s, 8}, {u"paddingChar"_s, 4}, {u"limitSize"_s, 1}, {u"maxSize"_s, 7}});
        row("in order", all, u"xxab cax.jpg"_s, u"__X B C"_s);
        row("replaced text is stripped", replace(u"a"_s, u":x:"_s, 1), u"bab.jpg"_s, u"bxb"_s);
        row("a cut never leaves the name alone", {{u"limitSize"_s, 1}, {u"maxSize"_s, 0}}, u"abc"_s,
            u"a"_s);
    }

    void nameSteps()
    {
        QFETCH(QVariantMap, settings);
        QFETCH(QString, name);
        QTEST(evaluated(settings, u"/batch/"_s + name), "expected");
    }

    void stepsByProperty_data()
    {
        const Table<qint64, QString> row("property", "expected");
        // A file /Abc Abc/Abc Abc.Abc Abc with every step on; see stepsByProperty().
        row("name", FileName, u"Z__");
        row("parent folder, not replaced", ParentFolder, u"CA_");
        row("size, not limited and padded in front", FileSize, u"___7 B");
        row("date, padded and limited only", FileDate, u"202");
        row("extension", Extension, u"Z__");
        row("unknown, untouched", 5, u"Error - end reached");
        row("negative, untouched", -1, u"Error - end reached");
    }

    void stepsByProperty()
    {
        QFETCH(qint64, property);
        const QVariantMap settings{{u"whichProperty"_s, property},
                                   {u"dropFromBeginning"_s, 2},
                                   {u"dropFromEnd"_s, 1},
                                   {u"stringToLookFor"_s, u"c a"_s},
                                   {u"stringToReplace"_s, u"z b"_s},
                                   {u"charsToStrip"_s, u"b"_s},
                                   {u"blankHandling"_s, 1},
                                   {u"caseConversion"_s, 1},
                                   {u"padding"_s, 4},
                                   {u"paddingChar"_s, 4},
                                   {u"paddingPosition"_s, 1},
                                   {u"limitSize"_s, 1},
                                   {u"maxSize"_s, 3},
                                   {u"dateFormat"_s, 4}};
        QTEST(evaluated(settings, u"/Abc Abc/Abc Abc.Abc Abc"_s, 7), "expected");
    }

    void parentFolders_data()
    {
        Table<QString, qint64, QString>("path", "level", "expected");
        const auto row = [](const char *name, const QString &path, qint64 level,
                            const QString &expected) {
            QTest::newRow(name) << path << level << expected;
        };
        const QString path = u"/Users/x/Pictures/a.jpg"_s;
        row("the folder itself", path, 0, u"Pictures"_s);
        row("the top-most", path, 2, u"Users"_s);
        row("above the top", path, 5, u"Users"_s);
        row("in the root", u"/a.jpg"_s, 0, u"a.jpg"_s);
        row("in the root, higher", u"/a.jpg"_s, 4, u"a.jpg"_s);
        row("the root", u"/"_s, 0, u""_s);
        row("a folder with a dot", u"/x/y.app/a"_s, 0, u"y.app"_s);
    }

    void parentFolders()
    {
        QFETCH(QString, path);
        QFETCH(qint64, level);
        QTEST(evaluated(of(ParentFolder, {{u"parentLevel"_s, level}}), path), "expected");
    }

    void dates_data()
    {
        const Table<QVariantMap, QString> row("settings", "expected");
        row("modification by default", QVariantMap{}, u"Jul 3, 2025");
        row("creation", QVariantMap{{u"whichDate"_s, 0}}, u"Jan 7, 2007");
        row("any other is modification", QVariantMap{{u"whichDate"_s, 2}}, u"Jul 3, 2025");
        row("month, padded",
            QVariantMap{{u"dateFormat"_s, 7}, {u"padding"_s, 2}, {u"paddingChar"_s, 0}}, u"07");
        row("short year", QVariantMap{{u"whichDate"_s, 0}, {u"dateFormat"_s, 5}}, u"7");
        row("limited", QVariantMap{{u"dateFormat"_s, 6}, {u"limitSize"_s, 1}, {u"maxSize"_s, 2}},
            u"Ju");
        row("not edited", QVariantMap{{u"dropFromBeginning"_s, 3}, {u"caseConversion"_s, 1}},
            u"Jul 3, 2025");
    }

    void dates()
    {
        QFETCH(QVariantMap, settings);
        QTEST(evaluated(of(FileDate, settings), u"/a/b.jpg"_s), "expected");
    }

    void aFileWithoutLocation()
    {
        const auto file = TFileObject::dummyObjectWithName(u"sample"_s);
        TRuleDict dict;
        TOriginalRule rule;
        QCOMPARE(rule.processWithFileObject(*file, nullptr, dict), u"sample"_s);
        rule.setWhichProperty(ParentFolder);
        QCOMPARE(rule.processWithFileObject(*file, nullptr, dict), u""_s);
        rule.setWhichProperty(FileDate);
        QCOMPARE(rule.processWithFileObject(*file, nullptr, dict), u""_s);
    }

    void tiles_data()
    {
        const Table<qint64, qint64, QString> row("property", "level", "tile");
        row("name", FileName, 0, u"(File Name)");
        row("folder", ParentFolder, 0, u"(Folder 1 up)");
        row("higher folder", ParentFolder, 4, u"(Folder 5 up)");
        row("size", FileSize, 0, u"(File Size)");
        row("date", FileDate, 0, u"(File Date)");
        row("extension", Extension, 0, u"(.EXT)");
        row("unknown", 5, 0, u"");
    }

    void tiles()
    {
        QFETCH(qint64, property);
        QFETCH(qint64, level);
        const TRulePtr rule =
            makeRule(u"Original"_s, {{u"whichProperty"_s, property}, {u"parentLevel"_s, level}});
        QTEST(rule->name(), "tile");
        QTEST(TRuleKinds::copyArrayViaEncode({rule}).front()->name(), "tile");
    }
};

QTEST_GUILESS_MAIN(TestOriginalRule)
#include "tst_originalrule.moc"
