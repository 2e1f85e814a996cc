// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentHelpers.h"
#include "rollback/RollbackLog.h"
#include "rollback/RollbackRun.h"
#include "settings/logging.h"
#include "ui/batch/BatchFixture.h"
#include "ui/windows/LogWindow.h"
#include "ui/windows/QuestionDialog.h"

#include <QFile>

#include <filesystem>
#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCycles = 20;
constexpr int kManyCycles = 200;
constexpr int kFiles = 40;
constexpr qint64 kMostGrowth = 2 << 20;

/// What a process must not gather over time.
struct Holdings
{
    qint64 memory = 0; ///< allocated and not freed, in bytes
    qsizetype descriptors = 0;
    qsizetype children = 0;

    static Holdings now()
    {
        const struct mallinfo2 heap = ::mallinfo2();
        QFile children(u"/proc/self/task/%1/children"_s.arg(::getpid()));
        if (!children.open(QIODevice::ReadOnly))
            return {};
        const std::filesystem::directory_iterator open("/proc/self/fd");
        return {static_cast<qint64>(heap.uordblks + heap.hblkhd),
                std::distance(begin(open), end(open)), children.readAll().simplified().count(' ')};
    }
};

} // namespace

/// One program that is used all day.
class TestSoak : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingGrows()
    {
        setLogSink([](const QString &) {});
        qputenv("TAVRIN_METADATA_HELPER", TAVRIN_METADATA);
        BatchFixture batch;
        for (int i = 0; i < kFiles; ++i)
            batch.tree.file(u"files/%1.txt"_s.arg(i));
        for (const QString &sample : {u"photo.jpg"_s, u"song.mp3"_s})
            QVERIFY(QFile::copy(QStringLiteral(TAVRIN_SOURCE_DIR "/tests/data/") + sample,
                                batch.tree.path(u"files/"_s + sample)));
        const QStringList before = batch.names();
        const int cycles = qEnvironmentVariableIsEmpty("TAVRIN_THOROUGH") ? kCycles : kManyCycles;
        Holdings settled;
        for (int cycle = 0; cycle < cycles; ++cycle) {
            if (cycle == cycles * 3 / 10) // caches and pools have filled by then
                settled = Holdings::now();
            oneCycle(batch);
            QCOMPARE(batch.names(), before);
        }
        const Holdings last = Holdings::now();
        QVERIFY2(last.memory - settled.memory < kMostGrowth,
                 qPrintable(u"from %1 to %2 bytes"_s.arg(settled.memory).arg(last.memory)));
        QCOMPARE(last.descriptors, settled.descriptors);
        QCOMPARE(last.children, settled.children);
    }

private:
    /// Drop, edit, rename, roll back, in a window of its own.
    static void oneCycle(BatchFixture &batch)
    {
        batch.window = std::make_unique<BatchWindow>(
            TDocumentServices{batch.mainThread, batch.disk, batch.clock, batch.notifications,
                              batch.worker, PresetsManager(QString(), QString()),
                              [&] { return batch.tree.folder(u"Logs"_s); },
                              gatherersWithHelpers(batch.mainThread)},
            batch.commands);
        batch.window->show();
        batch.window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(batch.window.get()));
        batch.window->addFiles({TFileURL::fileURLWithPath(batch.tree.path(u"files"_s))});
        QVERIFY(batch.settle());
        batch.document().addRules(
            {makeRule(u"Counter"_s), makeRule(u"ImageTag"_s), patternRule(u"a"_s, u"b"_s, 1, 1)},
            0);
        batch.key(Qt::Key_1, Qt::ControlModifier);
        batch.type(u"Day "_s);
        batch.key(Qt::Key_Return);
        QVERIFY(batch.settle());
        batch.key(Qt::Key_Z, Qt::ControlModifier);
        batch.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(batch.settle());
        batch.key(Qt::Key_Return, Qt::ControlModifier);
        QVERIFY(WindowTools::answer<QuestionDialog>(u"Rename"_s));
        QTRY_VERIFY(WindowTools::shown<LogWindow>() != nullptr);
        QVERIFY(batch.settle());
        const QString log = batch.document().rollbackURL().path();
        RollbackRun undo(batch.disk, readRollbackLog(log).value(), log);
        undo.processLog({});
        undo.performRollBack({}, false, true);
        batch.window->close();
        batch.window.reset();
        QVERIFY(QFile::remove(log));
    }
};

QTEST_MAIN(TestSoak)

#include "tst_soak.moc"
