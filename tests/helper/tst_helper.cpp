// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/FileExpansion.h"
#include "metadata/HelperProcess.h"
#include "metadata/MetadataGatherer.h"
#include "platform/MetadataProtocol.h"
#include "support/TemporaryTree.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <semaphore>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using Metadata = TMetadataSource::Metadata;

namespace {

QByteArray dataFile(const QString &name)
{
    QFile file(QStringLiteral(TAVRIN_SOURCE_DIR "/tests/data/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString valueOf(const TMetadataPtr &metadata, const QString &dictionary, const QString &key)
{
    const QVariant value =
        dictionary.isEmpty() ? metadata->value(key) : metadata->value(dictionary, key);
    return value.toString();
}

/// What the real helper says of everything in a folder, by name.
QMap<QString, Metadata> gather(const TemporaryTree &tree)
{
    DiskFileManager disk;
    FileExpansion expansion(disk);
    for (const QString &name : tree.list())
        expansion.add(tree.path(name));
    const std::vector<TFileItem> files = expansion.takeFiles();
    QMap<QString, Metadata> results;
    std::binary_semaphore done(0);
    MetadataGatherer::Settings settings;
    settings.helper = QStringLiteral(TAVRIN_METADATA);
    settings.console = {};
    MetadataGatherer gatherer(settings, [&](qsizetype file, const Metadata &metadata) {
        const auto place = static_cast<std::size_t>(file);
        results.insert(files[place].url.lastPathComponent(), metadata);
        if (place + 1 == files.size())
            done.release();
    });
    gatherer.addBorrowed(files);
    return done.try_acquire_for(std::chrono::seconds(60)) ? results : QMap<QString, Metadata>();
}

} // namespace

/// The built helper program and the files that it meets.
class TestHelper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsPhotosAndSongs();
    void looksIntoNothingButFiles();
    void readsAFileThatGrows();
    void saysWhatItIsWhenRunByHand_data();
    void saysWhatItIsWhenRunByHand();
    void namesItsLibraries();
    void decodesCodedPicturesWithinItsLimits();
    void hearsNothingAfterNonsense();
    void endsWithItsProgram();
};

void TestHelper::readsPhotosAndSongs()
{
    const TemporaryTree tree;
    tree.file(u"photo.jpg"_s, dataFile(u"photo.jpg"_s));
    tree.file(u"song.mp3"_s, dataFile(u"song.mp3"_s));
    tree.file(u"text.jpg"_s, "no image at all");
    tree.file(u"empty.mp3"_s);
    tree.file(u"photo.txt"_s, dataFile(u"photo.jpg"_s));
    const QMap<QString, Metadata> found = gather(tree);
    QCOMPARE(found.size(), 5);
    const TMetadataPtr photo = found[u"photo.jpg"_s].imageProperties;
    QCOMPARE(valueOf(photo, u"{TIFF}"_s, u"Model"_s), u"Test Camera"_s);
    QCOMPARE(valueOf(photo, {}, u"PixelWidth"_s), u"16"_s);
    const TMetadataPtr song = found[u"song.mp3"_s].id3;
    QCOMPARE(valueOf(song, {}, u"title"_s), u"Test Song"_s);
    QCOMPARE(valueOf(song, {}, u"numberOfTracks"_s), u"12"_s);
    QCOMPARE(valueOf(song, {}, u"durationHMS"_s), u"00.00.02"_s);
    QVERIFY(found[u"text.jpg"_s].imageProperties->isEmpty());
    QCOMPARE(valueOf(found[u"empty.mp3"_s].id3, {}, u"duration"_s), u"00.00"_s);
    QVERIFY(!found[u"photo.txt"_s].imageProperties && !found[u"photo.txt"_s].id3);
}

void TestHelper::looksIntoNothingButFiles()
{
    const TemporaryTree tree;
    QCOMPARE(::mkfifo(tree.path(u"pipe.jpg"_s).toUtf8().constData(), 0600), 0);
    tree.link(u"/dev/zero"_s, u"endless.jpg"_s);
    tree.link(u"/nowhere"_s, u"broken.mp3"_s);
    tree.folder(u"folder.jpg"_s);
    tree.file(u"folder.jpg/photo.jpg"_s, dataFile(u"photo.jpg"_s));
    tree.link(u"folder.jpg/photo.jpg"_s, u"link.jpg"_s);
    QElapsedTimer timer;
    timer.start();
    const QMap<QString, Metadata> found = gather(tree);
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(found[u"pipe.jpg"_s].imageProperties->isEmpty());
    QVERIFY(found[u"endless.jpg"_s].imageProperties->isEmpty());
    QCOMPARE(valueOf(found[u"broken.mp3"_s].id3, {}, u"duration"_s), u"00.00"_s);
    QCOMPARE(valueOf(found[u"photo.jpg"_s].imageProperties, {}, u"PixelWidth"_s), u"16"_s);
    QCOMPARE(valueOf(found[u"link.jpg"_s].imageProperties, {}, u"PixelWidth"_s), u"16"_s);
}

void TestHelper::readsAFileThatGrows()
{
    const TemporaryTree tree;
    const QByteArray path = tree.file(u"growing.mp3"_s, dataFile(u"song.mp3"_s)).toUtf8();
    tree.file(u"photo.jpg"_s, dataFile(u"photo.jpg"_s));
    const std::jthread writer([&path](const std::stop_token &stop) {
        const int file = ::open(path.constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
        const QByteArray block(4096, '\xff');
        for (int i = 0; i < 5'000 && !stop.stop_requested(); ++i)
            [[maybe_unused]] const ssize_t written = ::write(file, block.constData(), 4096);
        ::close(file);
    });
    const QMap<QString, Metadata> found = gather(tree);
    QVERIFY(found[u"growing.mp3"_s].id3);
    QVERIFY(!found[u"photo.jpg"_s].imageProperties->isEmpty());
}

void TestHelper::saysWhatItIsWhenRunByHand_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("nothing") << QStringList();
    QTest::newRow("a file") << QStringList{u"photo.jpg"_s};
    QTest::newRow("no descriptor") << QStringList{u"77"_s, u"0"_s};
    QTest::newRow("no socket") << QStringList{u"1"_s, u"0"_s};
}

void TestHelper::saysWhatItIsWhenRunByHand()
{
    QFETCH(QStringList, arguments);
    QProcess process;
    process.start(QStringLiteral(TAVRIN_METADATA), arguments);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 2);
    QVERIFY(process.readAllStandardError().contains("tavrin-cli tags"));
}

void TestHelper::namesItsLibraries()
{
    QProcess process;
    process.start(QStringLiteral(TAVRIN_METADATA), {u"--version"_s});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    const QString lines = QString::fromUtf8(process.readAllStandardOutput());
    static const QRegularExpression expected(
        u"^Exiv2 \\d+\\.\\d+.*\\nTagLib \\d+\\.\\d+.*\\nFFmpeg .+\\n$"_s);
    QVERIFY2(expected.match(lines).hasMatch(), qPrintable(lines));
}

void TestHelper::decodesCodedPicturesWithinItsLimits()
{
    const TemporaryTree tree;
    auto helper = HelperProcess::start(TAVRIN_METADATA, 0);
    QVERIFY(helper);
    const QByteArray path = tree.rawFile("photo.heic", dataFile(u"pictures/tiles.heic"_s));
    QVERIFY(helper.value()->send(
        MetadataProtocol::frame(MetadataRequest{1, MetadataRequest::Thumbnail, 64, path, {}})));
    std::optional<MetadataReply> reply;
    const auto receive = [&] {
        helper.value()->receive();
        while (const auto content = helper.value()->frames().next())
            reply = MetadataProtocol::readReply(*content);
        return reply.has_value();
    };
    QTRY_VERIFY(receive());
    QVERIFY(reply->thumbnail);
    QCOMPARE(reply->thumbnail->width, 64);
}

void TestHelper::hearsNothingAfterNonsense()
{
    auto helper = HelperProcess::start(TAVRIN_METADATA, 0);
    QVERIFY(helper);
    QVERIFY(helper.value()->send(QByteArray("\x01\x00\x00\x00?", 5)));
    pollfd ended{helper.value()->socket(), POLLRDHUP, 0};
    QCOMPARE(::poll(&ended, 1, 10'000), 1);
}

void TestHelper::endsWithItsProgram()
{
    // A middle process starts the helper, tells its number and is killed.
    int ends[2];
    QCOMPARE(::pipe(ends), 0);
    const pid_t middle = ::fork();
    if (middle == 0) {
        ::setpgid(0, 0);
        auto helper = HelperProcess::start(TAVRIN_METADATA, 0);
        while (helper.value()->receive() && !helper.value()->frames().next())
            ::usleep(1000);
        [[maybe_unused]] const ssize_t told = ::write(ends[1], "x", 1);
        while (true)
            ::pause();
    }
    char told = 0;
    QCOMPARE(::read(ends[0], &told, 1), ssize_t{1});
    ::close(ends[1]);
    const QByteArray children =
        "/proc/" + QByteArray::number(middle) + "/task/" + QByteArray::number(middle) + "/children";
    QFile list(QString::fromUtf8(children));
    QVERIFY(list.open(QIODevice::ReadOnly));
    const pid_t helper = list.readAll().trimmed().toInt();
    QVERIFY(helper > 0);
    ::kill(middle, SIGKILL);
    QCOMPARE(::waitpid(middle, nullptr, 0), middle);
    QTRY_COMPARE(::kill(helper, 0), -1);
    ::close(ends[0]);
}

QTEST_GUILESS_MAIN(TestHelper)
#include "tst_helper.moc"
