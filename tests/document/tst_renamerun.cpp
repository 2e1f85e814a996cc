// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/RollbackLog.h"
#include "rollback/RollbackRun.h"
#include "support/Rules.h"
#include "support/RunFixture.h"
#include "support/Table.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <cerrno>

using namespace Qt::StringLiterals;
using Call = FaultyFileManager::Call;

class TestRenameRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finalNames_data()
    {
        const Table<QStringList, TRuleList, qint64, qint64, QStringList> row(
            "files", "rules", "extensionMethod", "compliance", "names");
        const TRulePtr counter = makeRule(u"Counter"_s);
        const TRulePtr original = makeRule(u"Original"_s);
        row("distinct", {u"a.x"_s, u"b.x"_s}, TRuleList{textRule(u"n "_s), counter}, 0LL, 0LL,
            {u"n 1.x"_s, u"n 2.x"_s});
        row("one name for all", {u"a.x"_s, u"b.x"_s, u"c.y"_s}, TRuleList{textRule(u"n"_s)}, 0LL,
            0LL, {u"n.x"_s, u"n-1.x"_s, u"n.y"_s});
        row("the file itself counts as taken", {u"a.x"_s}, TRuleList{original}, 0LL, 0LL,
            {u"a-1.x"_s});
        row("earlier moves free names", {u"1.x"_s, u"2.x"_s},
            TRuleList{makeRule(u"Counter"_s, {{u"startValue"_s, 0}})}, 0LL, 0LL,
            {u"0.x"_s, u"1.x"_s});
        row("stripped: tested with the dot, so the name is free", {u"a.x"_s}, TRuleList{original},
            3LL, 0LL, {u"a"_s});
        row("stripped: a taken bare name is not noticed by the test, so the move fails",
            {u"a.x"_s, u"b"_s}, TRuleList{textRule(u"b"_s)}, 3LL, 0LL, {u"!b"_s, u"b"_s});
        row("onto itself without extension", {u"a"_s}, TRuleList{original}, 0LL, 0LL, {u"a"_s});
        row("a slash is refused whatever the options say", {u"a.x"_s},
            TRuleList{textRule(u"../b"_s)}, 0LL, 1LL, {u"!../b.x"_s});
        row("dots alone are no name", {u"a"_s}, TRuleList{textRule(u".."_s)}, 0LL, 0LL, {u"!.."_s});
        row("a lone dot meets the parent folder", {u"a"_s, u"b"_s}, TRuleList{textRule(u"."_s)},
            0LL, 0LL, {u".-1"_s, u"!.-1"_s});
        row("255 bytes fit", {u"a.x"_s}, TRuleList{textRule(QString(253, u'b'))}, 0LL, 0LL,
            {QString(253, u'b') + u".x"_s});
        row("256 bytes do not", {u"a.x"_s}, TRuleList{textRule(QString(127, u'ä'))}, 0LL, 0LL,
            {u'!' + QString(127, u'ä') + u".x"_s});
        row("nothing left of the name", {u"a.x"_s}, TRuleList{textRule(u"  "_s)}, 0LL, 0LL,
            {u"SafeName.x"_s});
        row("a leading dash is a name like any other", {u"a.x"_s}, TRuleList{textRule(u"-rf"_s)},
            0LL, 0LL, {u"-rf.x"_s});
    }

    void finalNames()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, names);
        QFETCH(qint64, extensionMethod);
        QFETCH(qint64, compliance);
        RunFixture fixture;
        fixture.rules =
            *static_cast<const TRuleList *>(QTest::qData("rules", qMetaTypeId<TRuleList>()));
        fixture.handler.setHandlingMethod(extensionMethod);
        fixture.options.compliance = compliance;
        fixture.makeFiles(files);
        fixture.expand();
        QCOMPARE(fixture.forecast(), names);
        const TRenameSummary summary = fixture.run();
        QCOMPARE(fixture.reported(), names);
        const qsizetype failed = names.filter(QRegularExpression(u"^!"_s)).size();
        QCOMPARE(summary.failed, failed);
        QCOMPARE(summary.renamed, names.size() - failed);
        // Contents tell that every file is where the report says, and that none was overwritten.
        for (qsizetype i = 0; i < files.size(); ++i) {
            const QString name = names[i].startsWith(u'!') ? files[i] : names[i];
            QCOMPARE(fixture.tree.content(u"files/"_s + name), files[i].toUtf8());
        }

        QCOMPARE(fixture.names().size(), files.size());
    }

    void changedSpellingsWhereCaseDoesNotCount()
    {
        RunFixture fixture;
        fixture.disk.ignoreCase();
        fixture.rules = {makeRule(u"Original"_s, {{u"caseConversion"_s, 1}})};
        fixture.makeFiles({u"Ab"_s, u"bB"_s});
        fixture.expand();
        const QStringList names{u"AB"_s, u"BB"_s};
        QCOMPARE(fixture.forecast(), names);
        QCOMPARE(fixture.run().renamed, 2);
        QCOMPARE(fixture.names(), names);
    }

    void forecastEqualsRunOnRandomBatches_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 40; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }

    void forecastEqualsRunOnRandomBatches()
    {
        // Names from a tiny alphabet, so that chains, collisions and freed names are the rule.
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        RunFixture fixture;
        QStringList names;
        const QStringList extensions{u""_s, u".x"_s, u".y"_s, u".X"_s};
        for (int i = 0; i < 14; ++i) {
            const QString suffix = random.bounded(3) == 0 ? u"-1"_s : u""_s;
            names += QString(QChar(u'a' + random.bounded(4))) + suffix +
                     extensions[random.bounded(extensions.size())];
        }
        names.removeDuplicates();
        fixture.makeFiles(names);
        fixture.expand();
        const QVariantMap replace{{u"stringToLookFor"_s, QString(QChar(u'a' + random.bounded(4)))},
                                  {u"stringToReplace"_s, QString(QChar(u'a' + random.bounded(4)))},
                                  {u"dropFromEnd"_s, random.bounded(2) * 2}};
        fixture.rules = {makeRule(u"Original"_s, replace)};
        fixture.handler.setHandlingMethod(random.bounded(4));
        fixture.handler.setReplacer(u"x"_s);
        fixture.options.keepUnchanged = random.bounded(2) == 1;
        const QStringList forecast = fixture.forecast();
        const TRenameSummary summary = fixture.run();
        QCOMPARE(fixture.reported(), forecast);
        QCOMPARE(fixture.names().size(), names.size());
        undo(fixture, summary.rollbackLog, true);
        QCOMPARE(fixture.names(), [&] {
            names.sort();
            return names;
        }());
        for (const QString &name : names)
            QCOMPARE(fixture.tree.content(u"files/"_s + name), name.toUtf8());
    }

    void textLogAndRecords()
    {
        RunFixture fixture;
        fixture.makeFiles({u"a.x"_s, u"b.x"_s});
        fixture.expand();
        fixture.rules = {textRule(u"n"_s)};
        fixture.tree.remove(u"files/b.x"_s);
        const TRenameSummary summary = fixture.run();
        const QString folder = fixture.tree.path(u"files/"_s);
        QVERIFY2(fixture.textLog.startsWith(u"Job started at "_s), qPrintable(fixture.textLog));
        QVERIFY(fixture.textLog.contains(u", scheduling 2 renames.\n\nrenamed "_s + folder +
                                         u"a.x to "_s + folder + u"n.x\n"_s));
        QVERIFY(fixture.textLog.contains(
            u"b: target name 'n' isn't unique, changed to 'n-1'\n*** FAILURE: renaming "_s +
            folder + u"b.x to "_s + folder + u"n-1.x\n"_s + fixture.reports[1].failure +
            u"\n\n"_s));
        QVERIFY(fixture.textLog.contains(u"\n\nJob finished at "_s));
        QVERIFY(!fixture.reports[1].failure.isEmpty());
        QCOMPARE(summary.warnings, 1);
        QCOMPARE(summary.criticals, 1);

        QCOMPARE(QFileInfo(summary.rollbackLog).fileName(),
                 u"Rename Batch Run - 2025-07-03, 14.05.09 (rollback data).renameLog"_s);
        const auto records = readRollbackLog(summary.rollbackLog);
        QVERIFY2(records, qPrintable(records.message()));
        QCOMPARE(records.value().size(), 2U);
        const TRenameTRX &done = records.value()[0];
        const TRenameTRX &failed = records.value()[1];
        QCOMPARE(done.originalPath, folder + u"a.x"_s);
        QCOMPARE(done.renamedURL.path(), folder + u"n.x"_s);
        QVERIFY(done.renameComplete && done.insured);
        QVERIFY(!failed.renameComplete && failed.insured);
        QCOMPARE(failed.errorLog.begin()->errDesc.toString(),
                 u"'n' is not unique. Modified to 'n-1'"_s);
    }

    void unchangedNames()
    {
        RunFixture fixture;
        fixture.makeFiles({u"1.x"_s, u"b.x"_s});
        fixture.expand();
        fixture.rules = {makeRule(u"Counter"_s)};
        fixture.options.keepUnchanged = true;
        const TRenameSummary summary = fixture.run();
        QCOMPARE(fixture.names(), (QStringList{u"1.x"_s, u"2.x"_s}));
        QCOMPARE(summary.unchanged, 1);
        QCOMPARE(summary.renamed, 1);
        QVERIFY(fixture.reports[0].unchanged && !fixture.reports[0].critical);
        QCOMPARE(readRollbackLog(summary.rollbackLog).value().size(), 1U);
    }

    void targetThatAppearsMeanwhile()
    {
        RunFixture fixture;
        fixture.makeFiles({u"a.x"_s, u"b"_s});
        fixture.expand();
        fixture.rules = {textRule(u"n"_s)};
        fixture.disk.before(
            Call::RenameNoReplace, [&] { fixture.tree.file(u"files/n.x"_s, "theirs"); }, "a.x");
        fixture.disk.before(
            Call::RenameNoReplace, [&] { fixture.tree.file(u"files/n"_s, "theirs"); }, "b");
        fixture.run();
        QCOMPARE(fixture.reported(), (QStringList{u"n-1.x"_s, u"!n"_s}));
        QCOMPARE(fixture.tree.content(u"files/n.x"_s), "theirs");
        QCOMPARE(fixture.tree.content(u"files/n"_s), "theirs");
        QCOMPARE(fixture.tree.content(u"files/b"_s), "b");
        QVERIFY(fixture.reports[0].warning);
        QVERIFY(fixture.textLog.contains(u"a: target name 'n' isn't unique, changed to 'n-1'\n"_s));
    }

    void failedMovesGoOn()
    {
        RunFixture fixture;
        fixture.makeFiles({u"a.x"_s, u"b.x"_s, u"c.x"_s});
        fixture.expand();
        fixture.rules = {textRule(u"n"_s)};
        fixture.disk.fail(Call::RenameNoReplace, EACCES, 1, "a.x");
        const TRenameSummary summary = fixture.run();
        // The name that the failed file did not take is free for the next.
        QCOMPARE(fixture.reported(), (QStringList{u"!n.x"_s, u"n.x"_s, u"n-1.x"_s}));
        QCOMPARE(summary.failed, 1);
    }

    void abortKeepsWhatWasDone()
    {
        RunFixture fixture;
        fixture.makeFiles({u"a.x"_s, u"b.x"_s, u"c.x"_s});
        fixture.expand();
        fixture.rules = {makeRule(u"Counter"_s)};
        const TRenameSummary summary = fixture.run("a.x");
        QVERIFY(summary.interrupted);
        QCOMPARE(summary.renamed, 1);
        QCOMPARE(fixture.names(), (QStringList{u"1.x"_s, u"b.x"_s, u"c.x"_s}));
        QCOMPARE(readRollbackLog(summary.rollbackLog).value().size(), 1U);
    }

    void fallbacksAnnounceIntents()
    {
        // Hard-linked twins: the inode will not tell them apart, so intents are synced before they
        // move.
        RunFixture fixture;
        fixture.makeFiles({u"a.x"_s, u"z.x"_s});
        fixture.tree.hardLink(u"files/a.x"_s, u"files/b.x"_s);
        fixture.expand();
        fixture.rules = {textRule(u"n"_s)};
        const QStringList forecast = fixture.forecast();
        TRenameSummary summary = fixture.run();
        QCOMPARE(fixture.reported(), forecast);
        QCOMPARE(fixture.names(), (QStringList{u"n-1.x"_s, u"n-2.x"_s, u"n.x"_s}));
        undo(fixture, summary.rollbackLog, false);
        QCOMPARE(fixture.names(), (QStringList{u"a.x"_s, u"b.x"_s, u"z.x"_s}));

        // When the intents cannot be synced, nothing of the group moves, and the run says why.
        fixture.expand();
        fixture.disk.reset();
        auto run = fixture.makeRun();
        QVERIFY(run->prepare() && run->begin());
        fixture.disk.fail(Call::Sync, EIO);
        fixture.reports.clear();
        summary = run->run([&](const TRenameReport &report) { fixture.reports.push_back(report); },
                           std::atomic<bool>(false));
        QVERIFY(summary.interrupted);
        QVERIFY(!summary.problem.isEmpty());
        QCOMPARE(fixture.reports.size(), 0U);
        QCOMPARE(fixture.names(), (QStringList{u"a.x"_s, u"b.x"_s, u"z.x"_s}));
    }

    void nothingMovesWithoutAPlan_data()
    {
        const Table<bool, int> row("logsFolderIsAFile", "syncs");
        row("logs folder cannot be made", true, 0);
        row("plan cannot be synced", false, 0);
        row("the run cannot begin", false, 1);
    }

    void nothingMovesWithoutAPlan()
    {
        QFETCH(bool, logsFolderIsAFile);
        QFETCH(int, syncs);
        RunFixture fixture;
        fixture.makeFiles({u"a.x"_s});
        fixture.expand();
        fixture.rules = {textRule(u"n"_s)};
        if (logsFolderIsAFile)
            fixture.tree.file(u"Logs"_s);
        else
            fixture.tree.folder(u"Logs/.running"_s); // making it takes syncs, too
        fixture.disk.fail(Call::Sync, 0, syncs);     // the first ones succeed
        fixture.disk.fail(Call::Sync, ENOSPC);
        const TRenameSummary summary = fixture.run();
        QVERIFY(!summary.problem.isEmpty());
        QCOMPARE(fixture.names(), QStringList{u"a.x"_s});
        QVERIFY(fixture.reports.empty());
        QVERIFY(logsFolderIsAFile || fixture.tree.list(u"Logs/.running"_s).isEmpty());
    }

    void runsBeginAtTheirStart_data()
    {
        const Table<bool> row("begin");
        row("by itself", false);
        row("by the caller", true);
    }

    /// Until then a run that is cut off was none, though nobody will be asked any more.
    void runsBeginAtTheirStart()
    {
        QFETCH(bool, begin);
        RunFixture fixture;
        fixture.makeFiles({u"a.x"_s});
        fixture.expand();
        fixture.rules = {textRule(u"n"_s)};
        const auto journals = [&fixture] {
            return fixture.tree.list(u"Logs/.running"_s).filter(u".journal"_s).size();
        };
        const auto run = fixture.makeRun();
        QVERIFY(run->prepare());
        QCOMPARE(journals(), 0);
        QVERIFY(!begin || run->begin());
        QCOMPARE(journals(), begin ? 1 : 0);
        qsizetype duringTheMove = 0;
        fixture.disk.before(Call::RenameNoReplace, [&] { duringTheMove = journals(); });
        QCOMPARE(run->run({}, std::atomic<bool>(false)).renamed, 1);
        QCOMPARE(duringTheMove, 1);
    }

    void foldersThatCannotBeChanged_data()
    {
        const Table<int, int, bool> row("access", "move", "forecastRefuses");
        row("no permission", EACCES, EACCES, true);
        row("read-only", EROFS, EROFS, true);
        row("gone", ENOENT, ENOENT, true);
        row("says less than it lets be done", EACCES, 0, true);
        row("says more than it lets be done", 0, EROFS, false);
    }

    /// The run tries; what it says is the move's own error.
    void foldersThatCannotBeChanged()
    {
        QFETCH(int, access);
        QFETCH(int, move);
        QFETCH(bool, forecastRefuses);
        RunFixture fixture;
        fixture.makeFiles({u"a.x"_s, u"b.x"_s, u"c"_s});
        fixture.expand();
        fixture.rules = {textRule(u"n"_s)};
        if (access != 0)
            fixture.disk.fail(Call::Access, access);
        if (move != 0)
            fixture.disk.fail(Call::RenameNoReplace, move);
        const QStringList refused{u"!n.x"_s, u"!n.x"_s, u"!n"_s};
        const QStringList renamed{u"n.x"_s, u"n-1.x"_s, u"n"_s};
        QCOMPARE(fixture.forecast(), forecastRefuses ? refused : renamed);
        QCOMPARE(fixture.refusals,
                 QStringList(3, forecastRefuses ? textForErrno(access) : QString()));
        fixture.run();
        QCOMPARE(fixture.reported(), move != 0 ? refused : renamed);
        for (const TRenameReport &report : fixture.reports)
            QCOMPARE(report.failure, move != 0 ? textForErrno(move) : QString());
    }

    void foldersThatVanish()
    {
        RunFixture fixture;
        fixture.makeFiles({u"a.x"_s, u"b.x"_s});
        fixture.expand();
        fixture.rules = {textRule(u"n"_s)};
        QVERIFY(QFile::rename(fixture.tree.path(u"files"_s), fixture.tree.path(u"elsewhere"_s)));
        QCOMPARE(fixture.run().failed, 2);
        for (const TRenameReport &report : fixture.reports)
            QCOMPARE(report.failure, textForErrno(ENOENT));
        QCOMPARE(fixture.tree.list(u"elsewhere"_s), (QStringList{u"a.x"_s, u"b.x"_s}));
    }

    void patternThatTakesTooLong()
    {
        RunFixture fixture;
        const QString slow = QString(60, u'a') + u".x"_s;
        fixture.makeFiles({slow, u"b.x"_s});
        fixture.expand();
        fixture.rules = {textRule(u"n"_s), patternRule(u"(a+)+c"_s, u""_s)};
        const TRenameSummary summary = fixture.run();
        QCOMPARE(fixture.names(), (QStringList{slow, u"nb.x"_s}));
        QCOMPARE(summary.failed, 1);
        QCOMPARE(fixture.reports[0].errors.mostCriticalError(), 2);
        // The record is like that of any file whose move failed.
        const auto records = readRollbackLog(summary.rollbackLog);
        QCOMPARE(records.value().size(), 2U);
        QVERIFY(records.value()[0].insured && !records.value()[0].renameComplete);
        QCOMPARE(records.value()[0].renamedURL.path(), fixture.tree.path(u"files/"_s + slow));
    }

    void undoGivesEverythingBack()
    {
        // A chain comes back whole in reverse; in log order nothing is lost.
        for (const bool reverse : {false, true}) {
            RunFixture fixture;
            const QStringList names{u"1.x"_s, u"2.x"_s, u"3.x"_s};
            fixture.makeFiles(names);
            fixture.expand();
            fixture.rules = {makeRule(u"Counter"_s, {{u"startValue"_s, 0}})};
            const TRenameSummary summary = fixture.run();
            QCOMPARE(fixture.names(), (QStringList{u"0.x"_s, u"1.x"_s, u"2.x"_s}));
            undo(fixture, summary.rollbackLog, reverse);
            QCOMPARE(fixture.names().size(), 3);
            if (!reverse)
                continue;
            for (const QString &name : names)
                QCOMPARE(fixture.tree.content(u"files/"_s + name), name.toUtf8());
        }
    }

private:
    static void undo(RunFixture &fixture, const QString &log, bool reverse)
    {
        auto records = readRollbackLog(log);
        QVERIFY2(records, qPrintable(records.message()));
        RollbackRun rollback(fixture.disk, std::move(records).value());
        rollback.processLog({});
        rollback.performRollBack({}, std::atomic<bool>(false), reverse);
    }
};

QTEST_GUILESS_MAIN(TestRenameRun)
#include "tst_renamerun.moc"
