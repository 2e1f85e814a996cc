// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentHelpers.h"
#include "rollback/RollbackLog.h"
#include "rollback/RollbackRun.h"
#include "settings/logging.h"
#include "support/DocumentFixture.h"

#include <QFile>
#include <QTest>

#include <filesystem>
#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCycles = 200;
/// Caches and pools have filled by then.
constexpr int kSettled = 60;
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
        DocumentFixture fixture;
        fixture.makeFiles(u"files/%1.txt"_s, kFiles);
        for (const QString &sample : {u"photo.jpg"_s, u"song.mp3"_s})
            QVERIFY(QFile::copy(QStringLiteral(TAVRIN_SOURCE_DIR "/tests/data/") + sample,
                                fixture.tree.path(u"files/"_s + sample)));
        const QStringList before = fixture.tree.list(u"files"_s);
        Holdings settled;
        for (int cycle = 0; cycle < kCycles; ++cycle) {
            if (cycle == kSettled)
                settled = Holdings::now();
            oneCycle(fixture);
            QCOMPARE(fixture.tree.list(u"files"_s), before);
        }
        const Holdings last = Holdings::now();
        QVERIFY2(last.memory - settled.memory < kMostGrowth,
                 qPrintable(u"from %1 to %2 bytes"_s.arg(settled.memory).arg(last.memory)));
        QCOMPARE(last.descriptors, settled.descriptors);
        QCOMPARE(last.children, settled.children);
    }

private:
    /// Drop, edit, rename, roll back, in a window of its own.
    static void oneCycle(DocumentFixture &fixture)
    {
        ScriptedHost host;
        fixture.document = std::make_unique<TDocument>(
            host, TDocumentServices{fixture.mainThread, fixture.disk, fixture.clock,
                                    fixture.notifications, fixture.worker,
                                    PresetsManager(QString(), QString()),
                                    [&] { return fixture.tree.folder(u"Logs"_s); },
                                    gatherersWithHelpers(fixture.mainThread)});
        QVERIFY(fixture.drop({u"files"_s}));
        QVERIFY(fixture.useRules({textRule(u"n"_s), makeRule(u"Counter"_s), makeRule(u"ImageTag"_s),
                                  patternRule(u"a"_s, u"b"_s, 1, 1)}));
        QVariantMap edited{{u"theText"_s, u"m"_s}};
        fixture.document->undoRuleChangeForRuleWithProperties(fixture.document->ruleArray().front(),
                                                              edited);
        QVERIFY(fixture.settle());
        fixture.document->undoStack().undo();
        fixture.document->undoStack().redo();
        QVERIFY(fixture.settle());
        host.answers = {1};
        fixture.document->runRename();
        QVERIFY(fixture.pumpUntil(
            [&] { return host.answers.empty() && !fixture.document->isRenaming(); }));
        const QString log = fixture.document->rollbackURL().path();
        RollbackRun undo(fixture.disk, readRollbackLog(log).value(), log);
        undo.processLog({});
        undo.performRollBack({}, false, true);
        fixture.document.reset();
        QVERIFY(QFile::remove(log));
    }
};

QTEST_GUILESS_MAIN(TestSoak)

#include "tst_soak.moc"
