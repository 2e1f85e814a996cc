// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentFactCollector.h"
#include "support/PumpedMainThread.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

using Meanwhile = std::function<void(TFileList &files, TDocumentFactCollector &facts)>;

Q_DECLARE_METATYPE(Meanwhile)

namespace {

/// Enough for several portions on any machine.
constexpr std::size_t kFiles = 600'000;

TFileList manyFiles()
{
    const TFolderPtr folder = std::make_shared<const TFolder>(u"/f"_s);
    TFileList kinds;
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s})
        kinds.push_back(
            std::make_shared<TFileObject>(TFileItem{TFileURL(folder, name), TFileFacts()}));
    TFileList files;
    for (std::size_t i = 0; i < kFiles; ++i)
        files.push_back(kinds[i % kinds.size()]);
    return files;
}

void addMetadata(TFileObject &file)
{
    file.setImageProperties(TMetadata::fromVariantMap({}));
}

} // namespace

class TestFactCollector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatHappensBetweenPortions_data()
    {
        const Table<Meanwhile, bool, bool> row("meanwhile", "comesByItself", "staysGood");
        row("nothing", Meanwhile([](TFileList &, TDocumentFactCollector &) {}), true, true);
        row("a file goes", Meanwhile([](TFileList &files, TDocumentFactCollector &facts) {
                files.erase(files.begin());
                facts.listChanged();
            }),
            true, true);
        row("all files go", Meanwhile([](TFileList &files, TDocumentFactCollector &facts) {
                files.clear();
                facts.listChanged();
            }),
            true, true);
        row("metadata come", Meanwhile([](TFileList &files, TDocumentFactCollector &facts) {
                addMetadata(*files.front());
                facts.metadataChanged();
            }),
            true, false);
        row("stopped, then metadata come",
            Meanwhile([](TFileList &files, TDocumentFactCollector &facts) {
                facts.stop();
                addMetadata(*files.front());
                facts.metadataChanged();
            }),
            false, true);
        row("forgotten", Meanwhile([](TFileList &, TDocumentFactCollector &facts) {
                facts.stop();
                facts.forgetCollected();
            }),
            false, true);
    }

    void whatHappensBetweenPortions()
    {
        QFETCH(Meanwhile, meanwhile);
        QFETCH(bool, comesByItself);
        QFETCH(bool, staysGood);
        PumpedMainThread mainThread;
        TFileList files = manyFiles();
        TDocumentFactCollector collector(std::make_shared<TDocumentMail>(mainThread), files);
        int ready = 0;
        const auto collect = [&] { collector.collect([&ready] { ++ready; }); };
        QVERIFY(!collector.areAtHand());
        collect();
        QVERIFY(collector.isCollecting());
        meanwhile(files, collector);
        mainThread.pump();
        QCOMPARE(ready, comesByItself ? 1 : 0);
        if (!comesByItself) {
            collect();
            mainThread.pump();
            QCOMPARE(ready, 1);
        }
        QVERIFY(!collector.isCollecting());
        QCOMPARE(collector.areAtHand(), staysGood || files.empty());

        const TDocumentFacts &facts = collector.facts();
        QCOMPARE(*collector.files(), files);
        QCOMPARE(facts->count(), files.size());
        for (std::size_t i = 0; i < files.size(); ++i) {
            if (facts->items()[i].url.lastPathComponent() != files[i]->fileName())
                QFAIL("another file's facts");
            if (facts->metadata(i).imageProperties != files[i]->imageProperties())
                QFAIL("outdated metadata");
        }
    }
};

QTEST_GUILESS_MAIN(TestFactCollector)
#include "tst_factcollector.moc"
