// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "settings/logging.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <fcntl.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestLogging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        const QString config = m_tree.folder(QString::fromLatin1(QTest::currentTestFunction()) +
                                             QString::fromLatin1(QTest::currentDataTag()));
        qputenv("XDG_CONFIG_HOME", config.toUtf8());
        resetSettingsForTests();
        initLogging();
        m_lines.clear();
        setLogSink([this](const QString &line) { m_lines << line; });
    }

    void cleanup() { setLogSink({}); }

    void threshold_data()
    {
        const Table<int, QStringList> row("level", "lines");
        const QStringList all{u"A:B"_s, u"<Warning: > A:B"_s, u"<***Error: > A:B"_s};
        row("0", 0, all);
        row("1", 1, all);
        row("2", 2, all.mid(1));
        row("3", 3, all.mid(2));
        row("errors-always", 99, all.mid(2));
    }

    void threshold()
    {
        QFETCH(int, level);
        setLogLevel(level);
        zelLog(u"A"_s, u"B"_s);
        zelWarn(u"A"_s, u"B"_s);
        zelError(u"A"_s, u"B"_s);
        QTEST(m_lines, "lines");
    }

    void setLevelStoresLevelAndFlag_data()
    {
        const Table<int, qint64, bool> row("level", "stored", "flag");
        row("7", 7, 3, true);
        row("2", 2, 2, true);
        row("0", 0, 0, false);
    }

    void setLevelStoresLevelAndFlag()
    {
        QFETCH(int, level);
        QVERIFY(UserDefaults::boolForKey(u"logging"_s)); // the registered default
        setLogLevel(level);
        QTEST(UserDefaults::integerForKey(u"logLevel"_s), "stored");
        QTEST(UserDefaults::boolForKey(u"logging"_s), "flag");
    }

    void levelSurvivesARestart_data()
    {
        const Table<bool> row("initialised");
        row("before the first step", false);
        row("after it", true);
    }

    void levelSurvivesARestart()
    {
        QFETCH(bool, initialised);
        setLogLevel(2);
        resetSettingsForTests();
        if (initialised)
            initLogging();
        zelLog(u"not"_s, u"wanted"_s);
        QCOMPARE(m_lines, QStringList());
        QCOMPARE(logLevel(), 2);
    }

    /// Reading the level may be what finds the store damaged, and what the store logs asks for the
    /// level.
    void damagedStoreIsLoggedOnce_data()
    {
        const Table<bool> row("storeFirst");
        row("by who wants a value", true);
        row("by who logs", false);
    }

    void damagedStoreIsLoggedOnce()
    {
        QFETCH(bool, storeFirst);
        setLogLevel(3);
        QFile file(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/com.zel.tavrin/preferences.json"_s);
        QVERIFY(file.resize(1));
        resetSettingsForTests();
        if (storeFirst)
            UserDefaults::boolForKey(u"logging"_s);
        zelLog(u"A"_s, u"B"_s);
        QCOMPARE(m_lines.size(), 2);
        QVERIFY2(m_lines[0].contains(u"is damaged"_s), qPrintable(m_lines[0]));
        QCOMPARE(m_lines[1], u"A:B"_s);
        UserDefaults::setValue(u"neverEver"_s, 1); // reads the file again, to keep what it says
        QCOMPARE(m_lines.size(), 3);
    }

    void storedLevelOutOfRangeIsClamped()
    {
        UserDefaults::setValue(u"logLevel"_s, 12);
        initLogging();
        QCOMPARE(logLevel(), 3);
        zelError(u"still"_s, u"heard"_s);
        QCOMPARE(m_lines.size(), 1);
    }

    void prefixIsOptional()
    {
        zelOut({}, u"first"_s, u"second"_s);
        zelOut(u"note"_s, u"first"_s, u"second"_s);
        zelConsole(u"as it is"_s);
        QCOMPARE(m_lines,
                 QStringList({u"first:second"_s, u"<note> first:second"_s, u"as it is"_s}));
    }

    void standardErrorGetsWholePrintableLines()
    {
        setLogSink({});
        const QString path = m_tree.file(u"stderr"_s);
        const int saved = dup(STDERR_FILENO);
        const int file = open(path.toUtf8().constData(), O_WRONLY | O_TRUNC);
        dup2(file, STDERR_FILENO);
        zelLog(u"name"_s, u"a\nforged: line\x1b[31m é "_s + QChar(0xDCE9) + u"\U0001F600"_s);
        dup2(saved, STDERR_FILENO);
        close(saved);
        close(file);
        QCOMPARE(m_tree.content(u"stderr"_s),
                 QByteArray("name:a\\x0aforged: line\\x1b[31m \xC3\xA9 \\xe9\xF0\x9F\x98\x80\n"));
    }

    void manyThreadsWriteWholeLines()
    {
        constexpr int kThreads = 4;
        constexpr int kLines = 500;
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < kThreads; ++i)
                threads.emplace_back([] {
                    for (int line = 0; line < kLines; ++line)
                        zelWarn(u"thread"_s, u"line"_s);
                });
        }
        QCOMPARE(m_lines.size(), kThreads * kLines);
        QCOMPARE(m_lines.count(u"<Warning: > thread:line"_s), m_lines.size());
    }

private:
    TemporaryTree m_tree;
    QStringList m_lines;
};

QTEST_GUILESS_MAIN(TestLogging)
#include "tst_logging.moc"
