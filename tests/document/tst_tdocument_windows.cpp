// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ManualClock.h"
#include "support/ScriptedHost.h"
#include "support/TemporaryTree.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestTDocumentWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void progressSheet_data();
    void progressSheet();
    void rtf_data();
    void rtf();
    void savingTheLog_data();
    void savingTheLog();
};

void TestTDocumentWindows::progressSheet_data()
{
    QTest::addColumn<qint64>("remaining");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<double>("progress");
    QTest::addColumn<QString>("text");
    QTest::newRow("first step") << 20LL << true << 20.0
                                << u"Processed: 20,    Warnings: 3,    Critical: 1"_s;
    QTest::newRow("nothing left to come")
        << 0LL << false << 0.0 << u"Processed: 0,    Warnings: 0,    Critical: 0"_s;
}

void TestTDocumentWindows::progressSheet()
{
    QFETCH(const qint64, remaining);
    TProgressSheetController sheet(25);
    QTEST(sheet.updateProgress(remaining, 3, 1), "changed");
    QTEST(sheet.progress(), "progress");
    QTEST(sheet.statusText(), "text");
}

void TestTDocumentWindows::rtf_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("encoded");
    QTest::newRow("lines") << u"a\nb"_s << "a\\par\nb"_ba;
    QTest::newRow("control words are text") << u"{\\b}"_s << "\\{\\\\b\\}"_ba;
    QTest::newRow("beyond ASCII") << u"ä€"_s << "\\u228?\\u8364?"_ba;
    QTest::newRow("two units") << u"😀"_s << "\\u-10179?\\u-8704?"_ba;
}

void TestTDocumentWindows::rtf()
{
    QFETCH(const QString, text);
    QFETCH(const QByteArray, encoded);
    const QByteArray whole = TLogWindowController::rtf(text);
    QVERIFY(whole.startsWith("{\\rtf1"));
    QVERIFY2(whole.contains('\n' + encoded + "\n}"), whole.constData());
}

void TestTDocumentWindows::savingTheLog_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<bool>("written");
    QTest::newRow("written") << u"log.rtf"_s << true;
    QTest::newRow("no such folder") << u"nowhere/log.rtf"_s << false;
    QTest::newRow("cancelled") << QString() << false;
}

void TestTDocumentWindows::savingTheLog()
{
    QFETCH(const QString, place);
    QFETCH(const bool, written);
    const TemporaryTree tree;
    const ManualClock clock(TDate::fromSeconds(1'751'551'509));
    ScriptedHost host;
    host.choices.push_back(place.isEmpty()
                               ? std::nullopt
                               : std::optional(TFileURL::fileURLWithPath(tree.path(place))));
    TLogWindowController(u"Rename log:now"_s, u"text"_s, clock).save(host);
    QVERIFY2(host.calls.first().startsWith("save panel: Rename Log - 2:05:09"_L1),
             qPrintable(host.calls.first()));
    QVERIFY(host.calls.first().endsWith("|rtf"_L1));
    QCOMPARE(tree.exists(place) && !place.isEmpty(), written);
    QCOMPARE(host.calls.size(), written || place.isEmpty() ? 1 : 2);
}

QTEST_GUILESS_MAIN(TestTDocumentWindows)
#include "tst_tdocument_windows.moc"
