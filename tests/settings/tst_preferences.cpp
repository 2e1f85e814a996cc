// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/PreferenceStore.h"
#include "settings/Preferences.h"
#include "settings/PrefsWriter.h"
#include "settings/UserDefaults.h"
#include "settings/logging.h"
#include "support/TemporaryTree.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

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
    void init();
    void cleanup();
    void firstStartUsesDefaultsAndWritesNothing();
    void everyKeyIsStoredAsText();
    void preferencesComeBackAfterARestart();
    void onlyTheExactMarkIsTrusted_data();
    void onlyTheExactMarkIsTrusted();
    void storedTextsReadAs_data();
    void storedTextsReadAs();
    void otherJsonValuesReadAs_data();
    void otherJsonValuesReadAs();
    void arraysAndTextsKeepTheirForm();
    void damagedFileIsLoggedAndReplaced_data();
    void damagedFileIsLoggedAndReplaced();
    void twoProcessesKeepEachOthersKeys();
    void removedKeyFallsBackToTheDefault();
    void refusedWriteStaysPending();

private:
    QByteArray stored() const { return m_tree->content(kFile); }
    QJsonObject storedObject() const { return QJsonDocument::fromJson(stored()).object(); }
    void restart(const QByteArray &content);

    std::optional<TemporaryTree> m_tree;
    QStringList m_lines;
};

void TestPreferences::init()
{
    m_tree.emplace();
    qputenv("XDG_CONFIG_HOME", m_tree->path().toUtf8());
    resetSettingsForTests();
    m_lines.clear();
    setLogSink([this](const QString &line) { m_lines << line; });
}

void TestPreferences::cleanup()
{
    setLogSink({});
}

void TestPreferences::restart(const QByteArray &content)
{
    m_tree->file(kFile, content);
    resetSettingsForTests();
}

void TestPreferences::firstStartUsesDefaultsAndWritesNothing()
{
    thePreferences().runCount = 9;
    initPreferences();
    QCOMPARE(thePreferences(), (TPrefsObject{1, true, 0, false}));
    QVERIFY(!m_tree->exists(u"com.zel.tavrin"_s));
    QVERIFY(m_lines.isEmpty());
}

void TestPreferences::everyKeyIsStoredAsText()
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

void TestPreferences::preferencesComeBackAfterARestart()
{
    const TPrefsObject written{3, false, 42, true};
    WritePreferences(written);
    resetSettingsForTests();
    initPreferences();
    QCOMPARE(thePreferences(), written);
}

void TestPreferences::onlyTheExactMarkIsTrusted_data()
{
    QTest::addColumn<QString>("author");
    QTest::addColumn<qint64>("runCount");
    QTest::newRow("exact") << u"written by zel"_s << qint64{5};
    QTest::newRow("one-more") << u"written by zel "_s << qint64{0};
    QTest::newRow("case") << u"Written by zel"_s << qint64{0};
    QTest::newRow("none") << QString() << qint64{0};
}

void TestPreferences::onlyTheExactMarkIsTrusted()
{
    QFETCH(QString, author);
    WritePreferences({1, false, 5, true});
    PrefsWriteString(u"author"_s, author);
    PrefsSyncAndFlush();
    resetSettingsForTests();
    initPreferences();
    QTEST(thePreferences().runCount, "runCount");
}

void TestPreferences::storedTextsReadAs_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("number");
    QTest::addColumn<bool>("flag");
    QTest::newRow("true") << u"true"_s << qint64{0} << true;
    QTest::newRow("false") << u"false"_s << qint64{0} << false;
    QTest::newRow("yes-after-blanks") << u"  Yes"_s << qint64{0} << true;
    QTest::newRow("42") << u"42"_s << qint64{42} << true;
    QTest::newRow("0") << u"0"_s << qint64{0} << false;
    QTest::newRow("digits-first") << u" -12abc"_s << qint64{-12} << false;
    QTest::newRow("plus") << u"+3"_s << qint64{3} << false;
    QTest::newRow("no-digits") << u"-x"_s << qint64{0} << false;
    QTest::newRow("empty") << u""_s << qint64{0} << false;
    QTest::newRow("too-large") << u"99999999999999999999"_s << std::numeric_limits<qint64>::max()
                               << true;
    QTest::newRow("too-small") << u"-99999999999999999999"_s << std::numeric_limits<qint64>::min()
                               << false;
}

void TestPreferences::storedTextsReadAs()
{
    QFETCH(QString, text);
    PrefsWriteString(u"key"_s, text);
    PrefsSyncAndFlush();
    resetSettingsForTests();
    QCOMPARE(PrefsReadNSString(u"key"_s), text);
    QTEST(PrefsReadNumber(u"key"_s), "number");
    QTEST(PrefsReadBool(u"key"_s), "flag");
}

void TestPreferences::otherJsonValuesReadAs_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<qint64>("number");
    QTest::addColumn<bool>("flag");
    QTest::newRow("true") << QByteArray("true") << qint64{1} << true;
    QTest::newRow("integer") << QByteArray("9007199254740993") << qint64{9007199254740993} << true;
    QTest::newRow("fraction") << QByteArray("-2.9") << qint64{-2} << true;
    QTest::newRow("below-one") << QByteArray("0.5") << qint64{0} << true;
    QTest::newRow("huge") << QByteArray("1e300") << std::numeric_limits<qint64>::max() << true;
    QTest::newRow("null") << QByteArray("null") << qint64{0} << false;
    QTest::newRow("list") << QByteArray("[1]") << qint64{0} << false;
    QTest::newRow("map") << QByteArray("{\"a\":1}") << qint64{0} << false;
}

void TestPreferences::otherJsonValuesReadAs()
{
    QFETCH(QByteArray, json);
    restart("{\"key\":" + json + "}");
    QTEST(PrefsReadNumber(u"key"_s), "number");
    QTEST(PrefsReadBool(u"key"_s), "flag");
    QVERIFY(PrefsReadNSString(u"key"_s).isNull());
}

void TestPreferences::arraysAndTextsKeepTheirForm()
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

void TestPreferences::damagedFileIsLoggedAndReplaced_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("cut") << QByteArray("{\"author\":\"written by");
    QTest::newRow("array") << QByteArray("[]");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("binary") << QByteArray("\xff\x00\x01", 3);
}

void TestPreferences::damagedFileIsLoggedAndReplaced()
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

void TestPreferences::twoProcessesKeepEachOthersKeys()
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

void TestPreferences::removedKeyFallsBackToTheDefault()
{
    UserDefaults::registerDefault(u"neverEver"_s, 0);
    UserDefaults::setValue(u"neverEver"_s, 1);
    QCOMPARE(UserDefaults::integerForKey(u"neverEver"_s), 1);
    UserDefaults::setValue(u"neverEver"_s, {});
    QCOMPARE(UserDefaults::valueForKey(u"neverEver"_s), QVariant(0));
    QVERIFY(storedObject().isEmpty());
}

void TestPreferences::refusedWriteStaysPending()
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

QTEST_GUILESS_MAIN(TestPreferences)
#include "tst_preferences.moc"
