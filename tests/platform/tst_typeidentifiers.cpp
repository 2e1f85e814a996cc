// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TypeIdentifiers.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestTypeIdentifiers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void conformance_data();
    void conformance();
    void transportStreams_data();
    void transportStreams();
};

void TestTypeIdentifiers::conformance_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("isFolder");
    QTest::addColumn<QStringList>("conforms"); ///< of image, audio, movie ... below
    QTest::newRow("photo") << u"JPG"_s << false << QStringList{u"image"_s};
    QTest::newRow("raw photo") << u"cr2"_s << false << QStringList{u"image"_s};
    QTest::newRow("drawing") << u"svg"_s << false << QStringList{u"image"_s};
    QTest::newRow("song") << u"Mp3"_s << false << QStringList{u"audio"_s, u"av"_s};
    QTest::newRow("song in a container") << u"m4a"_s << false << QStringList{u"audio"_s, u"av"_s};
    QTest::newRow("windows song") << u"wma"_s << false << QStringList{u"audio"_s, u"av"_s};
    QTest::newRow("film") << u"mp4"_s << false << QStringList{u"movie"_s, u"av"_s};
    QTest::newRow("camera film") << u"MTS"_s << false << QStringList{u"movie"_s, u"av"_s};
    QTest::newRow("sound or film") << u"asf"_s << false << QStringList{u"av"_s};
    QTest::newRow("text") << u"txt"_s << false << QStringList{};
    QTest::newRow("first row") << u"3fr"_s << false << QStringList{u"image"_s};
    QTest::newRow("last row") << u"zip"_s << false << QStringList{};
    QTest::newRow("unknown") << u"qqq"_s << false << QStringList{};
    QTest::newRow("none") << u""_s << false << QStringList{};
    QTest::newRow("very long") << QString(300, u'j') << false << QStringList{};
    QTest::newRow("looks like ASCII when cut") << u"jp\u0167"_s << false << QStringList{};
    QTest::newRow("folder") << u""_s << true << QStringList{u"folder"_s};
    QTest::newRow("folder called like a photo") << u"jpg"_s << true << QStringList{u"folder"_s};
    QTest::newRow("application") << u"APP"_s << true << QStringList{u"application"_s, u"bundle"_s};
    QTest::newRow("bundle") << u"bundle"_s << true << QStringList{u"bundle"_s};
    QTest::newRow("framework") << u"framework"_s << true << QStringList{u"bundle"_s};
    QTest::newRow("file called like an application") << u"app"_s << false << QStringList{};
}

void TestTypeIdentifiers::conformance()
{
    using namespace TypeIdentifiers;
    QFETCH(QString, extension);
    QFETCH(bool, isFolder);
    const QLatin1StringView type = identifierForExtension(extension, isFolder);
    const std::pair<QLatin1StringView, QString> asked[] = {
        {kImage, u"image"_s},           {kAudio, u"audio"_s},   {kMovie, u"movie"_s},
        {kAudiovisualContent, u"av"_s}, {kFolder, u"folder"_s}, {kApplication, u"application"_s},
        {kBundle, u"bundle"_s}};
    QStringList found;
    for (const auto &[wanted, name] : asked)
        if (conformsTo(type, wanted))
            found.append(name);
    QTEST(found, "conforms");
    QVERIFY(conformsTo(type, kItem));
    QVERIFY(!conformsTo(kItem, type));
}

void TestTypeIdentifiers::transportStreams_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("isStream");
    QByteArray stream(4 * 188, '\0');
    for (qsizetype at = 0; at < stream.size(); at += 188)
        stream[at] = 0x47;
    QByteArray broken = stream;
    broken[2 * 188] = 0x46;
    QTest::newRow("stream") << stream << true;
    QTest::newRow("ends with the fourth mark") << stream.first(3 * 188 + 1) << true;
    QTest::newRow("ends before the fourth mark") << stream.first(3 * 188) << false;
    QTest::newRow("one mark missing") << broken << false;
    QTest::newRow("source text") << "GGGG import { a } from 'b';"_ba.repeated(40) << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestTypeIdentifiers::transportStreams()
{
    QFETCH(QByteArray, head);
    QTEST(TypeIdentifiers::looksLikeTransportStream(head), "isStream");
    QVERIFY(TypeIdentifiers::needsContentTest(u"TS"));
    QVERIFY(!TypeIdentifiers::needsContentTest(u"mts"));
}

QTEST_GUILESS_MAIN(TestTypeIdentifiers)
#include "tst_typeidentifiers.moc"
