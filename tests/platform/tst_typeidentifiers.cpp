// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TypeIdentifiers.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

class TestTypeIdentifiers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void conformance_data()
    {
        // conforms: of image, audio, movie ... below
        const Table<QString, bool, QStringList> row("extension", "isFolder", "conforms");
        row("photo", u"JPG", false, {u"image"_s});
        row("raw photo", u"cr2", false, {u"image"_s});
        row("drawing", u"svg", false, {u"image"_s});
        row("song", u"Mp3", false, {u"audio"_s, u"av"_s});
        row("song in a container", u"m4a", false, {u"audio"_s, u"av"_s});
        row("windows song", u"wma", false, {u"audio"_s, u"av"_s});
        row("film", u"mp4", false, {u"movie"_s, u"av"_s});
        row("camera film", u"MTS", false, {u"movie"_s, u"av"_s});
        row("sound or film", u"asf", false, {u"av"_s});
        row("text", u"txt", false, {});
        row("first row", u"3fr", false, {u"image"_s});
        row("last row", u"zip", false, {});
        row("unknown", u"qqq", false, {});
        row("none", u"", false, {});
        row("very long", QString(300, u'j'), false, {});
        row("looks like ASCII when cut", u"jp\u0167", false, {});
        row("folder", u"", true, {u"folder"_s});
        row("folder called like a photo", u"jpg", true, {u"folder"_s});
        row("application", u"APP", true, {u"application"_s, u"bundle"_s});
        row("bundle", u"bundle", true, {u"bundle"_s});
        row("framework", u"framework", true, {u"bundle"_s});
        row("file called like an application", u"app", false, {});
    }

    void conformance()
    {
        using namespace TypeIdentifiers;
        QFETCH(QString, extension);
        QFETCH(bool, isFolder);
        const QLatin1StringView type = identifierForExtension(extension, isFolder);
        const std::pair<QLatin1StringView, QString> asked[] = {
            {kImage, u"image"_s},   {kAudio, u"audio"_s},
            {kMovie, u"movie"_s},   {kAudiovisualContent, u"av"_s},
            {kFolder, u"folder"_s}, {kApplication, u"application"_s},
            {kBundle, u"bundle"_s}};
        QStringList found;
        for (const auto &[wanted, name] : asked)
            if (conformsTo(type, wanted))
                found.append(name);
        QTEST(found, "conforms");
        QVERIFY(conformsTo(type, kItem));
        QVERIFY(!conformsTo(kItem, type));
    }

    void transportStreams_data()
    {
        const Table<QByteArray, bool> row("head", "isStream");
        QByteArray stream(4 * 188, '\0');
        for (qsizetype at = 0; at < stream.size(); at += 188)
            stream[at] = 0x47;
        QByteArray broken = stream;
        broken[2 * 188] = 0x46;
        row("stream", stream, true);
        row("ends with the fourth mark", stream.first(3 * 188 + 1), true);
        row("ends before the fourth mark", stream.first(3 * 188), false);
        row("one mark missing", broken, false);
        row("source text", "GGGG import { a } from 'b';"_ba.repeated(40), false);
        row("empty", QByteArray(), false);
    }

    void transportStreams()
    {
        QFETCH(QByteArray, head);
        QTEST(TypeIdentifiers::looksLikeTransportStream(head), "isStream");
        QVERIFY(TypeIdentifiers::needsContentTest(u"TS"));
        QVERIFY(!TypeIdentifiers::needsContentTest(u"mts"));
    }
};

QTEST_GUILESS_MAIN(TestTypeIdentifiers)
#include "tst_typeidentifiers.moc"
