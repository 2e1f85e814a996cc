// SPDX-License-Identifier: GPL-3.0-or-later
#include "extensions/TExtensionHandler.h"
#include "platform/TreeCoder.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

namespace {

TFileObject fileNamed(const QString &name)
{
    return TFileObject(TFileItem{TFileURL::fileURLWithPath(u"/tmp/"_s + name), {}});
}

QString extensionOf(TExtensionHandler &handler, const QString &name)
{
    TFileObject file = fileNamed(name);
    TRuleDict dict;
    TErrorLog log;
    const QString extension = handler.processWithFileObject(file, &log, dict);
    return log.isEmpty() && !dict.tookTooLong ? extension : u"unexpected problem"_s;
}

QVariantList rows(std::initializer_list<std::pair<QString, QString>> pairs)
{
    QVariantList list;
    for (const auto &[original, target] : pairs)
        list.append(QVariantMap{{u"original"_s, original}, {u"target"_s, target}});
    return list;
}

/// A handler with the properties, and with the four settings that are no properties.
void configure(TExtensionHandler &handler, const QVariantMap &settings)
{
    handler.setProperties(settings);
    if (settings.contains(u"ignoreCase"_s))
        handler.setIgnoreCase(settings[u"ignoreCase"_s].toLongLong());
    if (settings.contains(u"regEx"_s))
        handler.setRegEx(settings[u"regEx"_s].toString());
    if (settings.contains(u"regAccess"_s))
        handler.setRegAccess(settings[u"regAccess"_s].toLongLong());
    if (settings.contains(u"rePattern"_s))
        handler.setRePattern(settings[u"rePattern"_s].toString());
}

void archiveRoundTrip(const TExtensionHandler &from, TExtensionHandler &to)
{
    TreeArchive archive;
    archive.appendObject(TExtensionHandler::archiveClass(),
                         [&](TEncoder &coder) { from.encodeWithCoder(coder); });
    archive.forEachObject([&](const TDecoder &coder) { to.initWithCoder(coder); });
}

} // namespace

class ExtensionHandlerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesExtensions_data()
    {
        Table<QVariantMap, QString, QString>("settings", "name", "expected");

        const auto row = [](const char *title, const QVariantMap &settings, const QString &name,
                            const QString &expected) {
            QTest::newRow(title) << settings << name << expected;
        };
        const auto method = [](int number, QVariantMap others = {}) {
            others.insert(u"handlingMethod"_s, number);
            return others;
        };
        const auto pattern = [&](const QString &regEx, const QString &rePattern, int access) {
            return method(
                4, {{u"regEx"_s, regEx}, {u"rePattern"_s, rePattern}, {u"regAccess"_s, access}});
        };
        row("unchanged", {}, u"a.JpG"_s, u"JpG"_s);
        row("upper", {{u"caseHandling"_s, 1}}, u"a.jpß"_s, u"JPSS"_s);
        row("lower", {{u"caseHandling"_s, 2}}, u"a.JPG"_s, u"jpg"_s);
        row("case counts for method 0 only", method(1, {{u"caseHandling"_s, 1}}), u"a.jpg"_s,
            u"???"_s);

        row("replace", method(1, {{u"replacer"_s, u"txt"_s}}), u"a.jpg"_s, u"txt"_s);
        row("unknown method", method(5), u"a.JPG"_s, u"JPG"_s);

        row("map", method(2), u"a.htm"_s, u"html"_s);
        row("map ignoring case", method(2), u"a.HTM"_s, u"html"_s);
        row("map the rest to the replacer", method(2, {{u"mapRemainderChoice"_s, 1}}), u"a.jpg"_s,
            u"???"_s);
        row("earlier row ignoring case wins",
            method(2, {{u"mapArray"_s, rows({{u"JPG"_s, u"first"_s}, {u"jpg"_s, u"second"_s}})}}),
            u"a.jpg"_s, u"first"_s);
        row("upper-case forms count", method(2, {{u"mapArray"_s, rows({{u"ß"_s, u"hit"_s}})}}),
            u"a.ss"_s, u"hit"_s);
        row("row without original", method(2, {{u"mapArray"_s, rows({{u""_s, u"bin"_s}})}}),
            u"noextension"_s, u"bin"_s);

        row("pattern by default", method(4), u"a.tar gz"_s, u"tar_gz"_s);
        row("pattern on the whole name", pattern(u"^.*\\."_s, u""_s, 0), u"photo.jpeg"_s,
            u"jpeg"_s);
        row("whole name without extension", pattern(u"(.+)"_s, u"<$1>"_s, 0), u"name"_s,
            u"<name.>"_s);
    }

    void givesExtensions()
    {
        QFETCH(QVariantMap, settings);
        QFETCH(QString, name);
        QFETCH(QString, expected);
        TExtensionHandler handler;
        configure(handler, settings);
        QCOMPARE(extensionOf(handler, name), expected);
    }

    void reportsAPatternThatTakesTooLong()
    {
        TExtensionHandler handler;
        handler.setHandlingMethod(TExtensionHandler::kRegEx);
        handler.setRegAccess(TExtensionHandler::kNameWithoutExtension);
        handler.setRegEx(u"(a+)+b"_s);
        TFileObject file = fileNamed(QString(100, u'a'));
        TErrorLog log;
        TRuleDict dict;
        QCOMPARE(handler.processWithFileObject(file, &log, dict), u""_s);
        QVERIFY(dict.tookTooLong);
        QCOMPARE(log.count(), 1);
        QCOMPARE(log.entries().front(),
                 (TErrorTypes{TErrorTypes::kCritical,
                              u"The regular expression takes too long for this name."_s}));
        QCOMPARE(file.errLog(), log);
        QCOMPARE(extensionOf(handler, u"aab-"_s), u"_-"_s);
    }

    void recompilesAChangedPattern()
    {
        TExtensionHandler handler;
        QCOMPARE(handler.handleRegExFor(u"a b"_s), u"a_b"_s);
        handler.setRegEx(u"a"_s);
        QCOMPARE(handler.handleRegExFor(u"a b"_s), u"_ b"_s);
        handler.setRePattern(u"$0$0"_s);
        QCOMPARE(handler.handleRegExFor(u"a b"_s), u"aa b"_s);
    }

    void namesItsMethod()
    {
        TExtensionHandler handler;
        const QStringList names{u"Err"_s,   u"(Unchanged)"_s, u"Replace"_s, u"Map"_s,
                                u"Strip"_s, u"RegEx"_s,       u"Err"_s};
        for (qsizetype i = 0; i < names.size(); ++i) {
            handler.setHandlingMethod(i - 1);
            QCOMPARE(handler.name(), names[i]);
        }
    }

    void editsTheTable()
    {
        const TExtensionMap htm{u"htm"_s, u"html"_s};
        const TExtensionMap jpeg{u"jpeg"_s, u"jpg"_s};
        const TExtensionMap tif{u"tif"_s, u"tiff"_s};
        TExtensionHandler handler;
        handler.insertObjectInMapArrayAtIndex(jpeg, 0);
        handler.insertObjectInMapArrayAtIndex(tif, 99);
        QCOMPARE(handler.mapArray(), (std::vector{jpeg, htm, tif}));
        handler.removeObjectFromMapArrayAtIndex(1);
        handler.removeObjectFromMapArrayAtIndex(2);
        handler.removeObjectFromMapArrayAtIndex(-1);
        QCOMPARE(handler.mapArray(), (std::vector{jpeg, tif}));
    }

    void persistsFiveSettings_data()
    {
        const Table<bool> row("throughArchive");
        row("copy", false);
        row("archive", true);
    }

    void persistsFiveSettings()
    {
        QFETCH(bool, throughArchive);
        TExtensionHandler handler;
        configure(handler, {{u"handlingMethod"_s, 4},
                            {u"mapArray"_s, rows({{u"a"_s, u"b"_s}, {u""_s, u"c"_s}})},
                            {u"replacer"_s, u"r"_s},
                            {u"caseHandling"_s, 2},
                            {u"mapRemainderChoice"_s, 1},
                            {u"ignoreCase"_s, 0},
                            {u"regEx"_s, u"a"_s},
                            {u"regAccess"_s, 0},
                            {u"rePattern"_s, u"b"_s}});
        auto other = handler.copy();
        if (throughArchive) {
            other = std::make_unique<TExtensionHandler>();
            archiveRoundTrip(handler, *other);
        }
        QCOMPARE(other->mapArray(), handler.mapArray());
        QCOMPARE(other->mapArray().size(), 2);
        QCOMPARE(other->handlingMethod(), 4);
        QCOMPARE(other->replacer(), u"r"_s);
        QCOMPARE(other->caseHandling(), 2);
        QCOMPARE(other->mapRemainderChoice(), 1);
        QCOMPARE(other->ignoreCase(), 1);
        QCOMPARE(other->regEx(), u"\\s"_s);
        QCOMPARE(other->regAccess(), 2);
        QCOMPARE(other->rePattern(), u"_"_s);
    }

    void aRunGetsAllSettings()
    {
        TExtensionHandler handler;
        configure(handler, {{u"handlingMethod"_s, 4},
                            {u"ignoreCase"_s, 0},
                            {u"regEx"_s, u"o"_s},
                            {u"regAccess"_s, 1},
                            {u"rePattern"_s, u"0"_s}});
        const auto run = handler.copyForRun();
        QCOMPARE(run->ignoreCase(), 0);
        QCOMPARE(extensionOf(*run, u"photo.jpg"_s), u"ph0t0"_s);
        handler.setRegEx(u"x"_s);
        QCOMPARE(extensionOf(*run, u"photo.jpg"_s), u"ph0t0"_s);
    }

    void missingKeysKeepTheDefaults()
    {
        TExtensionHandler handler;
        TreeArchive archive;
        archive.appendObject(TExtensionHandler::archiveClass(), [](TEncoder &coder) {
            coder.encodeDictionary("extensionProperties"_L1, [](TEncoder &dictionary) {
                dictionary.encodeInteger("handlingMethod"_L1, 2);
            });
        });
        archive.forEachObject([&](const TDecoder &coder) { handler.initWithCoder(coder); });
        QCOMPARE(handler.handlingMethod(), 2);
        QCOMPARE(handler.replacer(), u"???"_s);
        QCOMPARE(extensionOf(handler, u"a.htm"_s), u"html"_s);
        handler.setProperties({{u"caseHandling"_s, 1}});
        QCOMPARE(handler.handlingMethod(), 2);
        QCOMPARE(handler.mapArray().size(), 1);
    }
};

QTEST_GUILESS_MAIN(ExtensionHandlerTest)
#include "tst_extensionhandler.moc"
