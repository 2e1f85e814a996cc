// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentHelpers.h"
#include "support/DocumentFixture.h"
#include "support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestTDocumentRuns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void progress_data();
    void progress();
    void gathering();
    void gatheringWaitsForTheDrop();
    void gatheringWithHelpers();
    void cancelledGathering();
    void undoneGathering();
    void cancelledDrop();
    void errorsAndBadge();
    void testRun_data();
    void testRun();
    void testRunOfManyFiles();
    void testRunDuringADrop();
    void cancelledTestRun();
    void testRunOfSlowNames();
    void countersOfTheForms();
    void newestRunWins();
    void partialRun();
    void forecast();
    void keptForecasts_data();
    void keptForecasts();
    void destructionDuringRuns();
};

void TestTDocumentRuns::progress_data()
{
    const Table<int, QString> row("files", "calls");
    row("none", 0, u"progress 0/0");
    row("49", 49, u"progress 0/49");
    row("120", 120, u"progress 0/120|progress 50/120|progress 100/120");
}

void TestTDocumentRuns::progress()
{
    QFETCH(const int, files);
    QFETCH(QString, calls);
    DocumentFixture fixture;
    QVERIFY(fixture.drop(fixture.makeFiles(u"%1"_s, files)));
    fixture.host.calls.clear();
    fixture.document->doBackgroundRun();
    QVERIFY(fixture.settle());
    calls += u"|hide progress|badge %1"_s.arg(files);
    QCOMPARE(fixture.host.calls.join(u'|'), calls);
}

void TestTDocumentRuns::gathering()
{
    DocumentFixture fixture;
    const TMetadataPtr image = TMetadata::fromVariantMap({{u"{Exif}"_s, QVariantMap()}});
    const TMetadataPtr song = TMetadata::fromVariantMap({{u"title"_s, u"T"_s}});
    fixture.metadata.byName = {{u"b.jpg"_s, {image, nullptr}}, {u"c.mp3"_s, {nullptr, song}}};
    fixture.metadata.holdBack = true;
    QStringList paths;
    for (const auto &name : {u"a.txt"_s, u"b.jpg"_s, u"c.mp3"_s, u"d.txt"_s})
        paths += fixture.tree.file(name);
    fixture.document->addFiles(fixture.urls(paths), 0);
    const auto remaining = [&](qint64 count) {
        return fixture.pumpUntil([&] { return fixture.document->remainingAOps() == count; });
    };
    QVERIFY(fixture.pumpUntil([&] { return fixture.metadata.held.size() == 2; }));
    QCOMPARE(fixture.metadata.asked, (QStringList{u"b.jpg"_s, u"c.mp3"_s}));
    QVERIFY(remaining(3)); // the text before the picture is done, the one behind it waits
    QVERIFY(fixture.host.busy);
    QCOMPARE(fixture.host.status, u"gathering secondary file information"_s);
    fixture.document->runRename(); // while names cannot be known, nothing happens
    fixture.metadata.held[0]();
    QVERIFY(remaining(2));
    QVERIFY(!fixture.document->errorLog());
    fixture.metadata.held[1]();
    QVERIFY(fixture.settle());
    const TFileList &files = fixture.document->sourceObjectArray();
    QCOMPARE(files[1]->imageProperties(), image);
    QVERIFY(!files[0]->imageProperties() && !files[1]->ID3());
    QCOMPARE(files[2]->ID3(), song);
    QVERIFY(!fixture.host.busy);
    QCOMPARE(fixture.host.statuses.last(2),
             (QStringList{u"Performing test run"_s, u"Idle. Files: 4"_s}));
    QVERIFY(fixture.document->errorLog());
    QCOMPARE(fixture.host.callsOf(u"progress 0/4"_s).size(), 1);
    QCOMPARE(fixture.host.calls.last(), u"error log 4"_s); // the rename's answer now
}

void TestTDocumentRuns::gatheringWaitsForTheDrop()
{
    DocumentFixture fixture;
    fixture.makeFiles(u"f/%1.jpg"_s, 2000);
    fixture.document->addFiles(fixture.urls({u"f"_s}), 0);
    bool askedEarly = false;
    QVERIFY(fixture.pumpUntil([&] {
        const bool isReceiving = fixture.document->isReceivingDrop();
        askedEarly = askedEarly || (isReceiving && !fixture.metadata.asked.isEmpty());
        return !isReceiving;
    }));
    QVERIFY(!askedEarly);
    QVERIFY(fixture.settle());
    QCOMPARE(fixture.metadata.asked, fixture.names());
    QCOMPARE(fixture.host.callsOf(u"progress 0/"_s).size(), 1);
}

/// The program's own way to metadata, to a helper that answers with the names of the files.
void TestTDocumentRuns::gatheringWithHelpers()
{
    DocumentFixture fixture;
    qputenv("TAVRIN_METADATA_HELPER", TAVRIN_FAKE_HELPER);
    qputenv("FAKE_HELPER_LOG", fixture.tree.file(u"log"_s).toUtf8());
    const auto restore = qScopeGuard([] { qunsetenv("TAVRIN_METADATA_HELPER"); });
    fixture.document = std::make_unique<TDocument>(
        fixture.host, TDocumentServices{fixture.mainThread,
                                        fixture.disk,
                                        fixture.clock,
                                        fixture.notifications,
                                        fixture.worker,
                                        {{}, {}},
                                        {},
                                        gatherersWithHelpers(fixture.mainThread)});
    QVERIFY(fixture.drop({fixture.tree.file(u"a.jpg"_s), fixture.tree.file(u"crash.jpg"_s),
                          fixture.tree.file(u"b.mp3"_s)}));
    const TFileList &files = fixture.document->sourceObjectArray();
    QCOMPARE(files[0]->imageProperties()->value(u"Name"_s).toString(), u"a.jpg"_s);
    QVERIFY(files[1]->imageProperties() && !files[1]->ID3());
    QCOMPARE(files[2]->ID3()->value(u"title"_s).toString(), u"b.mp3"_s);
}

/// What was read stays, the rest can be read later, and the batch can be used meanwhile.
void TestTDocumentRuns::cancelledGathering()
{
    DocumentFixture fixture;
    TDocument &document = *fixture.document;
    const TMetadataPtr image = TMetadata::fromVariantMap({{u"{Exif}"_s, QVariantMap()}});
    for (const auto &name : {u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s})
        fixture.metadata.byName.insert(name, {image, nullptr});
    fixture.metadata.holdBack = true;
    document.addFiles(fixture.urls({fixture.tree.file(u"a.jpg"_s), fixture.tree.file(u"b.jpg"_s),
                                    fixture.tree.file(u"c.jpg"_s)}),
                      0);
    QVERIFY(fixture.pumpUntil([&] { return fixture.metadata.held.size() == 3; }));
    fixture.metadata.held[0]();
    QVERIFY(fixture.pumpUntil([&] { return document.remainingAOps() == 2; }));
    document.runRename();
    QVERIFY(document.hasWorkToCancel());
    document.cancelWork();
    QVERIFY(!document.hasWorkToCancel() && document.lacksMetadata());
    QVERIFY(fixture.settle());
    QVERIFY(document.errorLog() && !fixture.host.busy);
    QVERIFY(fixture.host.callsOf(u"error log"_s).empty()); // the rename is off, too
    QCOMPARE(fixture.host.status, u"Idle. Files: 3"_s);
    const TFileList files = document.sourceObjectArray();
    QVERIFY(files[0]->imageProperties() && !files[1]->imageProperties());
    fixture.metadata.asked.clear();
    fixture.metadata.holdBack = false;
    document.gatherMissing();
    QCOMPARE(fixture.host.busy, true);
    QVERIFY(fixture.settle());
    QCOMPARE(fixture.metadata.asked, (QStringList{u"b.jpg"_s, u"c.jpg"_s}));
    QVERIFY(files[2]->imageProperties() && !document.lacksMetadata() && !fixture.host.busy);
}

/// Nobody waits for files that are not in the list; when they come back, they are read after all.
void TestTDocumentRuns::undoneGathering()
{
    DocumentFixture fixture;
    TDocument &document = *fixture.document;
    const TMetadataPtr image = TMetadata::fromVariantMap({{u"{Exif}"_s, QVariantMap()}});
    fixture.metadata.byName = {{u"a.jpg"_s, {image, nullptr}}, {u"b.jpg"_s, {image, nullptr}}};
    fixture.metadata.holdBack = true;
    document.addFiles(fixture.urls({fixture.tree.file(u"a.jpg"_s)}), 0);
    QVERIFY(fixture.pumpUntil([&] { return document.remainingAOps() == 1; }));
    document.undoStack().undo();
    QCOMPARE(document.remainingAOps(), 0);
    QVERIFY(fixture.settle());
    QVERIFY(!fixture.host.busy);
    QCOMPARE(fixture.host.status, u"Idle. Files: 0"_s);
    document.undoStack().redo();
    document.addFiles(fixture.urls({fixture.tree.file(u"b.jpg"_s)}), 1);
    QVERIFY(fixture.pumpUntil([&] { return fixture.metadata.held.size() == 2; }));
    document.removeFiles({1});
    QCOMPARE(document.remainingAOps(), 1);
    QVERIFY(fixture.host.busy);
    document.undoStack().undo();
    fixture.metadata.holdBack = false;
    QVERIFY(fixture.pumpUntil([&] { return fixture.metadata.held.size() == 2; }));
    for (const auto &answer : std::exchange(fixture.metadata.held, {}))
        answer();
    QVERIFY(fixture.settle());
    for (const auto &file : document.sourceObjectArray())
        QVERIFY(file->imageProperties() != nullptr);
    QCOMPARE(fixture.names(), (QStringList{u"a.jpg"_s, u"b.jpg"_s}));
}

void TestTDocumentRuns::cancelledDrop()
{
    DocumentFixture fixture;
    TDocument &document = *fixture.document;
    fixture.makeFiles(u"f/%1.jpg"_s, 2000);
    document.addFiles(fixture.urls({u"f"_s}), 0);
    document.addFiles(fixture.urls({fixture.tree.file(u"later.txt"_s)}), 0);
    QVERIFY(fixture.pumpUntil([&] { return !document.sourceObjectArray().empty(); }));
    QVERIFY(document.isReceivingDrop());
    const std::size_t come = document.sourceObjectArray().size();
    document.cancelWork();
    QVERIFY(!document.isReceivingDrop());
    QVERIFY(fixture.settle());
    QCOMPARE(document.sourceObjectArray().size(), come);
    QVERIFY(document.errorLog().has_value());
    QVERIFY(fixture.drop({u"f"_s}));
    QCOMPARE(document.sourceObjectArray().size(), 2000U);
}

void TestTDocumentRuns::errorsAndBadge()
{
    DocumentFixture fixture;
    QVERIFY(fixture.drop(fixture.makeFiles(u"%1.x"_s, 3)));
    QCOMPARE(fixture.host.badge, 3); // no rules
    QVERIFY(fixture.useRules({textRule(u"n"_s)}));
    QCOMPARE(fixture.host.badge, 0);
    QCOMPARE(TDocument::numberOfErrorsWithType(1, *fixture.document->errorLog()), 2);
    fixture.document->setDuplicatesAreCritical(true);
    QVERIFY(fixture.settle());
    QCOMPARE(fixture.host.badge, 2);
    QCOMPARE(fixture.document->sourceObjectArray()[0]->errLevel(), 0);
    QCOMPARE(fixture.document->sourceObjectArray()[2]->errLevel(), 2);
    QVERIFY(fixture.document->errorLog()->entries()[0].errDesc.toString().startsWith(
        "Duplicate: \"n\" is already used. Check "_L1));
}

void TestTDocumentRuns::testRun_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ready");
    QTest::addColumn<int>("problems");
    QTest::newRow("clean") << u"n"_s << true << 0;
    QTest::newRow("empty names") << u" "_s << false << 1;
}

void TestTDocumentRuns::testRun()
{
    QFETCH(const QString, text);
    QFETCH(const bool, ready);
    QFETCH(const int, problems);
    DocumentFixture fixture;
    QVERIFY(fixture.drop(fixture.makeFiles(u"%1"_s, 1)));
    fixture.document->setLiveUpdate(false);
    fixture.document->addRules({textRule(text)}, 0);
    QVERIFY(!fixture.document->readyToGo());
    const QSignalSpy redisplays(fixture.document.get(), &TDocument::filesChanged);
    fixture.document->testRun();
    QCOMPARE(fixture.document->readyToGo(), ready);
    QCOMPARE(fixture.targets(), QStringList{text});
    QCOMPARE(fixture.host.calls.back(), u"error log %1"_s.arg(problems));
    QCOMPARE(redisplays.count(), 1);
    fixture.document->showTestRunLog();
    QCOMPARE(fixture.document->readyToGo(), ready);
    if (ready) { // adding files makes a new test necessary
        QVERIFY(fixture.drop(fixture.makeFiles(u"new%1"_s, 1)));
        QVERIFY(!fixture.document->readyToGo());
    }
}

/// It goes on in portions, with the result of one that ran at once.
void TestTDocumentRuns::testRunOfManyFiles()
{
    constexpr int kCount = 20'000;
    DocumentFixture fixture;
    TDocument &document = *fixture.document;
    QVERIFY(fixture.drop(fixture.makeFiles(u"%1"_s, kCount)));
    document.setLiveUpdate(false);
    document.addRules({makeRule(u"Counter"_s), makeRule(u"Original"_s)}, 0);
    fixture.host.calls.clear();
    const QSignalSpy published(&document, &TDocument::errorLogChanged);
    document.testRun();
    QVERIFY(document.isAnalysing() && published.isEmpty());
    fixture.mainThread.post([&] {
        document.addRules({textRule(u"late "_s)}, 0);
        document.runRename(); // waits for the names
    });
    QVERIFY(fixture.pumpUntil([&] { return !fixture.host.callsOf(u"stop sheet"_s).isEmpty(); }));
    QCOMPARE(published.count(), 1);
    QCOMPARE(fixture.host.callsOf(u"error log"_s), QStringList{u"error log 0"_s});
    QVERIFY(document.readyToGo() && !fixture.host.callsOf(u"progress "_s).isEmpty());
    QCOMPARE(fixture.targets()[0], u"late 000010000"_s);
    QCOMPARE(fixture.targets()[kCount - 1], u"late 2000019999"_s);
    // The list may go away under it.
    document.testRun();
    document.removeFiles({0});
    QVERIFY(fixture.settle());
    QCOMPARE(fixture.targets()[0], u"late 000010001"_s);
}

/// New files get their first names from the same rules.
void TestTDocumentRuns::testRunDuringADrop()
{
    constexpr int kCount = 20'000;
    DocumentFixture fixture;
    TDocument &document = *fixture.document;
    fixture.makeFiles(u"f/%1"_s, kCount);
    fixture.makeFiles(u"g/%1.jpg"_s, 5);
    QVERIFY(fixture.drop({u"f"_s}));
    document.setLiveUpdate(false);
    document.addRules({makeRule(u"Counter"_s)}, 0);
    document.testRun();
    document.addFiles({TFileURL::fileURLWithPath(fixture.tree.path(u"g"_s))}, kCount);
    QVERIFY(fixture.pumpUntil([&] { return !fixture.host.callsOf(u"error log"_s).isEmpty(); }));
    QVERIFY(!document.readyToGo());
    const QStringList targets = fixture.targets();
    for (int i = 0; i < kCount; ++i)
        QCOMPARE(targets[i], QString::number(i + 1).rightJustified(5, u'0'));
    QVERIFY(fixture.settle());
    QCOMPARE(document.sourceObjectArray().size(), kCount + 5U);
    QVERIFY(fixture.settle());
}

void TestTDocumentRuns::cancelledTestRun()
{
    DocumentFixture fixture;
    constexpr int kCount = 20'000;
    fixture.makeFiles(u"f/%1"_s, kCount);
    QVERIFY(fixture.drop({u"f"_s}));
    QVERIFY(fixture.useRules({textRule(u"n"_s), makeRule(u"Counter"_s)}));
    TDocument &document = *fixture.document;
    const QStringList before = fixture.targets();
    fixture.host.calls.clear();
    document.testRun();
    QVERIFY(document.hasWorkToCancel());
    document.cancelWork();
    QVERIFY(!document.hasWorkToCancel());
    QVERIFY(fixture.settle());
    QCOMPARE(fixture.targets(), before);
    QVERIFY(fixture.host.callsOf(u"error log"_s).empty());
}

/// Few files may take long as well, and the window has to go on meanwhile.
void TestTDocumentRuns::testRunOfSlowNames()
{
    DocumentFixture fixture;
    QVERIFY(fixture.drop(fixture.makeFiles(u"aaaaaaaaaaaa%1"_s, 3)));
    TDocument &document = *fixture.document;
    document.setLiveUpdate(false);
    document.addRules({patternRule(u"(.*)(.*)(.*)(.*)(.*)(.*)X"_s, u"-"_s)}, 0);
    document.testRun();
    QVERIFY(document.hasWorkToCancel());
    QVERIFY(fixture.settle());
    QCOMPARE(fixture.host.callsOf(u"error log"_s).size(), 1);
}

void TestTDocumentRuns::countersOfTheForms()
{
    DocumentFixture fixture;
    QVERIFY(fixture.drop({fixture.tree.file(u"a.x"_s), fixture.tree.file(u"b.x"_s)}));
    // A copy keeps the counters of extensions, and only the document's own rules are prepared.
    QVERIFY(fixture.useRules({makeRule(u"Counter"_s, {{u"individualFileTypes"_s, true}})}));
    const QStringList fromOne{u"1"_s, u"2"_s};
    QCOMPARE(fixture.targets(), fromOne);
    fixture.document->fullRun();
    QCOMPARE(fixture.targets(), fromOne);
    for (const QStringList &expected : {QStringList{u"3"_s, u"4"_s}, fromOne}) {
        fixture.document->doBackgroundRun();
        QVERIFY(fixture.settle());
        QCOMPARE(fixture.targets(), expected);
    }
}

void TestTDocumentRuns::newestRunWins()
{
    DocumentFixture fixture;
    QVERIFY(fixture.drop(fixture.makeFiles(u"%1"_s, 2000)));
    for (const auto &text : {u"one"_s, u"two"_s, u"three"_s})
        fixture.document->addRules({textRule(text)}, 0);
    fixture.host.calls.clear();
    const QSignalSpy published(fixture.document.get(), &TDocument::errorLogChanged);
    QVERIFY(fixture.settle());
    QCOMPARE(published.count(), 1);
    QCOMPARE(fixture.targets(), QStringList(2000, u"threetwoone"_s));
    QCOMPARE(fixture.host.callsOf(u"progress"_s).size(), 40);
    // What a run has on its way when the next one starts comes too late.
    fixture.document->doBackgroundRun();
    fixture.host.calls.clear();
    QVERIFY(fixture.pumpUntil([&] { return !fixture.host.callsOf(u"progress 50/"_s).isEmpty(); }));
    fixture.host.calls.clear();
    fixture.document->doBackgroundRun();
    QVERIFY(fixture.settle());
    QCOMPARE(fixture.host.callsOf(u"progress"_s).size(), 41);
    QCOMPARE(published.count(), 2);
    // Lists may change while a run is under way; its results still find their entries.
    fixture.document->undoStack().undo();
    fixture.document->setLiveUpdate(false);
    fixture.document->removeFiles({0, 5});
    QVERIFY(fixture.settle());
    QCOMPARE(fixture.targets(), QStringList(1998, u"twoone"_s));
}

void TestTDocumentRuns::partialRun()
{
    DocumentFixture fixture;
    QVERIFY(fixture.drop(fixture.makeFiles(u"%1"_s, 2)));
    QVERIFY(fixture.useRules({textRule(u"old"_s)}));
    const TFileList &files = fixture.document->sourceObjectArray();
    fixture.document->setLiveUpdate(false);
    fixture.document->addRules({textRule(u"new"_s)}, 0);
    fixture.document->partialRunFor({files[1]}, true);
    QCOMPARE(files[1]->attributedTargetName().string(), u"newold"_s);
    QCOMPARE(files[1]->targetName(), u"old"_s);
    QCOMPARE(files[0]->attributedTargetName().string(), u"old"_s);
    QVERIFY(files[1]->errLog().isEmpty());
}

void TestTDocumentRuns::forecast()
{
    DocumentFixture fixture;
    QVERIFY(fixture.drop({fixture.tree.file(u"a.x"_s), fixture.tree.file(u"b.x"_s)}));
    QVERIFY(fixture.useRules({textRule(u"n"_s)}));
    const TFileList &files = fixture.document->sourceObjectArray();
    const auto finalNameIs = [&](std::size_t row, const QString &name) {
        return fixture.pumpUntil([&] {
            const auto forecast = fixture.document->forecastFor(*files[row]);
            return forecast && forecast->finalName == name;
        });
    };
    QVERIFY(finalNameIs(1, u"n-1.x"_s));
    QVERIFY(!fixture.document->forecastFor(*files[0])); // as shown
    fixture.document->setLiveUpdate(false);
    fixture.document->addRules({textRule(u"m"_s)}, 0);
    fixture.document->testRun();
    QVERIFY(finalNameIs(1, u"mn-1.x"_s));
}

void TestTDocumentRuns::keptForecasts_data()
{
    const Table<QString, QString, QString, QString, bool> row("shown", "extension", "finalName",
                                                              "refusal", "isKept");
    row("as shown", u"n", u"", u"n.txt", u"", false);
    row("nothing known", u"n", u"", QString(), u"", false);
    row("numbered", u"n", u"", u"n-12.txt", u"", true);
    row("number with zeros", u"n", u"", u"n-012.txt", u"", true);
    row("number without end", u"n", u"", u"n-4294967297.txt", u"", true);
    row("no number", u"n", u"", u"n-.txt", u"", true);
    row("blanks go", u" n ", u"", u"n.txt", u"", true);
    row("blanks go, numbered", u" n ", u"", u"n-1.txt", u"", true);
    row("other extension", u"n", u"", u"n.TXT", u"", true);
    row("new extension", u"n", u".md", u"n-1.md", u"", true);
    row("shorter than what is shown", u"n.b", u".b", u"n.b", u"", true);
    row("refused", u"n", u"", u"n.txt", u"no", true);
}

void TestTDocumentRuns::keptForecasts()
{
    QFETCH(QString, shown);
    QFETCH(QString, extension);
    QFETCH(QString, finalName);
    QFETCH(QString, refusal);
    TFileObject file(TFileItem{TFileURL::fileURLWithPath(u"/f/a.txt"_s), {}});
    file.setTarget(TAttributedString(shown));
    file.setAttributedTargetExtension(TAttributedString(extension));
    TDocumentForecasts forecasts;
    for (const auto &before : {u"x"_s, u"n-7.txt"_s}) {
        forecasts.insert(file, {before, {}, false});
        forecasts.insert(file, {finalName, refusal, false});
        const auto found = forecasts.find(file);
        QTEST(found.has_value(), "isKept");
        QCOMPARE(found ? found->finalName : finalName, finalName);
        QCOMPARE(found ? found->refusal : refusal, refusal);
    }
    forecasts.remove(file);
    QVERIFY(forecasts.isEmpty());
}

void TestTDocumentRuns::destructionDuringRuns()
{
    for (int moment = 0; moment < 40; ++moment) {
        DocumentFixture fixture;
        fixture.metadata.holdBack = moment % 2 == 0;
        fixture.makeFiles(u"f/%1.jpg"_s, 300);
        fixture.document->addRules({makeRule(u"Counter"_s)}, 0);
        fixture.document->addFiles(fixture.urls({u"f"_s}), 0);
        int steps = 0;
        fixture.pumpUntil([&] { return steps++ >= moment || fixture.document->errorLog(); });
        fixture.host.calls.clear();
        if (moment % 3 == 0) {
            const QSignalSpy closed(fixture.document.get(), &TDocument::closed);
            fixture.document->close();
            fixture.document->close();
            QCOMPARE(closed.count(), 1);
            QCOMPARE(fixture.host.calls, QStringList{u"hide window"_s});
        } else {
            fixture.document.reset();
        }
        const QStringList calls = fixture.host.calls;
        fixture.mainThread.pump(); // what was on its way finds nobody
        QCOMPARE(fixture.host.calls, calls);
    }
}

QTEST_GUILESS_MAIN(TestTDocumentRuns)
#include "tst_tdocument_runs.moc"
