// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/PreferenceStore.h"
#include "settings/Preferences.h"
#include "settings/PrefsWriter.h"
#include "settings/UserDefaults.h"
#include "settings/logging.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kFile{"com.zel.tavrin/preferences.json"};

} // namespace

class TestPreferences : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_tree.emplace();
        qputenv("XDG_CONFIG_HOME", m_tree->path().toUtf8());
        resetSettingsForTests();
        m_lines.clear();
        setLogSink([this](const QString &line) { m_lines << line; });
    }

    void cleanup() { setLogSink({}); }

    void firstStartUsesDefaultsAndWritesNothing()
    {
        thePreferences().runCount = 9;
        initPreferences();
        QCOMPARE(thePreferences(), (TPrefsObject{1, true, 0, false}));
        QVERIFY(!m_tree->exists(u"com.zel.tavrin"_s));
        QVERIFY(m_lines.isEmpty());
    }

    void everyKeyIsStoredAsText()
    {
        QVERIFY(WritePreferences({2, false, 7, true}));
        const QJsonObject expected{{u"SUHasLaunchedBefore"_s, u"true"_s},
                                   {u"SUEnableAutomaticChecks"_s, u"false"_s},
                                   {u"author"_s, u"written by zel"_s},
                                   {u"prefSize"_s, u"8"_s},
                                   {u"version"_s, u"2"_s},
                                   {u"firstrun"_s, u"false"_s},
                                   {u"runCount"_s, u"7"_s},
                                   {u"hasRated"_s, u"true"_s}};
        QCOMPARE(storedObject(), expected);
    }

    void preferencesComeBackAfterARestart()
    {
        const TPrefsObject written{3, false, 42, true};
        WritePreferences(written);
        resetSettingsForTests();
        initPreferences();
        QCOMPARE(thePreferences(), written);
    }

    void onlyTheExactMarkIsTrusted_data()
    {
        const Table<QString, qint64> row("author", "runCount");
        row("exact", u"written by zel", 5);
        row("one-more", u"written by zel ", 0);
        row("case", u"Written by zel", 0);
        row("none", QString(), 0);
    }

    void onlyTheExactMarkIsTrusted()
    {
        QFETCH(QString, author);
        WritePreferences({1, false, 5, true});
        PrefsWriteString(u"author"_s, author);
        PrefsSyncAndFlush();
        resetSettingsForTests();
        initPreferences();
        QTEST(thePreferences().runCount, "runCount");
    }

    void storedTextsReadAs_data()
    {
        const Table<QString, qint64, bool> row("text", "number", "flag");
        row("true", u"true", 0, true);
        row("false", u"false", 0, false);
        row("yes-after-blanks", u"  Yes", 0, true);
        row("42", u"42", 42, true);
        row("0", u"0", 0, false);
        row("digits-first", u" -12abc", -12, false);
        row("plus", u"+3", 3, false);
        row("no-digits", u"-x", 0, false);
        row("empty", u"", 0, false);
        row("too-large", u"99999999999999999999", std::numeric_limits<qint64>::max(), true);
        row("too-small", u"-99999999999999999999", std::numeric_limits<qint64>::min(), false);
    }

    void storedTextsReadAs()
    {
        QFETCH(QString, text);
        PrefsWriteString(u"key"_s, text);
        PrefsSyncAndFlush();
        resetSettingsForTests();
        QCOMPARE(PrefsReadNSString(u"key"_s), text);
        QTEST(PrefsReadNumber(u"key"_s), "number");
        QTEST(PrefsReadBool(u"key"_s), "flag");
    }

    void otherJsonValuesReadAs_data()
    {
        const Table<QByteArray, qint64, bool> row("json", "number", "flag");
        row("true", QByteArray("true"), 1, true);
        row("integer", QByteArray("9007199254740993"), 9007199254740993, true);
        row("fraction", QByteArray("-2.9"), -2, true);
        row("below-one", QByteArray("0.5"), 0, true);
        row("huge", QByteArray("1e300"), std::numeric_limits<qint64>::max(), true);
        row("null", QByteArray("null"), 0, false);
        row("list", QByteArray("[1]"), 0, false);
        row("map", QByteArray("{\"a\":1}"), 0, false);
    }

    void otherJsonValuesReadAs()
    {
        QFETCH(QByteArray, json);
        restart("{\"key\":" + json + "}");
        QTEST(PrefsReadNumber(u"key"_s), "number");
        QTEST(PrefsReadBool(u"key"_s), "flag");
        QVERIFY(PrefsReadNSString(u"key"_s).isNull());
    }

    void arraysAndTextsKeepTheirForm()
    {
        const QVariantList folders{u"/home/ä"_s, u""_s, QVariantList{u"nested"_s, true}};
        PrefsWriteArray(u"scopedFolders"_s, folders);
        PrefsWriteNumber(u"number"_s, -5);
        PrefsSyncAndFlush();
        resetSettingsForTests();
        QCOMPARE(PrefsReadArray(u"scopedFolders"_s), folders);
        QCOMPARE(PrefsReadNSString(u"number"_s), u"-5"_s);
        QVERIFY(PrefsReadArray(u"number"_s).isEmpty());
        QVERIFY(PrefsReadArray(u"absent"_s).isEmpty());
    }

    void damagedFileIsLoggedAndReplaced_data()
    {
        const Table<QByteArray> row("content");
        row("cut", QByteArray("{\"author\":\"written by"));
        row("array", QByteArray("[]"));
        row("empty", QByteArray());
        row("binary", QByteArray("\xff\x00\x01", 3));
    }

    void damagedFileIsLoggedAndReplaced()
    {
        QFETCH(QByteArray, content);
        restart(content);
        initPreferences();
        QCOMPARE(thePreferences(), TPrefsObject{});
        QCOMPARE(m_lines.size(), 1);
        QVERIFY2(m_lines.first().contains(m_tree->path(kFile)), qPrintable(m_lines.first()));
        QVERIFY(WritePreferences(thePreferences()));
        QCOMPARE(storedObject().value("prefSize"_L1).toString(), u"8"_s);
    }

    void twoProcessesKeepEachOthersKeys()
    {
        const QString path = m_tree->path(kFile);
        PreferenceStore window(path);
        PreferenceStore commandLine(path);
        window.setValue(u"runCount"_s, u"1"_s);
        QVERIFY(window.sync());
        commandLine.setValue(u"logLevel"_s, 2);
        QVERIFY(commandLine.sync());
        QCOMPARE(storedObject(), (QJsonObject{{u"runCount"_s, u"1"_s}, {u"logLevel"_s, 2}}));
        QCOMPARE(commandLine.value(u"runCount"_s), QVariant(u"1"_s));
    }

    void removedKeyFallsBackToTheDefault()
    {
        UserDefaults::registerDefault(u"neverEver"_s, 0);
        UserDefaults::setValue(u"neverEver"_s, 1);
        QCOMPARE(UserDefaults::integerForKey(u"neverEver"_s), 1);
        UserDefaults::setValue(u"neverEver"_s, {});
        QCOMPARE(UserDefaults::valueForKey(u"neverEver"_s), QVariant(0));
        QVERIFY(storedObject().isEmpty());
    }

    void refusedWriteStaysPending()
    {
        m_tree->file(u"com.zel.tavrin"_s); // a file where the folder has to be
        PrefsWriteNumber(u"key"_s, 3);
        QVERIFY(!PrefsSyncAndFlush());
        QCOMPARE(m_lines.size(), 1);
        QCOMPARE(PrefsReadNumber(u"key"_s), 3);
        QVERIFY(QFile::remove(m_tree->path(u"com.zel.tavrin"_s)));
        QVERIFY(PrefsSyncAndFlush());
        QCOMPARE(storedObject().value("key"_L1).toString(), u"3"_s);
    }

private:
    QByteArray stored() const { return m_tree->content(kFile); }
    QJsonObject storedObject() const { return QJsonDocument::fromJson(stored()).object(); }

    void restart(const QByteArray &content)
    {
        m_tree->file(kFile, content);
        resetSettingsForTests();
    }

    std::optional<TemporaryTree> m_tree;
    QStringList m_lines;
};

QTEST_GUILESS_MAIN(TestPreferences)
#include "tst_preferences.moc"
