// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/RunJournal.h"
#include "support/DocumentFixture.h"
#include "support/Table.h"

#include <QTest>

#include <future>

using namespace Qt::StringLiterals;
using Call = FaultyFileManager::Call;

namespace {

constexpr qsizetype kCancel = 0;
constexpr qsizetype kRename = 1;
constexpr qsizetype kNoAnswer = -1;

} // namespace

class TestTDocumentRecovery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void waitsForTheRecovery_data();
    void waitsForTheRecovery();
};

void TestTDocumentRecovery::waitsForTheRecovery_data()
{
    const Table<QString, qsizetype, QString> row("cutOff", "answer", "question");
    const QString asked = u"and can be renamed meanwhile.|Cancel/Go On"_s;
    const QString told = u"what is in the folders of that run.|"_s;
    row("answers at once", u"share/a", kNoAnswer, u"");
    row("elsewhere", u"share/a", kRename, asked);
    row("elsewhere, cancelled", u"share/a", kCancel, asked);
    row("in a folder of a longer name", u"files.old/a", kRename, asked);
    row("in a folder beside the files", u"files/share/a", kRename, asked);
    row("in the folder around them", u"a", kRename, asked);
    row("in their own folder", u"files/a", kCancel, told);
    row("within one of them", u"files/b.app/in/a", kCancel, told);
}

/// A folder of a run that was cut off does not answer.
void TestTDocumentRecovery::waitsForTheRecovery()
{
    QFETCH(const QString, cutOff);
    QFETCH(const qsizetype, answer);
    QFETCH(const QString, question);
    DocumentFixture batch;
    batch.makeFiles(u"files/%1.x"_s, 3);
    batch.tree.folder(u"files/b.app/in"_s);
    QVERIFY(batch.drop({u"files"_s}));
    QVERIFY(batch.useRules({textRule(u"n"_s), makeRule(u"Counter"_s)}));
    const QString file = batch.tree.file(cutOff);
    const QStringList before = batch.tree.list(u"files"_s);
    auto journal =
        RunJournal::create(batch.tree.folder(u"Logs"_s), batch.clock, batch.disk).value();
    journal->addFile({TFileURL::fileURLWithPath(file), {}});
    QVERIFY(journal->syncPlan() && journal->begin());
    journal->recordMove(0, "b");
    journal.reset();

    std::promise<void> answers;
    const QString folder = TFileURL::fileURLWithPath(file).folder()->path();
    batch.disk.before(
        Call::OpenFolder, [&] { answers.get_future().wait(); }, folder.toUtf8());
    batch.recovery->start(batch.tree.path(u"Logs"_s), batch.disk, batch.clock, {});
    QVERIFY(QTest::qWaitFor([&] { return batch.recovery->folderAtHand() == folder; }));
    if (answer == kNoAnswer)
        answers.set_value();
    batch.host.calls.clear();
    batch.host.answers = {kRename};
    if (answer != kNoAnswer)
        batch.host.answers.push_front(answer);
    batch.document->runRename();
    const bool renames = answer != kCancel;
    QVERIFY(QTest::qWaitFor([&] {
        batch.mainThread.pump();
        return renames ? !!batch.host.logWindow : !batch.host.calls.empty();
    }));
    const QString asked = batch.host.callsOf(u"sheet: An Interrupted Rename "_s).value(0);
    QVERIFY2(question.isEmpty() || asked.endsWith(question), qPrintable(asked));
    QCOMPARE(asked.contains(u"\"%1\" does not answer"_s.arg(folder)), !question.isEmpty());
    QCOMPARE(batch.tree.list(u"files"_s) == before, !renames);
    if (answer != kNoAnswer)
        answers.set_value();
    QVERIFY(batch.recovery->waitFor(DocumentFixture::kPatience));
}

QTEST_GUILESS_MAIN(TestTDocumentRecovery)
#include "tst_tdocument_recovery.moc"
