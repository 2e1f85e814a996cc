// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/Sandboxing.h"
#include "document/RollbackNotice.h"
#include "rollback/RollbackLog.h"
#include "support/DocumentFixture.h"
#include "support/Table.h"

#include <QTest>

#include <cerrno>
#include <numeric>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Call = FaultyFileManager::Call;

namespace {

using Action = std::function<void(DocumentFixture &)>;

constexpr qsizetype kCancel = 0;
constexpr qsizetype kRename = 1;

/// A batch of files with a rule, analysed.
struct Batch : DocumentFixture
{
    explicit Batch(int count = 3,
                   const TRuleList &recipe = {textRule(u"n"_s), makeRule(u"Counter"_s)})
    {
        makeFiles(u"files/%1.x"_s, count);
        const bool ready = drop({u"files"_s}) && (recipe.empty() || useRules(recipe));
        Q_ASSERT(ready);
        host.calls.clear();
    }
    /// Starts and, once it is asked for, answers the confirmation.
    bool rename(qsizetype answer = kRename)
    {
        host.answers = {answer};
        document->runRename();
        return pumpUntil([this] { return host.answers.empty() && !document->isRenaming(); });
    }
    QStringList onDisk() const { return tree.list(u"files"_s); }
    QStringList logs() const { return rollbackLogPaths(tree.path(u"Logs"_s)); }
    std::vector<TRenameTRX> records() const
    {
        return readRollbackLog(document->rollbackURL().path()).value();
    }
};

} // namespace

class TestTDocumentRename : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checks_data();
    void checks();
    void confirmation_data();
    void confirmation();
    void wholeRun();
    void progressSheet();
    void problemsOfARun();
    void outcomesHold();
    void outcomeOfARun();
    void oldNames_data();
    void oldNames();
    void namesNeverLookOldWithLiveUpdate();
    void cancelling_data();
    void cancelling();
    void changesBeforeTheAnswer();
    void renameWaitsForTheNames();
    void editsDuringTheRun();
    void twoDocuments();
    void unchangedNames();
    void logsThatCannotBeMade_data();
    void logsThatCannotBeMade();
    void stoppedByTheDisk_data();
    void stoppedByTheDisk();
    void emptyLog();
    void sandbox_data();
    void sandbox();
    void sandboxWithTheRoot();
    void closingDuringARun_data();
    void closingDuringARun();
};

void TestTDocumentRename::checks_data()
{
    const Table<Action, QStringList> row("before", "calls");
    const Action noRules = [](auto &f) {
        f.document->setLiveUpdate(false);
        while (!f.document->ruleArray().empty())
            f.document->deleteRule(f.document->ruleArray()[0]);
    };
    const Action process = [](auto &f) {
        f.document->sourceObjectArray()[2]->setHasBeenProcessed(true);
    };
    const QString processed =
        u"sheet: Already Processed|The files have already been processed! Please remove them, or "
        "add new files (which will automatically remove any file that has been processed||"_s;
    row("not analysed", [](auto &f) { f.document = f.makeDocument(f.host); }, {});
    row("critical problems",
        [](auto &f) {
            f.document->setDuplicatesAreCritical(true);
            f.document->deleteRule(f.document->ruleArray()[1]);
        },
        {u"error log 2"_s});
    row("processed", process, {processed});
    row("processed and no rules",
        [noRules, process](auto &f) {
            noRules(f);
            process(f);
        },
        {processed});
    row("no rules", noRules,
        {u"alert: No Rules|You need to define some 'Rules' that tell me how to build a new file "
         "name from an existing file. Please do so, and then try again.||"_s});
    row("no files",
        [](auto &f) {
            f.document->removeFiles({0, 1, 2});
        },
        {u"alert: Done! ...|Ok, technically I'm done. Actually I didn't do anything - the list of "
         "files that you want me to rename is empty. Please add a couple of files by dragging them "
         "into the sapce that politely asks you to do so.||"_s});
}

void TestTDocumentRename::checks()
{
    QFETCH(const Action, before);
    QFETCH(const QStringList, calls);
    Batch batch;
    before(batch);
    QVERIFY(batch.settle());
    batch.host.calls.clear();
    batch.document->runRename();
    batch.mainThread.pump();
    QCOMPARE(batch.host.calls, calls);
    QCOMPARE(batch.onDisk().size(), 3);
    if (calls == QStringList{u"error log 2"_s})
        QVERIFY(!batch.document->readyToGo());
}

void TestTDocumentRename::confirmation_data()
{
    const Table<bool, QString> row("warned", "question");
    row("clean", false,
        u"stop sheet: This is not a Drill!|You are about to live rename 3 files. Are you sure?||"
        "Cancel/Rename");
    row("warnings", true,
        u"stop sheet: Really? This is NOT a Drill!|You are about to live rename 3 files, while a "
        "simulated run turned up 2 (probably) minor issues. The rename will work, but the results "
        "may be suboptimal.\n\nDo you want to Rename, or Cancel?||Cancel/Rename");
}

void TestTDocumentRename::confirmation()
{
    QFETCH(const bool, warned);
    Batch batch(3, warned ? TRuleList{textRule(u"n"_s)}
                          : TRuleList{textRule(u"n"_s), makeRule(u"Counter"_s)});
    const auto journals = [&batch] {
        return batch.tree.list(u"Logs/.running"_s).filter(u".journal"_s).size();
    };
    batch.host.holdBack = true;
    batch.document->runRename();
    batch.host.answers = {kCancel};
    QVERIFY(batch.pumpUntil([&] { return !batch.host.held.empty(); }));
    // Killed now, this would be no run to recover.
    QCOMPARE(batch.tree.list(u"Logs/.running"_s).filter(u".plan"_s).size(), 1);
    QCOMPARE(journals(), 0);
    batch.host.release();
    QTEST(batch.host.calls.join(u';'), "question");
    QVERIFY(!batch.document->isRenaming() && batch.logs().isEmpty());
    QCOMPARE(batch.onDisk(), (QStringList{u"0000.x"_s, u"0001.x"_s, u"0002.x"_s}));
    QCOMPARE(batch.tree.list(u"Logs/.running"_s), QStringList());
    QVERIFY(batch.rename());
    QCOMPARE(batch.onDisk().size(), 3);
    QVERIFY(batch.onDisk().contains(warned ? u"n-2.x"_s : u"n3.x"_s));
}

void TestTDocumentRename::wholeRun()
{
    Batch batch(2);
    const QSignalSpy running(batch.document.get(), &TDocument::renamingChanged);
    batch.document->rollBackThis(); // nothing to undo yet
    batch.host.onSheetEnded = [&] { batch.clock.set(TDate::fromSeconds(1)); }; // too late to matter
    QVERIFY(batch.rename());
    QCOMPARE(running, (QList<QVariantList>{{true}, {false}}));
    const QString log = batch.tree.path(
        u"Logs/Rename Batch Run - 2025-07-03, 14.05.09 (rollback data).renameLog"_s);
    QCOMPARE(batch.document->rollbackURL().path(), log);
    QVERIFY(batch.host.rollBackEnabled);
    QCOMPARE(batch.host.calls.mid(1),
             (QStringList{u"hide progress"_s,
                          u"progress sheet 2: Processed: 0,    Warnings: 0,    Critical: 0"_s,
                          u"end progress sheet"_s,
                          batch.host.callsOf(u"log window Rename log:"_s).value(0)}));
    const QString text = batch.host.logWindow->text();
    QVERIFY2(text.startsWith("Job started at "_L1), qPrintable(text));
    QVERIFY(text.contains(u", scheduling 2 renames.\n\nrenamed %1 to %2\n"_s.arg(
        batch.tree.path(u"files/0000.x"_s), batch.tree.path(u"files/n1.x"_s))));
    QVERIFY(text.contains("\n\n\nJob finished at "_L1));
    QCOMPARE(batch.document->renameTextLog(), text);
    QCOMPARE(batch.host.logWindow->title().mid(11), text.mid(text.lastIndexOf(u" at "_s) + 4));
    const TFileObject &file = *batch.document->sourceObjectArray()[0];
    QVERIFY(file.hasBeenProcessed());
    QCOMPARE(file.targetURL().lastPathComponent(), u"n1.x"_s);
    batch.document->rollBackThis();
    QCOMPARE(batch.host.calls.back(), u"roll back "_s + log);
    // A second run is refused; the next drop takes the renamed files out, and undo brings them
    // back.
    batch.document->runRename();
    QVERIFY(batch.host.calls.back().startsWith("sheet: Already Processed"_L1));
    QVERIFY(batch.drop({batch.tree.file(u"new.x"_s)}, 1));
    QCOMPARE(batch.names(), QStringList{u"new.x"_s});
    batch.document->undoStack().undo();
    QCOMPARE(batch.names(), (QStringList{u"0000.x"_s, u"0001.x"_s}));
}

void TestTDocumentRename::progressSheet()
{
    Batch batch(25, {textRule(u"n"_s)});
    std::shared_ptr<TProgressSheetController> sheet;
    batch.host.onSheetShown = [&] { sheet = batch.host.sheet; };
    QVERIFY(batch.rename());
    QCOMPARE(batch.host.sheetTexts,
             (QStringList{u"Processed: 20,    Warnings: 4,    Critical: 0"_s,
                          u"Processed: 10,    Warnings: 14,    Critical: 0"_s}));
    QCOMPARE(sheet->progress(), 60.0);
    QVERIFY(sheet->isClosing());
    QCOMPARE(batch.document->remainingRenameOps(), 0);
    QCOMPARE(batch.document->renamingWarnings(), 24);
}

void TestTDocumentRename::problemsOfARun()
{
    Batch batch(4, {textRule(u"n"_s)});
    batch.tree.remove(u"files/0001.x"_s); // vanished since
    batch.tree.remove(u"files/0002.x"_s); // replaced since
    batch.tree.file(u"files/0002.x"_s, "other");
    QVERIFY(batch.rename());
    QCOMPARE(batch.onDisk(), (QStringList{u"n-1.x"_s, u"n-2.x"_s, u"n.x"_s}));
    const QString text = batch.document->renameTextLog();
    QVERIFY(text.contains("*** FAILURE: renaming "_L1));
    QVERIFY(text.contains("0003: target name 'n' isn't unique, changed to 'n-"_L1));
    QCOMPARE(batch.document->renamingCriticals(), 1);
    const TFileList &files = batch.document->sourceObjectArray();
    QVERIFY(std::all_of(files.begin(), files.end(),
                        [](const auto &file) { return file->hasBeenProcessed(); }));
    QCOMPARE(files[3]->errLevel(), 1);
    QVERIFY(files[3]->errLog().entries()[0].errDesc.toString().startsWith(
        "'n' is not unique. Modified to 'n-"_L1));
    QVERIFY(!batch.document->forecastFor(*files[1])->refusal.isEmpty());
    const auto records = batch.records();
    QCOMPARE(records.size(), 4U);
    QVERIFY(!records[1].renameComplete && records[2].renameComplete && records[3].insured);
}

/// Whatever is worked out afterwards, a file is said to have the name that it has.
void TestTDocumentRename::outcomesHold()
{
    Batch batch(3, {textRule(u"n"_s)});
    batch.tree.remove(u"files/0001.x"_s);
    QVERIFY(batch.rename());
    const auto said = [&] {
        const TFileList &files = batch.document->sourceObjectArray();
        QStringList outcomes;
        for (const auto &file : files) {
            const auto outcome = batch.document->forecastFor(*file);
            outcomes += !outcome                     ? u"nothing"_s
                        : outcome->refusal.isEmpty() ? outcome->finalName
                                                     : outcome->finalName + u" failed"_s;
        }
        return files[0]->targetName() + u": "_s + outcomes.join(u", "_s);
    };
    const QString outcomes = u": n.x, n-1.x failed, n-1.x"_s;
    QCOMPARE(said(), u"n"_s + outcomes);
    for (const QString &shown : {u"n"_s, u"mn"_s}) {
        batch.document->testRun();
        const QSignalSpy redisplays(batch.document.get(), &TDocument::filesChanged);
        QVERIFY(batch.pumpUntil([&] { return redisplays.count() == 2; })); // what is foreseen now
        QCOMPARE(said(), shown + outcomes);
        batch.document->addRules({textRule(u"m"_s)}, 0);
    }
}

void TestTDocumentRename::outcomeOfARun()
{
    Batch batch(3);
    const auto outcome = [&] {
        const auto run = batch.document->runOutcome();
        return run ? u"%1 %2 %3"_s.arg(run->renamed).arg(run->failed).arg(run->restored) : u""_s;
    };
    batch.tree.remove(u"files/0001.x"_s);
    QCOMPARE(outcome(), u""_s);
    QVERIFY(batch.rename());
    QCOMPARE(outcome(), u"2 1 0"_s);
    QVERIFY(batch.document->runOutcome()->canBeUndone);
    const QSignalSpy redisplays(batch.document.get(), &TDocument::filesChanged);
    const auto rollBack = [&](const QString &log) {
        batch.notifications.post(RollbackNotice::kRolledBack,
                                 {{RollbackNotice::kLog, log}, {RollbackNotice::kRestored, 1LL}});
    };
    rollBack(batch.tree.path(u"other.renameLog"_s));
    QCOMPARE(outcome(), u"2 1 0"_s);
    rollBack(batch.document->rollbackURL().path());
    rollBack(batch.document->rollbackURL().path()); // the rest of it
    QCOMPARE(outcome(), u"2 1 2"_s);
    QCOMPARE(redisplays.count(), 2);
    QVERIFY(batch.drop({batch.tree.file(u"new.x"_s)}));
    QCOMPARE(outcome(), u""_s);
}

void TestTDocumentRename::oldNames_data()
{
    QTest::addColumn<Action>("change");
    const auto add = [](const char *name, const Action &change) { QTest::newRow(name) << change; };
    add("rule", [](auto &f) { f.document->addRules({textRule(u"m"_s)}, 0); });
    add("extension", [](auto &f) {
        f.document->theExtensionHandler().setHandlingMethod(TExtensionHandler::kStrip);
        f.document->extensionHandlerEdited();
    });
    add("option", [](auto &f) {
        f.document->setTheOptions({0, 1 - f.document->theOptions().compliance, {}, 0, false});
    });
    add("files taken out", [](auto &f) { f.document->removeFiles({0}); });
    add("files moved", [](auto &f) { f.document->moveRows({0}, 3); });
    add("sorted by problems", [](auto &f) { f.document->sortByColumn(u"errLevel"_s, false); });
}

/// Without live update, names that are not those of the run are said to be old, also in the
/// question; a test run brings the new ones.
void TestTDocumentRename::oldNames()
{
    QFETCH(const Action, change);
    Batch batch;
    const auto note = [&] {
        batch.host.calls.clear();
        const bool isAsked = batch.rename(kCancel) && batch.host.calls.size() == 1;
        return isAsked ? batch.host.calls.back().section(u'|', 2, 2) : u"no question"_s;
    };
    batch.document->setLiveUpdate(false);
    QVERIFY(batch.settle());
    QVERIFY(!batch.document->areNamesOld());
    QCOMPARE(note(), QString());
    const QSignalSpy redisplays(batch.document.get(), &TDocument::filesChanged);
    change(batch);
    QVERIFY(batch.document->areNamesOld());
    QVERIFY(redisplays.count() > 0);
    QVERIFY(note().startsWith(u"The list shows names from before the last change."_s));
    batch.disk.fail(Call::Sync, ENOSPC);
    QVERIFY(note().contains(u"(F5).\nThis run could not be undone."_s));
    batch.document->testRun();
    QVERIFY(!batch.document->areNamesOld());
    change(batch);
    QVERIFY(batch.document->areNamesOld());
    batch.document->setLiveUpdate(true);
    QVERIFY(batch.settle());
    QVERIFY(!batch.document->areNamesOld());
}

void TestTDocumentRename::namesNeverLookOldWithLiveUpdate()
{
    Batch batch(3, {textRule(u"n"_s)});
    int oldLooks = 0;
    connect(batch.document.get(), &TDocument::filesChanged, this,
            [&] { oldLooks += batch.document->areNamesOld() ? 1 : 0; });
    const auto finalNames = [&] {
        QStringList names;
        for (const auto &file : batch.document->sourceObjectArray()) {
            const auto forecast = batch.document->forecastFor(*file);
            names += forecast ? forecast->finalName : u"as shown"_s;
        }
        return names;
    };
    const QStringList expected{u"as shown"_s, u"n-1.x"_s, u"n-2.x"_s};
    QVERIFY(batch.pumpUntil([&] { return finalNames() == expected; }));
    // No analysis follows this, but who gets which number is another matter.
    batch.document->sortByColumn(u"errLevel"_s, false);
    QVERIFY(!batch.document->isAnalysing());
    QVERIFY(batch.pumpUntil([&] { return finalNames() == expected; }));
    batch.document->addRules({textRule(u"m"_s)}, 0);
    batch.document->sortByColumn(u"errLevel"_s, true); // while names are being worked out
    QVERIFY(batch.settle());
    QVERIFY(batch.pumpUntil([&] { return finalNames().value(2) == u"mn-2.x"_s; }));
    QVERIFY(batch.drop({batch.tree.file(u"files/new.x"_s)}));
    batch.document->removeFiles({1});
    QVERIFY(batch.settle());
    QVERIFY(batch.rename());
    QCOMPARE(oldLooks, 0);
    batch.document->setLiveUpdate(false);
    batch.document->addRules({textRule(u"l"_s)}, 0);
    QVERIFY(!batch.document->areNamesOld()); // those of renamed files are what they are
}

void TestTDocumentRename::cancelling_data()
{
    const Table<int, int, QString> row("files", "moved", "status");
    row("midway", 1005, 5, u"Rename cancelled: 5 files renamed, 1,000 not"_s);
    row("after the first of two", 2, 1, u"Rename cancelled: 1 file renamed, 1 not"_s);
    row("before the first", 3, 0, u"Rename cancelled: 0 files renamed, 3 not"_s);
}

void TestTDocumentRename::cancelling()
{
    QFETCH(const int, files);
    QFETCH(const int, moved);
    Batch batch(files, {textRule(u"n"_s), makeRule(u"Counter"_s)});
    // The user presses the button while the last of them is being moved.
    batch.host.onSheetShown = [&] {
        if (moved == 0)
            return batch.host.sheet->iWantToAbort();
        batch.disk.before(
            Call::RenameNoReplace, [flag = batch.host.sheet->abortFlag()] { flag->store(true); },
            u"%1.x"_s.arg(moved - 1, 4, 10, QChar(u'0')).toLatin1().constData());
    };
    QVERIFY(batch.rename());
    QTEST(batch.host.status, "status");
    QCOMPARE(batch.onDisk().filter(u"n"_s).size(), moved);
    QCOMPARE(batch.records().size(), static_cast<std::size_t>(moved));
    QCOMPARE(batch.host.callsOf(u"end progress sheet"_s).size(), 1);
    QCOMPARE(batch.host.callsOf(u"log window"_s).size(), 1);
    QCOMPARE(batch.host.callsOf(u"alert"_s).size(), 0);
    QCOMPARE(batch.document->remainingRenameOps(), 0);
    const TFileList &list = batch.document->sourceObjectArray();
    QCOMPARE(TDocument::stripProcessed(list).size(), static_cast<std::size_t>(files - moved));
    // What was left can be renamed once the others are out of the way, and the line knows of it.
    std::vector<qsizetype> done(static_cast<std::size_t>(moved));
    std::iota(done.begin(), done.end(), 0);
    batch.document->removeFiles(done);
    QVERIFY(batch.settle());
    batch.host.onSheetShown = {};
    QVERIFY(batch.rename());
    QCOMPARE(batch.host.status, u"Idle. Files: %1"_s.arg(files - moved));
}

void TestTDocumentRename::changesBeforeTheAnswer()
{
    Batch batch;
    batch.host.holdBack = true;
    batch.host.answers = {kRename, kRename};
    batch.document->runRename();
    QVERIFY(batch.pumpUntil([&] { return batch.host.held.size() == 1; }));
    batch.document->removeFiles({0});
    batch.host.release();
    QVERIFY(batch.pumpUntil(
        [&] { return batch.host.answers.empty() && !batch.document->isRenaming(); }));
    QCOMPARE(batch.host.callsOf(u"stop sheet"_s).size(), 2);
    QVERIFY(batch.host.calls.filter(u"live rename 2 files"_s).size() == 1);
    QCOMPARE(batch.onDisk(), (QStringList{u"0000.x"_s, u"n1.x"_s, u"n2.x"_s}));
}

void TestTDocumentRename::renameWaitsForTheNames()
{
    Batch batch(200);
    batch.host.answers = {kRename};
    batch.document->addRules({textRule(u"new "_s)}, 0);
    batch.document->runRename(); // the problems of the new names are not known yet
    QVERIFY(batch.host.callsOf(u"stop sheet"_s).isEmpty());
    QVERIFY(batch.pumpUntil(
        [&] { return batch.host.answers.empty() && !batch.document->isRenaming(); }));
    QCOMPARE(batch.onDisk().filter(u"new n"_s).size(), 200);
}

void TestTDocumentRename::editsDuringTheRun()
{
    Batch batch(50);
    const TRulePtr rule = batch.document->ruleArray()[0];
    batch.host.onSheetShown = [&] {
        rule->setProperties({{u"theText"_s, u"other"_s}});
        batch.document->deleteRule(batch.document->ruleArray()[1]);
        batch.document->runRename();
    };
    QVERIFY(batch.rename());
    QCOMPARE(batch.onDisk().filter(QRegularExpression(u"^n[0-9]+\\.x$"_s)).size(), 50);
    QCOMPARE(batch.host.calls
                 .filter(u"alert: Already Running|Please wait until I have completed "
                         "the current batch of renames. Patience is a virtue, but a "
                         "coffee helps.||"_s)
                 .size(),
             1);
}

void TestTDocumentRename::twoDocuments()
{
    Batch batch(100);
    ScriptedHost otherHost;
    const auto other = batch.makeDocument(otherHost);
    other->addFiles(batch.urls({u"files"_s}), 0);
    other->addRules({textRule(u"m"_s), makeRule(u"Counter"_s)}, 0);
    QVERIFY(batch.pumpUntil([&] { return DocumentFixture::isIdle(*other) && other->errorLog(); }));
    batch.host.answers = otherHost.answers = {kRename};
    batch.document->runRename();
    other->runRename();
    QVERIFY(batch.pumpUntil([&] {
        return batch.host.answers.empty() && otherHost.answers.empty() &&
               !batch.document->isRenaming() && !other->isRenaming();
    }));
    QCOMPARE(batch.onDisk().size(), 100);
    QVERIFY(batch.onDisk().filter(u"000"_s).isEmpty());
    QCOMPARE(batch.document->renamingCriticals() + other->renamingCriticals(), 100);
}

void TestTDocumentRename::unchangedNames()
{
    Batch batch(2, {makeRule(u"Original"_s)});
    TOptions options;
    options.keepUnchanged = true;
    batch.document->setTheOptions(options);
    QVERIFY(batch.settle());
    QVERIFY(batch.rename());
    QCOMPARE(batch.onDisk(), (QStringList{u"0000.x"_s, u"0001.x"_s}));
    QVERIFY(batch.records().empty());
    QVERIFY(!TDocument::hasProcessedFiles(batch.document->sourceObjectArray()));
}

void TestTDocumentRename::logsThatCannotBeMade_data()
{
    const Table<bool> row("canMakeFolder");
    row("no folder", false);
    row("a folder that refuses", true);
}

void TestTDocumentRename::logsThatCannotBeMade()
{
    QFETCH(const bool, canMakeFolder);
    Batch batch;
    batch.canMakeLogs = canMakeFolder;
    if (canMakeFolder)
        batch.disk.fail(Call::Sync, ENOSPC);
    QVERIFY(batch.rename());
    const QString question = batch.host.callsOf(u"stop sheet: This is not a Drill!"_s).value(0);
    QCOMPARE(question.contains("|This run could not be undone. "_L1), canMakeFolder);
    QVERIFY(question.contains("|You are about to live rename 3 files. Are you sure?|"_L1));
    QCOMPARE(batch.onDisk(), (QStringList{u"n1.x"_s, u"n2.x"_s, u"n3.x"_s}));
    QVERIFY(!batch.document->rollbackURL().isValid() && !batch.host.rollBackEnabled);
    QCOMPARE(batch.host.callsOf(u"alert"_s).size(), 0);
}

void TestTDocumentRename::stoppedByTheDisk_data()
{
    const Table<int> row("syncs");
    row("when the run begins", 0);
    row("before a file is moved", 1);
}

void TestTDocumentRename::stoppedByTheDisk()
{
    QFETCH(const int, syncs);
    Batch batch(3);
    // Files with a second name announce where they go; that must reach the disk before they move.
    batch.tree.hardLink(u"files/0000.x"_s, u"second"_s);
    batch.document->removeFiles({0, 1, 2});
    QVERIFY(batch.drop({u"files"_s}));
    batch.host.onSheetShown = [&] {
        batch.disk.fail(Call::Sync, 0, syncs); // these succeed
        batch.disk.fail(Call::Sync, EIO);
    };
    QVERIFY(batch.rename());
    QCOMPARE(batch.onDisk(), (QStringList{u"0000.x"_s, u"0001.x"_s, u"0002.x"_s}));
    QVERIFY(batch.host.callsOf(u"alert: The rename has stopped|"_s).value(0).size() > 40);
    QCOMPARE(batch.host.status, u"Rename stopped: 0 files renamed, 3 not"_s);
    QVERIFY(!batch.host.sheet && batch.host.logWindow);
}

void TestTDocumentRename::emptyLog()
{
    Batch batch;
    qputenv("XDG_DATA_HOME", batch.tree.path().toUtf8());
    QCOMPARE(TDocumentServices::userLogsFolder(), batch.tree.path(u"Tavrin/Logs"_s));
    batch.document->saveRollBackLog({});
    QCOMPARE(batch.logs().size(), 1);
    QVERIFY(batch.records().empty());
    QVERIFY(batch.host.rollBackEnabled);
    const TFileURL before = batch.document->rollbackURL();
    batch.canMakeLogs = false;
    batch.document->saveRollBackLog({});
    QCOMPARE(batch.document->rollbackURL(), before);
}

void TestTDocumentRename::sandbox_data()
{
    const Table<QString, bool> row("chosen", "goesOn");
    row("the very folder", u"files", true);
    row("the same folder by a link", u"link", true);
    row("another folder", u".", false);
    row("cancelled", u"", false);
}

void TestTDocumentRename::sandbox()
{
    QFETCH(const QString, chosen);
    QFETCH(const bool, goesOn);
    const auto restore = qScopeGuard([] {
        qunsetenv("APP_SANDBOX_CONTAINER_ID");
        initSandbox();
    });
    qputenv("APP_SANDBOX_CONTAINER_ID", "x");
    initSandbox();
    DocumentFixture fixture;
    const QString file = fixture.tree.file(u"files/a.x"_s);
    fixture.tree.link(u"files"_s, u"link"_s);
    QVERIFY(fixture.drop({file}) && fixture.useRules({textRule(u"n"_s)}));
    QCOMPARE(fixture.document->theFoldersWeUse().numberOfNonAccess(), 1);
    const QSignalSpy granted(fixture.document.get(), &TDocument::foldersChanged);
    fixture.host.answers = {kCancel};
    fixture.host.choices = {chosen.isEmpty() ? std::nullopt
                                             : std::optional(fixture.urls({chosen}).first())};
    fixture.document->runRename();
    QCOMPARE(fixture.host.calls.back(),
             u"folder panel: Grant access to files|"_s + fixture.tree.path(u"files"_s));
    QCOMPARE(granted.count(), goesOn ? 1 : 0);
    const auto isAsked = [&] {
        fixture.mainThread.pump();
        return fixture.host.answers.empty();
    };
    QCOMPARE(QTest::qWaitFor(isAsked, goesOn ? 5000 : 300), goesOn);
    QCOMPARE(fixture.host.callsOf(u"folder panel"_s).size(), 1);
}

/// Its location has no last component.
void TestTDocumentRename::sandboxWithTheRoot()
{
    const auto restore = qScopeGuard([] {
        qunsetenv("APP_SANDBOX_CONTAINER_ID");
        initSandbox();
    });
    Batch batch;
    qputenv("APP_SANDBOX_CONTAINER_ID", "x");
    initSandbox();
    batch.document->theFoldersWeUse().addFolder(TFileURL::fileURLWithPath(u"/"_s), false);
    batch.host.calls.clear();
    batch.document->runRename();
    batch.mainThread.pump();
    QCOMPARE(batch.host.calls, QStringList{u"folder panel: Grant access to /|/"_s});
}

void TestTDocumentRename::closingDuringARun_data()
{
    QTest::addColumn<bool>("destroy");
    QTest::addColumn<QByteArray>("moment");
    for (const bool destroy : {false, true})
        for (const char *moment : {"question", "sheet", "0000.x", "0007.x", "0199.x", "end"})
            QTest::addRow("%s at %s", destroy ? "destroyed" : "closed", moment)
                << destroy << QByteArray(moment);
}

void TestTDocumentRename::closingDuringARun()
{
    QFETCH(const bool, destroy);
    QFETCH(const QByteArray, moment);
    Batch batch(200);
    std::atomic<bool> isTime = false;
    const auto leave = [&] {
        batch.host.calls.clear();
        if (destroy)
            batch.document.reset();
        else
            batch.document->close();
    };
    const QSignalSpy closed(batch.document.get(), &TDocument::closed);
    batch.host.answers = {kRename};
    if (moment == "question")
        batch.host.holdBack = true;
    if (moment == "sheet")
        batch.host.onSheetShown = [&] { isTime = true; };
    batch.disk.before(
        Call::RenameNoReplace, [&] { isTime = true; }, moment);
    batch.document->runRename();
    QVERIFY(batch.pumpUntil([&] {
        return isTime || batch.host.held.size() == 1 ||
               (batch.host.answers.empty() && batch.host.logWindow);
    }));
    leave();
    batch.host.release();
    const QStringList calls = batch.host.calls;
    QCOMPARE(calls, destroy ? QStringList() : QStringList{u"hide window"_s});
    if (!destroy)
        QVERIFY(batch.pumpUntil([&] { return closed.count() == 1; }));
    batch.mainThread.pump();
    QCOMPARE(batch.host.calls, calls);
    // Every file is there, and what was renamed is in the log. (Nothing was when the run had not
    // begun.)
    QCOMPARE(batch.onDisk().size(), 200);
    const qsizetype renamed = batch.onDisk().filter(u"n"_s).size();
    if (moment == "question" || moment == "end")
        QCOMPARE(renamed, moment == "end" ? 200 : 0);
    QVERIFY(batch.logs().size() == 1 || renamed == 0);
    if (batch.logs().isEmpty())
        return;
    const auto records = readRollbackLog(batch.logs()[0]).value();
    QCOMPARE(std::count_if(records.begin(), records.end(),
                           [](const TRenameTRX &record) { return record.renameComplete; }),
             renamed);
}

QTEST_GUILESS_MAIN(TestTDocumentRename)
#include "tst_tdocument_rename.moc"
