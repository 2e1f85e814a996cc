// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/BatchSorting.h"
#include "document/RenameGuard.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;
using Verdict = RenameGuard::Verdict;

class TestBatchGuards : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checksComeInOrder()
    {
        // Everything is wrong at first; each repair lets the next check speak.
        TErrorLog log;
        log.addErrorOfType(2, u"bad"_s);
        RenameGuard guard;
        guard.batchLog = &log;
        guard.hasProcessedFiles = true;
        guard.running = true;
        guard.inaccessibleFolder = u"Pictures"_s;
        QCOMPARE(guard.check().verdict, Verdict::Nothing);
        guard.analysed = true;
        QCOMPARE(guard.check().verdict, Verdict::ShowErrors);
        guard.skipErrorList = true;
        QCOMPARE(guard.check().title, u"Already Processed"_s);
        guard.hasProcessedFiles = false;
        QCOMPARE(guard.check().title, u"Already Running"_s);
        guard.running = false;
        QCOMPARE(guard.check().title, u"No Rules"_s);
        guard.rules = 1;
        QCOMPARE(guard.check().title, u"Done! ..."_s);
        guard.files = 3;
        QCOMPARE(guard.check().title, u"Too Dangerous To Start"_s);
        QCOMPARE(
            guard.check().text,
            u"I simulated a full renaming run and encountered 1 critical errors. Renaming many "
            "files is serious business, and I will not take that risk. Please resolve any "
            "critical error before trying again."_s);
        log.clear();
        QCOMPARE(guard.check().verdict, Verdict::AskForFolder);
        QCOMPARE(guard.check().text, u"Grant access to Pictures"_s);
        guard.inaccessibleFolder = QString(); // a name like any other
        QCOMPARE(guard.check().verdict, Verdict::AskForFolder);
        guard.inaccessibleFolder.reset();
        QCOMPARE(guard.check().verdict, Verdict::Confirm);
    }

    void confirmationTexts()
    {
        TErrorLog log;
        RenameGuard guard{true, &log, true, false, false, 1, 3, {}};
        QCOMPARE(guard.check().title, u"This is not a Drill!"_s);
        QCOMPARE(guard.check().text, u"You are about to live rename 3 files. Are you sure?"_s);
        log.addErrorOfType(1, u"w"_s);
        log.addErrorOfType(0, u"n"_s);
        QCOMPARE(guard.check().title, u"Really? This is NOT a Drill!"_s);
        QCOMPARE(
            guard.check().text,
            u"You are about to live rename 3 files, while a simulated run turned up 1 (probably) "
            "minor issues. The rename will work, but the results may be suboptimal.\n\nDo you "
            "want to Rename, or Cancel?"_s);
    }

    void sortMenu_data()
    {
        const Table<int, QString> row("item", "order");
        row("name, case ignored", 1, u"aAbB");
        row("name, case significant", 2, u"ABab");
        row("name descending, case ignored", 3, u"bBaA");
        row("name descending, case significant", 4, u"baBA");
        row("target ascending", 5, u"aAbB");
        row("target descending", 6, u"bBaA");
        row("size ascending", 11, u"BbaA");
        row("size descending", 12, u"AabB");
    }

    void sortMenu()
    {
        QFETCH(int, item);
        const auto sortOrder = BatchSorting::orderForMenuItem(item);
        QVERIFY(sortOrder);
        const QString texts = u"baAB"_s;
        const std::vector<BatchSorting::Row> rows{
            {u"b"_s, 1}, {u"a"_s, 2}, {u"A"_s, 3}, {u"B"_s, 0}};
        QString sorted;
        for (const qsizetype index : BatchSorting::sortedOrder(rows, *sortOrder))
            sorted += texts[index];
        QTEST(sorted, "order");
        QVERIFY(!BatchSorting::orderForMenuItem(0));
        QVERIFY(!BatchSorting::orderForMenuItem(15));
    }
};

QTEST_GUILESS_MAIN(TestBatchGuards)
#include "tst_batchguards.moc"
