// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliFixture.h"
#include "cli/Console.h"
#include "support/Table.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kInterval = 100;

/// Reports for a while, as fast as it can.
void reportFor(ProgressLine &progress, qint64 milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    for (qsizetype done = 0; timer.elapsed() < milliseconds; ++done)
        progress.show("Working"_L1, done, 5);
    progress.show("Working"_L1, 5, 5);
}

} // namespace

class TestConsole : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void progressOverwritesItselfAndVanishes()
    {
        MemoryOutput output;
        QElapsedTimer timer;
        timer.start();
        {
            ProgressLine progress(output, ProgressLine::Mode::Overwrite);
            reportFor(progress, 3 * kInterval);
        }
        const auto shown = output.bytes.count("Working: ");
        QVERIFY(shown >= 1 && shown <= timer.elapsed() / kInterval);
        QVERIFY(output.bytes.contains(" of 5"));
        QVERIFY(!output.bytes.contains('\n'));
        QVERIFY(output.bytes.endsWith("\r\x1b[K"));
    }

    void progressWithoutTerminalIsLines()
    {
        MemoryOutput output;
        ProgressLine progress(output, ProgressLine::Mode::Lines);
        reportFor(progress, 2 * kInterval);
        progress.clear();
        QVERIFY(output.bytes.startsWith("Working: "));
        QVERIFY(output.bytes.endsWith(" of 5\n"));
        QVERIFY(!output.bytes.contains('\r'));
    }

    void shortWorkShowsNoProgress()
    {
        MemoryOutput output;
        ProgressLine progress(output, ProgressLine::Mode::Overwrite);
        progress.show("Working"_L1, 1, 2);
        progress.clear();
        QCOMPARE(output.bytes, QByteArray());
    }

    void progressIsOnlyWhereItIsSeen_data()
    {
        const Table<bool, QString, bool> row("terminal", "option", "shown");
        row("terminal", true, u"auto", true);
        row("file", false, u"auto", false);
        row("always", false, u"always", true);
        row("never", true, u"never", false);
    }

    void progressIsOnlyWhereItIsSeen()
    {
        QFETCH(bool, terminal);
        QFETCH(QString, option);
        MemoryOutput out;
        MemoryOutput err;
        ScriptedTerminal nobody;
        DiskFileManager disk;
        SystemClock clock;
        std::atomic<bool> interrupted = false;
        CliEnvironment environment{out, err, -1, nobody, disk, clock, interrupted};
        environment.errIsTerminal = terminal;
        Console console(environment);
        const auto line = CommandLine::parse({Console::batchOptions()}, {u"--progress"_s, option});
        QVERIFY(console.configure(line.value()));
        reportFor(console.progress(), 2 * kInterval);
        QTEST(!err.bytes.isEmpty(), "shown");
    }

    void bufferKeepsTheOrderOfBothStreams()
    {
        MemoryOutput both;
        ScriptedTerminal nobody;
        DiskFileManager disk;
        SystemClock clock;
        std::atomic<bool> interrupted = false;
        CliEnvironment environment{both, both, -1, nobody, disk, clock, interrupted};
        Console console(environment);
        for (const QString &name : {u"a"_s, u"b"_s}) {
            console.printLine(name);
            console.printLine(u"more"_s);
            console.message(u"trouble with "_s + name);
        }
        console.flush();
        QCOMPARE(both.bytes, QByteArray("a\nmore\ntavrin-cli: trouble with a\n"
                                        "b\nmore\ntavrin-cli: trouble with b\n"));
    }
};

QTEST_GUILESS_MAIN(TestConsole)
#include "tst_console.moc"
