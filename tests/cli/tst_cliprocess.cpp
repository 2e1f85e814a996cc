// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QProcess>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString kProgram = QStringLiteral(TAVRIN_CLI);
const QStringList kNumbers{u"--rule"_s, u"Text theText=n"_s, u"--rule"_s, u"Counter"_s};

QStringList renameArguments(const QString &path)
{
    return QStringList{u"rename"_s, u"--yes"_s} + kNumbers + QStringList{u"--"_s, path};
}

} // namespace

/// The built program, as shells and scripts meet it.
class TestCliProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_tree = std::make_unique<TemporaryTree>();
        m_tree->folder(u"batch"_s);
        qputenv("XDG_DATA_HOME", m_tree->folder(u"data"_s).toUtf8());
    }

    void withoutATerminalYesIsNeeded()
    {
        m_tree->file(u"batch/a.txt"_s);
        QCOMPARE(run(QStringList{u"rename"_s, u"."_s} + kNumbers), 4);
        QVERIFY2(m_err.contains("--yes"), m_err.constData());
        QVERIFY(m_tree->exists(u"batch/a.txt"_s));
        QCOMPARE(run(renameArguments(u"."_s)), 0);
        QCOMPARE(run({u"rollback"_s, u"--last"_s}), 4);
        QCOMPARE(run({u"rollback"_s, u"--last"_s, u"--yes"_s}), 0);
        QVERIFY(m_tree->exists(u"batch/a.txt"_s));
    }

    void listOnStandardInput()
    {
        m_tree->file(u"batch/a\nb.txt"_s);
        m_tree->rawFile("batch/\xfe.txt");
        QCOMPARE(run(QStringList{u"rename"_s, u"-y0"_s, u"--files-from=-"_s} + kNumbers,
                     QByteArray("\xfe.txt\0a\nb.txt\0", 14)),
                 0);
        QCOMPARE(m_out.left(m_out.indexOf("2 files")),
                 QByteArray("\\xFE.txt -> n1.txt\na\\x0Ab.txt -> n2.txt\n"));
    }

    void strangeNames_data()
    {
        const Table<QByteArray> row("name");
        row("leading dash", QByteArray("--version"));
        row("lone dash", QByteArray("-"));
        row("line break", QByteArray("a\nb"));
        row("bytes that are not UTF-8", QByteArray("\xff\x80x"));
        row("half an UTF-8 sequence", QByteArray("x\xe2\x82"));
        row("surrogate written as UTF-8", QByteArray("\xed\xb3\xbf"));
        row("percent", QByteArray("100%25"));
        row("quotes", QByteArray("'\"$x`"));
        row("longest", QByteArray(255, 'x'));
    }

    void strangeNames()
    {
        QFETCH(QByteArray, name);
        m_tree->rawFile("batch/" + name, "content");
        QCOMPARE(run({u"preview"_s, u"--json"_s, u"--rule"_s, u"Original"_s, u"."_s}), 0);
        QCOMPARE(run(renameArguments(u"."_s)), 0);
        QVERIFY(m_tree->exists(u"batch/n1"_s));
        QCOMPARE(run({u"rollback"_s, u"--last"_s, u"--yes"_s}), 0);
        QCOMPARE(m_tree->list(u"batch"_s), QStringList{ByteNames::fromBytes(name)});
    }

    void interruptInALargeRun()
    {
        constexpr int kFiles = 5000;
        for (int i = 0; i < kFiles; ++i)
            m_tree->file(u"batch/%1.txt"_s.arg(i, 5, 10, QLatin1Char('0')));
        QProcess large;
        start(large,
              QStringList{u"rename"_s, u"--yes"_s, u"--jsonl"_s} + kNumbers + QStringList{u"."_s});
        // The program waits for its reader, so the run cannot be over when the signal comes.
        QVERIFY(large.waitForReadyRead(60'000));
        QCOMPARE(::kill(static_cast<pid_t>(large.processId()), SIGINT), 0);
        QVERIFY(large.waitForFinished(60'000));
        QCOMPARE(large.exitCode(), 130);
        const QByteArray err = large.readAllStandardError();
        QVERIFY2(err.contains("to undo: tavrin-cli rollback '"), err.constData());
        const QStringList names = m_tree->list(u"batch"_s);
        QCOMPARE(names.size(), kFiles);
        const qsizetype renamed = names.filter(u"n"_s).size();
        QVERIFY2(renamed > 0 && renamed < kFiles, qPrintable(QString::number(renamed)));
        QCOMPARE(run({u"rollback"_s, u"--last"_s, u"--yes"_s, u"--jsonl"_s}), 0);
        QVERIFY(m_out.contains("\"restored\":" + QByteArray::number(renamed) + ','));
        QCOMPARE(m_tree->list(u"batch"_s).filter(u"n"_s).size(), 0);
    }

    void closedOutput_data()
    {
        const Table<QStringList, QStringList> row("arguments", "names");
        row("preview", {u"preview"_s, u"--rule"_s, u"Counter"_s, u"."_s}, {u"a"_s, u"b"_s});
        row("rename", renameArguments(u"."_s), {u"n1"_s, u"n2"_s});
    }

    void closedOutput()
    {
        QFETCH(QStringList, arguments);
        m_tree->file(u"batch/a"_s);
        m_tree->file(u"batch/b"_s);
        int ends[2];
        QCOMPARE(::pipe2(ends, O_CLOEXEC), 0);
        ::close(ends[0]);
        QCOMPARE(runWithOutput(ends[1], arguments), 1);
        QCOMPARE(m_err, QByteArray());
        QTEST(m_tree->list(u"batch"_s), "names");
    }

    /// A closed stream's number must not go to the journal, which output would then run into.
    void outputThatWasNeverOpen()
    {
        m_tree->file(u"batch/a"_s);
        QProcess process;
        process.setWorkingDirectory(m_tree->path(u"batch"_s));
        process.setChildProcessModifier([] {
            ::setsid();
            ::close(STDOUT_FILENO);
        });
        process.start(kProgram, renameArguments(u"."_s));
        QVERIFY(process.waitForFinished(60'000));
        QCOMPARE(process.exitCode(), 1);
        QVERIFY(process.readAllStandardError().contains("cannot write to standard output"));
        QVERIFY(m_tree->exists(u"batch/n1"_s));
        QCOMPARE(run({u"rollback"_s, u"--last"_s, u"--yes"_s}), 0);
    }

    void interruptWhileWaitingForAFile_data()
    {
        const Table<QStringList, bool> row("arguments", "hasWriter");
        row("archive", {u"archive"_s, u"../pipe"_s}, false);
        row("recipe, nobody writes", {u"preview"_s, u"--recipe"_s, u"../pipe"_s, u"."_s}, false);
        row("recipe", {u"preview"_s, u"--recipe"_s, u"../pipe"_s, u"."_s}, true);
        row("table", {u"preview"_s, u"--rule"_s, u"CSVTag file=../pipe"_s, u"."_s}, true);
        row("list", {u"preview"_s, u"--rule=Text"_s, u"--files-from=../pipe"_s}, true);
    }

    void interruptWhileWaitingForAFile()
    {
        QFETCH(QStringList, arguments);
        QFETCH(bool, hasWriter);
        const QByteArray pipe = m_tree->path(u"pipe"_s).toUtf8();
        QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
        QProcess process;
        start(process, arguments);
        QVERIFY(process.waitForStarted());
        const int writer = hasWriter ? ::open(pipe.constData(), O_WRONLY | O_CLOEXEC) : -1;
        QTest::qWait(100); // nothing tells that the program has begun to wait
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
        QVERIFY(process.waitForFinished(10'000));
        ::close(writer);
        if (process.exitStatus() == QProcess::NormalExit)
            QCOMPARE(process.exitCode(), 130);
    }

    void interruptWhileNobodyReads_data()
    {
        const Table<QStringList, bool> row("arguments", "touches");
        row("preview", QStringList{u"preview"_s} + kNumbers + QStringList{u"-v"_s, u"."_s}, false);
        row("JSON", QStringList{u"preview"_s} + kNumbers + QStringList{u"--json"_s, u"."_s}, false);
        row("rename", renameArguments(u"."_s) + QStringList{}, true);
        row("tags", {u"tags"_s, u"."_s}, false);
        row("rollback", {u"rollback"_s, u"--last"_s, u"--yes"_s}, false);
    }

    /// A pager that waits for its reader takes nothing.
    void interruptWhileNobodyReads()
    {
        QFETCH(QStringList, arguments);
        QFETCH(bool, touches);
        constexpr int kFiles = 2000;
        for (int i = 0; i < kFiles; ++i)
            m_tree->file(u"batch/%1.txt"_s.arg(i, 100, 10, QLatin1Char('0')));
        const bool isRollback = arguments.contains(u"rollback"_s);
        if (isRollback)
            QCOMPARE(run(renameArguments(u"."_s)), 0);
        int ends[2];
        QCOMPARE(::pipe2(ends, O_CLOEXEC), 0);
        QProcess process;
        process.setWorkingDirectory(m_tree->path(u"batch"_s));
        process.setChildProcessModifier([end = ends[1]] {
            ::setsid();
            ::dup2(end, STDOUT_FILENO);
        });
        process.start(kProgram, arguments);
        QVERIFY(process.waitForStarted());
        pollfd room{ends[1], POLLOUT, 0};
        QVERIFY(QTest::qWaitFor([&room] { return ::poll(&room, 1, 0) == 0; }, 60'000));
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
        QVERIFY(process.waitForFinished(20'000));
        ::close(ends[0]);
        ::close(ends[1]);
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 130);
        const qsizetype renamed = m_tree->list(u"batch"_s).filter(u"n"_s).size();
        QCOMPARE(renamed > 0, touches);
        if (touches) {
            const QByteArray err = process.readAllStandardError();
            QVERIFY2(err.contains("to undo: tavrin-cli rollback '"), err.constData());
            QCOMPARE(run({u"rollback"_s, u"--last"_s, u"--yes"_s}), 0);
            QCOMPARE(m_tree->list(u"batch"_s).filter(u"n"_s).size(), 0);
        }
    }

    void logLooksLikeMessages()
    {
        m_tree->file(u"batch/a.jpg"_s);
        qputenv("TAVRIN_METADATA_HELPER", "/nowhere/helper");
        QCOMPARE(run({u"tags"_s, u"."_s}), 1);
        qunsetenv("TAVRIN_METADATA_HELPER");
        QVERIFY2(m_err.startsWith("tavrin-cli: the metadata of a file cannot be read:"),
                 m_err.constData());
        QCOMPARE(m_err.count('\n'), 1);
    }

    void questionAtATerminal_data()
    {
        const Table<QByteArray, int, QString> row("keys", "status", "name");
        row("yes", QByteArray("y\r"), 0, u"n1");
        row("no", QByteArray("n\r"), 4, u"a");
        row("Ctrl-C", QByteArray("\x03"), 130, u"a");
        row("Ctrl-D", QByteArray("\x04"), 4, u"a");
    }

    void questionAtATerminal()
    {
        QFETCH(QByteArray, keys);
        m_tree->file(u"batch/a"_s);
        const QByteArray batch = m_tree->path(u"batch"_s).toUtf8();
        int terminal = -1;
        const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            ::execl(TAVRIN_CLI, "tavrin-cli", "rename", "--rule", "Text theText=n1",
                    batch.constData(), nullptr);
            ::_exit(127);
        }
        QByteArray shown;
        char block[256];
        for (ssize_t count = 0; !shown.contains("[y/N]"); shown.append(block, count)) {
            count = ::read(terminal, block, sizeof block);
            QVERIFY2(count > 0, shown.constData());
        }

        QCOMPARE(::write(terminal, keys.constData(), static_cast<size_t>(keys.size())),
                 keys.size());
        while (::read(terminal, block, sizeof block) > 0) {
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        ::close(terminal);
        QVERIFY(WIFEXITED(status));
        QTEST(WEXITSTATUS(status), "status");
        QTEST(m_tree->list(u"batch"_s).first(), "name");
    }

private:
    int run(const QStringList &arguments, const QByteArray &input = {})
    {
        QProcess process;
        start(process, arguments);
        process.write(input);
        process.closeWriteChannel();
        process.waitForFinished(60'000);
        m_out = process.readAllStandardOutput();
        m_err = process.readAllStandardError();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    /// In a session of its own, so that no terminal of the tests' is there to be asked.
    void start(QProcess &process, const QStringList &arguments) const
    {
        process.setWorkingDirectory(m_tree->path(u"batch"_s));
        process.setChildProcessModifier([] { ::setsid(); });
        process.start(kProgram, arguments);
    }

    int runWithOutput(int descriptor, const QStringList &arguments)
    {
        QProcess process;
        process.setWorkingDirectory(m_tree->path(u"batch"_s));
        process.setChildProcessModifier([descriptor] {
            ::setsid();
            ::dup2(descriptor, STDOUT_FILENO);
        });
        process.start(kProgram, arguments);
        process.waitForFinished(60'000);
        m_err = process.readAllStandardError();
        ::close(descriptor);
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    std::unique_ptr<TemporaryTree> m_tree;
    QByteArray m_out;
    QByteArray m_err;
};

QTEST_GUILESS_MAIN(TestCliProcess)
#include "tst_cliprocess.moc"
