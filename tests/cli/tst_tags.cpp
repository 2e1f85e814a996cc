// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliFixture.h"
#include "support/FaultyFileManager.h"

#include <QFile>
#include <QJsonArray>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;

/// Verbs that need the metadata of files, with the real helper program.
class TestTags : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void tagsAsJson();
    void tagsAsLines();
    void tagsAsText();
    void tagsOfNothing();
    void renamesByTags();
    void sortsByTags();
    void withoutAHelper();
    void unreadableFilesAreMissing();
    void noHelperForOtherRules();
    void interruptedWhileReading();

private:
    std::unique_ptr<CliFixture> m_cli;
};

namespace {

const QStringList kModelAndTitle{u"--rule"_s,
                                 u"ImageTag category=TIFF theTag=Model defaultString=none"_s,
                                 u"--rule"_s, u"AudioTag theTag=title defaultString=none"_s};

QByteArray dataFile(const QString &name)
{
    QFile file(QStringLiteral(TAVRIN_SOURCE_DIR "/tests/data/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void TestTags::init()
{
    m_cli = std::make_unique<CliFixture>();
    m_cli->metadataHelper = QStringLiteral(TAVRIN_METADATA);
    QByteArray photo = dataFile(u"photo.jpg"_s);
    m_cli->tree.file(u"batch/a.jpg"_s, photo);
    m_cli->tree.file(u"batch/b.mp3"_s, dataFile(u"song.mp3"_s));
    m_cli->tree.file(u"batch/c.txt"_s, "text");
    m_cli->tree.file(u"batch/d.jpg"_s, photo.replace("Test Camera", "Best Camera"));
}

void TestTags::tagsAsJson()
{
    QCOMPARE(m_cli->run({u"tags"_s, u"--json"_s, m_cli->batchPath()}), 0);
    const QJsonArray files = m_cli->json()[u"array"_s].toArray();
    QCOMPARE(files.size(), 4);
    const QJsonValue photo = files[0];
    QCOMPARE(photo[u"path"_s], QJsonValue(m_cli->tree.path(u"batch/a.jpg"_s)));
    const QJsonValue exif = photo[u"image"_s][u"{Exif}"_s];
    QCOMPARE(exif[u"DateTimeOriginal"_s], QJsonValue(u"2024:07:13 15:58:28"_s));
    QCOMPARE(exif[u"FNumber"_s], QJsonValue(2.8));
    QCOMPARE(exif[u"ISOSpeedRatings"_s], QJsonValue(QJsonArray{200}));
    QCOMPARE(photo[u"media"_s], QJsonValue(QJsonValue::Null));
    QCOMPARE(photo[u"facts"_s][u"parent"_s], QJsonValue(u"batch"_s));
    QCOMPARE(files[1][u"image"_s], QJsonValue(QJsonValue::Null));
    QCOMPARE(files[1][u"media"_s][u"title"_s], QJsonValue(u"Test Song"_s));
    QCOMPARE(files[1][u"media"_s][u"duration"_s], QJsonValue(u"00.02"_s));
    QCOMPARE(files[2][u"media"_s], QJsonValue(QJsonValue::Null));
    QCOMPARE(files[2][u"facts"_s][u"size"_s], QJsonValue(4));
}

void TestTags::tagsAsLines()
{
    QCOMPARE(m_cli->run({u"tags"_s, u"--jsonl"_s, m_cli->batchPath(), u"/none"_s}), 1);
    QCOMPARE(m_cli->jsonLines().size(), 4);
    QVERIFY(m_cli->err().contains(u"/none"_s));
}

void TestTags::tagsAsText()
{
    QCOMPARE(m_cli->run({u"tags"_s, m_cli->tree.path(u"batch/a.jpg"_s),
                         m_cli->tree.path(u"batch/b.mp3"_s)}),
             0);
    for (const QString &line :
         {u"\n    General:PixelWidth = 16\n"_s, u"\n    Exif:ISOSpeedRatings = 200\n"_s,
          u"\n    artist = Tavrin\n"_s, u"\n    Original:parent = batch\n"_s})
        QVERIFY2(m_cli->out().contains(line), qPrintable(m_cli->out()));
}

void TestTags::tagsOfNothing()
{
    QCOMPARE(m_cli->run({u"tags"_s}), 2);
    QCOMPARE(m_cli->run({u"tags"_s, u"--json"_s, m_cli->tree.folder(u"empty"_s)}), 1);
    QCOMPARE(m_cli->json()[u"array"_s].toArray(), QJsonArray());
}

void TestTags::renamesByTags()
{
    QCOMPARE(m_cli->run(QStringList{u"rename"_s, u"--yes"_s, u"--json"_s} + kModelAndTitle +
                        QStringList{m_cli->batchPath()}),
             0);
    QCOMPARE(m_cli->names(), (QStringList{u"Best Cameranone.jpg"_s, u"Test Cameranone.jpg"_s,
                                          u"noneTest Song.mp3"_s, u"nonenone.txt"_s}));
    QCOMPARE(m_cli->json()[u"files"_s][0][u"targetName"_s], QJsonValue(u"Test Cameranone"_s));
    QCOMPARE(m_cli->json()[u"criticals"_s], QJsonValue(0));
}

/// The order changes between two passes, and what was read goes with the files.
void TestTags::sortsByTags()
{
    QCOMPARE(m_cli->run(QStringList{u"preview"_s, u"--jsonl"_s, u"--sort"_s, u"targetName"_s} +
                        kModelAndTitle + QStringList{m_cli->batchPath()}),
             0);
    QStringList names;
    for (const QJsonObject &file : m_cli->jsonLines().first(4))
        names.append(file[u"finalName"_s].toString());
    QCOMPARE(names, (QStringList{u"Best Cameranone.jpg"_s, u"nonenone.txt"_s,
                                 u"noneTest Song.mp3"_s, u"Test Cameranone.jpg"_s}));
}

void TestTags::withoutAHelper()
{
    m_cli->metadataHelper = u"/nowhere/helper"_s;
    QCOMPARE(m_cli->run(QStringList{u"rename"_s, u"--yes"_s} + kModelAndTitle +
                        QStringList{m_cli->tree.path(u"batch/a.jpg"_s)}),
             0);
    QVERIFY(m_cli->names().contains(u"nonenone.jpg"_s));
    QCOMPARE(m_cli->run({u"tags"_s, m_cli->batchPath()}), 1);
}

void TestTags::unreadableFilesAreMissing()
{
    FaultyFileManager disk;
    disk.fail(FaultyFileManager::Call::Access, EACCES, FaultyFileManager::kAlways,
              m_cli->tree.path(u"batch/a.jpg"_s).toUtf8());
    m_cli->fileManager = &disk;
    QCOMPARE(m_cli->run({u"tags"_s, u"--jsonl"_s, m_cli->batchPath()}), 1);
    QCOMPARE(m_cli->jsonLines().size(), 3);
    QCOMPARE(m_cli->err(), u"tavrin-cli: %1: you are not allowed to read it; ask its owner for "
                           "permission\n"_s.arg(m_cli->tree.path(u"batch/a.jpg"_s)));
}

/// A program in the helper's place would leave a trace if it were started.
void TestTags::noHelperForOtherRules()
{
    const QString trace = m_cli->tree.path(u"trace"_s);
    m_cli->metadataHelper =
        m_cli->tree.file(u"helper"_s, "#!/bin/sh\ntouch '" + trace.toUtf8() + "'\n");
    m_cli->tree.setMode(u"helper"_s, 0755);
    const QStringList paths{m_cli->batchPath()};
    QCOMPARE(m_cli->run(
                 QStringList{u"preview"_s, u"--rule"_s, u"Counter"_s, u"--rule"_s, u"Original"_s} +
                 paths),
             0);
    QVERIFY(!m_cli->tree.exists(u"trace"_s));
    m_cli->run(QStringList{u"preview"_s} + kModelAndTitle + paths);
    QVERIFY(m_cli->tree.exists(u"trace"_s));
}

void TestTags::interruptedWhileReading()
{
    // A helper that never greets.
    m_cli->metadataHelper = m_cli->tree.file(u"helper"_s, "#!/bin/sh\nexec sleep 100\n");
    m_cli->tree.setMode(u"helper"_s, 0755);
    for (const QStringList &verb : {QStringList{u"tags"_s}, QStringList{u"tags"_s, u"--json"_s},
                                    QStringList{u"preview"_s} + kModelAndTitle,
                                    QStringList{u"rename"_s, u"--yes"_s} + kModelAndTitle}) {
        m_cli->interrupted = false;
        const std::jthread user([this] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            m_cli->interrupted = true;
        });
        QCOMPARE(m_cli->run(verb + QStringList{m_cli->batchPath()}), 130);
        QVERIFY2(!m_cli->out().contains(u"a.jpg ->"_s), qPrintable(m_cli->out()));
        QVERIFY2(m_cli->err().contains(u"interrupted"_s), qPrintable(m_cli->err()));
        QCOMPARE(m_cli->json().contains(u"array"_s), verb.contains(u"--json"_s));
    }
    QCOMPARE(m_cli->names().first(), u"a.jpg"_s);
}

QTEST_GUILESS_MAIN(TestTags)
#include "tst_tags.moc"
