// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/MetadataGatherer.h"
#include "support/PumpedMainThread.h"
#include "support/TemporaryTree.h"

#include <QTest>

#include <csignal>
#include <semaphore>

using namespace Qt::StringLiterals;
using Metadata = TMetadataSource::Metadata;

namespace {

const QString kFakeHelper = QStringLiteral(TAVRIN_FAKE_HELPER);

std::vector<TFileItem> filesNamed(const QStringList &names)
{
    std::vector<TFileItem> files;
    for (const QString &name : names)
        files.push_back({TFileURL::fileURLWithPath(u"/batch/"_s + name), {}});
    return files;
}

QStringList pictures(int count, const QString &prefix = u"p"_s)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(u"%1%2.jpg"_s.arg(prefix).arg(i));
    return names;
}

QString nameIn(const Metadata &metadata)
{
    return metadata.imageProperties->value(u"Name"_s).toString();
}

} // namespace

/// Gathering with a helper program that does what the names of files say.
class TestMetadataGatherer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void completesInOrder();
    void readsOnlyWhatIsWanted_data();
    void readsOnlyWhatIsWanted();
    void losesOnlyTheFile_data();
    void losesOnlyTheFile();
    void survivesAKilledHelper();
    void goesOnWithoutAHelper_data();
    void goesOnWithoutAHelper();
    void completesOnTheMainThread();
    void stopsAtOnce();

private:
    MetadataGatherer::Settings settings() const;
    /// All results, which must have come file by file.
    std::vector<Metadata> gather(const MetadataGatherer::Settings &settings,
                                 const QStringList &names, QString *problem = nullptr);
    /// What the helpers were asked for, a name a line after the number of the process.
    QList<QByteArray> asked() const { return m_tree->content(u"log"_s).trimmed().split('\n'); }
    pid_t firstHelper() const;
    QStringList logLines();

    std::unique_ptr<TemporaryTree> m_tree;
    std::mutex m_mutex;
    QStringList m_logLines;
};

void TestMetadataGatherer::init()
{
    m_tree = std::make_unique<TemporaryTree>();
    qputenv("FAKE_HELPER_LOG", m_tree->file(u"log"_s).toUtf8());
    qunsetenv("FAKE_HELPER");
    m_logLines.clear();
    setLogSink([this](const QString &line) {
        const std::lock_guard lock(m_mutex);
        m_logLines.append(line);
    });
}

void TestMetadataGatherer::cleanup()
{
    setLogSink({});
}

QStringList TestMetadataGatherer::logLines()
{
    const std::lock_guard lock(m_mutex);
    return m_logLines;
}

MetadataGatherer::Settings TestMetadataGatherer::settings() const
{
    MetadataGatherer::Settings settings;
    settings.helper = kFakeHelper;
    settings.helpers = 3;
    settings.timePerFile = std::chrono::milliseconds(1500);
    settings.console = {};
    return settings;
}

std::vector<Metadata> TestMetadataGatherer::gather(const MetadataGatherer::Settings &settings,
                                                   const QStringList &names, QString *problem)
{
    std::vector<Metadata> results;
    std::binary_semaphore done(0);
    MetadataGatherer gatherer(settings, [&](qsizetype file, const Metadata &metadata) {
        if (file == static_cast<qsizetype>(results.size()))
            results.push_back(metadata);
        if (file == names.size() - 1)
            done.release();
    });
    gatherer.add(filesNamed(names.first(1)));
    const std::vector<TFileItem> others = filesNamed(names.sliced(1));
    gatherer.addBorrowed(others);
    if (!done.try_acquire_for(std::chrono::seconds(60)))
        return {};
    if (problem != nullptr)
        *problem = gatherer.problem();
    return results;
}

pid_t TestMetadataGatherer::firstHelper() const
{
    return asked().first().split(' ').first().toInt();
}

void TestMetadataGatherer::completesInOrder()
{
    QStringList names;
    for (int i = 0; i < 120; ++i)
        names.append(u"%1%2.%3"_s.arg(i % 7 == 0 ? u"slow"_s : u"p"_s)
                         .arg(i)
                         .arg(i % 3 == 0 ? u"txt"_s : u"jpg"_s));
    const std::vector<Metadata> results = gather(settings(), names);
    QCOMPARE(results.size(), 120U);
    for (qsizetype i = 0; i < names.size(); ++i) {
        const Metadata &metadata = results[static_cast<std::size_t>(i)];
        QCOMPARE(metadata.imageProperties != nullptr, names[i].endsWith(u"jpg"_s));
        QVERIFY(!metadata.imageProperties || nameIn(metadata) == names[i]);
    }
    QCOMPARE(asked().size(), 80);
    QCOMPARE(logLines(), QStringList());
}

void TestMetadataGatherer::readsOnlyWhatIsWanted_data()
{
    QTest::addColumn<uint>("kinds");
    QTest::addColumn<bool>("image");
    QTest::addColumn<bool>("media");
    QTest::newRow("images") << uint(MetadataGatherer::ImageProperties) << true << false;
    QTest::newRow("media") << uint(MetadataGatherer::Media) << false << true;
}

void TestMetadataGatherer::readsOnlyWhatIsWanted()
{
    QFETCH(uint, kinds);
    MetadataGatherer::Settings wanted = settings();
    wanted.kinds = MetadataGatherer::Kinds::fromInt(kinds);
    const auto results = gather(wanted, {u"a.jpg"_s, u"b.mp3"_s, u"c.txt"_s, u"d.mkv"_s});
    QCOMPARE(results.size(), 4U);
    QTEST(results[0].imageProperties != nullptr, "image");
    QTEST(results[1].id3 != nullptr, "media");
    QTEST(results[3].id3 != nullptr, "media");
    QVERIFY(!results[0].id3 && !results[1].imageProperties);
    QVERIFY(!results[2].id3 && !results[2].imageProperties);
}

void TestMetadataGatherer::losesOnlyTheFile_data()
{
    QTest::addColumn<QString>("bad");
    QTest::addColumn<QString>("reason");
    for (const QString &kind : {u"crash"_s, u"nonsense"_s, u"wrong"_s, u"huge"_s})
        QTest::newRow(qPrintable(kind)) << kind << u"failed"_s;
    QTest::newRow("stall") << u"stall"_s << u"too long"_s;
}

void TestMetadataGatherer::losesOnlyTheFile()
{
    QFETCH(QString, bad);
    QFETCH(QString, reason);
    QStringList names = pictures(40);
    names[0] = bad + u".jpg"_s;
    names[17] = bad + u".mp3"_s;
    const std::vector<Metadata> results = gather(settings(), names);
    QCOMPARE(results.size(), 40U);
    for (qsizetype i = 0; i < names.size(); ++i) {
        if (i != 0 && i != 17)
            QCOMPARE(nameIn(results[static_cast<std::size_t>(i)]), names[i]);
    }
    QVERIFY(results[0].imageProperties->isEmpty());
    QCOMPARE(results[17].id3->toVariantMap(),
             (QVariantMap{{u"duration"_s, u"00.00"_s}, {u"durationHMS"_s, u"00.00.00"_s}}));
    const QStringList lines = logLines();
    QCOMPARE(lines.size(), 2);
    for (const QString &path : {u"/batch/"_s + names[0], u"/batch/"_s + names[17]})
        QCOMPARE(lines.filter(path).filter(reason).size(), 1);
    // Those that waited in the helper were asked for again, the file itself was not.
    QCOMPARE(m_tree->content(u"log"_s).count(' ' + names[0].toUtf8() + '\n'), 1);
}

void TestMetadataGatherer::survivesAKilledHelper()
{
    MetadataGatherer::Settings one = settings();
    one.helpers = 1;
    const std::jthread killer([this](const std::stop_token &stop) {
        while (asked().size() < 5 && !stop.stop_requested())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ::kill(firstHelper(), SIGKILL);
    });
    const std::vector<Metadata> results = gather(one, pictures(30, u"slow"_s));
    QCOMPARE(results.size(), 30U);
    const auto lost = std::count_if(results.begin(), results.end(), [](const Metadata &metadata) {
        return metadata.imageProperties->isEmpty();
    });
    QCOMPARE(lost, 1);
    QCOMPARE(logLines().size(), 1);
}

void TestMetadataGatherer::goesOnWithoutAHelper_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QByteArray>("mood");
    QTest::newRow("missing") << u"/nowhere/helper"_s << QByteArray();
    QTest::newRow("no program") << u"/dev/null"_s << QByteArray();
    QTest::newRow("ends at once") << kFakeHelper << QByteArray("mute");
    QTest::newRow("another version") << kFakeHelper << QByteArray("newer");
}

void TestMetadataGatherer::goesOnWithoutAHelper()
{
    QFETCH(QString, program);
    QFETCH(QByteArray, mood);
    qputenv("FAKE_HELPER", mood);
    MetadataGatherer::Settings without = settings();
    without.helper = program;
    QString problem;
    const std::vector<Metadata> results = gather(without, pictures(20), &problem);
    QCOMPARE(results.size(), 20U);
    for (const Metadata &metadata : results)
        QVERIFY(metadata.imageProperties->isEmpty());
    QVERIFY2(problem.contains(program), qPrintable(problem));
    QCOMPARE(logLines().size(), 1);
    QVERIFY(logLines().first().contains(problem));
}

void TestMetadataGatherer::completesOnTheMainThread()
{
    PumpedMainThread door;
    MetadataGatherer::Settings onMain = settings();
    onMain.mainThread = &door;
    std::vector<qsizetype> completed;
    std::unique_ptr<MetadataGatherer> gatherer;
    const auto complete = [&](qsizetype file, const Metadata &metadata) {
        QVERIFY(door.isMainThread());
        QCOMPARE(nameIn(metadata), u"p%1.jpg"_s.arg(file));
        completed.push_back(file);
        if (file == 10)
            gatherer.reset();
    };
    gatherer = std::make_unique<MetadataGatherer>(onMain, complete);
    gatherer->add(filesNamed(pictures(100)));
    QVERIFY(door.pumpUntil([&] { return !gatherer; }));
    door.pump();
    QCOMPARE(completed.size(), 11U);
}

void TestMetadataGatherer::stopsAtOnce()
{
    MetadataGatherer::Settings patient = settings();
    patient.timePerFile = std::chrono::hours(1);
    auto gatherer = std::make_unique<MetadataGatherer>(
        patient, [](qsizetype, const Metadata &) { QFAIL("nothing can be read"); });
    gatherer->add(filesNamed(pictures(50, u"stall"_s)));
    QTRY_VERIFY(m_tree->content(u"log"_s).count('\n') > 0);
    gatherer.reset();
    for (const QByteArray &line : asked())
        QCOMPARE(::kill(line.split(' ').first().toInt(), 0), -1);
}

QTEST_GUILESS_MAIN(TestMetadataGatherer)
#include "tst_metadatagatherer.moc"
