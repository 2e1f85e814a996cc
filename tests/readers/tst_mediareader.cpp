// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/CoverPicture.h"
#include "readers/GenreText.h"
#include "readers/MediaReader.h"
#include "support/TemporaryTree.h"

#include <QFile>
#include <QMap>
#include <QTest>
#include <QtEndian>

#include <cmath>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

QString dataPath(const QString &name)
{
    return QString::fromUtf8(TAVRIN_SOURCE_DIR) + u"/tests/data/media/"_s + name;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString textOf(const QVariant &value)
{
    if (value.typeId() != QMetaType::QByteArray)
        return value.toString();
    const QByteArray data = value.toByteArray();
    return data.size() != 8 ? u"wrong size"_s
                            : u"%1/%2"_s.arg(qFromBigEndian<quint16>(data.constData() + 2))
                                  .arg(qFromBigEndian<quint16>(data.constData() + 4));
}

/// The last value of each key, as "key=value" in the order of the keys.
QString summary(const MediaReading &reading)
{
    QMap<QString, QString> values;
    for (const MediaItem &item : reading.items)
        values[item.commonKey.isEmpty() ? item.key.toString() : item.commonKey] =
            textOf(item.value);
    QStringList lines;
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        lines.append(it.key() + u'=' + it.value());
    return lines.join(u" | "_s);
}

} // namespace

class TestMediaReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tagsOfEveryFormat_data();
    void tagsOfEveryFormat();
    void laterFormatsWin();
    void buildsOfOneFile_data();
    void buildsOfOneFile();
    void noMedia_data();
    void noMedia();
    void onlyRegularFiles();
    void cutAnywhere_data();
    void cutAnywhere();
    void covers_data();
    void covers();
    void genres_data();
    void genres();
};

void TestMediaReader::tagsOfEveryFormat_data()
{
    QTest::addColumn<double>("duration");
    QTest::addColumn<QString>("tags");
    const QString common = u"albumName=The Album | artist=The Artist | %1contributor=A Conductor | "
                           "copyrights=Someone | creationDate=2011-02-03 | creator=A Composer | "
                           "%2disk=1/2 | identifier=XX1234567890 | language=deu | %3title=Größe | "
                           "trkn=3/12 | type=Jazz"_s;
    const QString full = common.arg(u"author=A Lyricist | "_s, QString(),
                                    u"publisher=A Label | software=An Encoder | source=CD | "
                                    "subject=A Work | "_s);
    const QString vorbis = common.arg(u"author=A Lyricist | "_s, QString(), QString());
    QTest::newRow("song.mp3") << 0.18 << full;
    QTest::newRow("song.aiff") << 0.1 << full;
    QTest::newRow("song.flac") << 0.1 << vorbis;
    QTest::newRow("song.opus") << 0.1 << vorbis;
    QTest::newRow("song.ogg") << 0.1
                              << QString(vorbis)
                                     .replace(u"The Artist"_s, u"Last Artist"_s)
                                     .replace(u"title="_s, u"publisher=A Publisher | title="_s);
    QTest::newRow("song.wv")
        << 0.1
        << common.arg(QString(), QString(), u"source=CD | "_s).replace(u"2011-02-03"_s, u"2011"_s);
    QTest::newRow("song.wma") << 0.13
                              << common
                                     .arg(u"author=A Lyricist | "_s, u"description=A Comment | "_s,
                                          u"publisher=A Label | subject=A Work | "_s)
                                     .replace(u"2011-02-03"_s, u"2011"_s)
                                     .replace(u"3/12"_s, u"7/0"_s);
    QTest::newRow("song.m4a") << 0.1
                              << u"albumName=The Album | artist=The Artist | copyrights=Someone | "
                                 "creationDate=2011-02-03 | creator=A Composer | "
                                 "description=A Description | disk=1/2 | title=Größe | trkn=3/12 | "
                                 "type=Jazz"_s;
    QTest::newRow("song.wav")
        << 0.1
        << u"albumName=The Album | artist=The Artist | author=A Writer | "
           "creationDate=2011 | creator=A Composer | description=A Comment | "
           "language=deu | source=A Source | subject=A Subject | title=Title | "
           "trkn=3/12 | type=Jazz"_s;
    QTest::newRow("album.mka") << 61.5
                               << u"albumName=The Album | artist=All Artists | creationDate=2001 | "
                                  "disk=2/0 | title=The Track | trkn=3/12"_s;
    QTest::newRow("film.mkv") << 0.52
                              << u"albumName=Album | artist=Artist | copyrights=Someone | "
                                 "creationDate=2012 | creator=Composer | description=Words | "
                                 "title=Größe | trkn=3/12 | type=Jazz"_s;
    QTest::newRow("film.avi")
        << 0.52
        << u"albumName=Album | artist=Artist | copyrights=Someone | "
           "creationDate=2011 | description=Comment | title=Größe | trkn=3/12 | type=Jazz"_s;
    QTest::newRow("film.ogv") << 0.6
                              << u"artist=Artist | contributor=Player | description=Words | "
                                 "disk=1/2 | identifier=XX1234567890 | software=Lavc libtheora | "
                                 "title=Größe | trkn=3/12"_s;
    QTest::newRow("film.mov") << 0.52
                              << u"albumName=Album | artist=Artist | copyrights=Someone | "
                                 "creationDate=2011 | description=Comment | title=Größe | "
                                 "type=Jazz"_s;
    QTest::newRow("named.mov") << 0.52
                               << u"creationDate=2013-01-02T03:04:05Z | location=+48.1+011.5/ | "
                                  "make=Maker | model=Model | title=Named"_s;
    QTest::newRow("film.ts") << 0.2 << QString();
}

void TestMediaReader::tagsOfEveryFormat()
{
    QFETCH(double, duration);
    QFETCH(QString, tags);
    // The name says nothing of the kind, and is no valid UTF-8.
    TemporaryTree tree;
    const QByteArray content = contentOf(dataPath(QString::fromUtf8(QTest::currentDataTag())));
    const std::optional<MediaReading> reading = readMedia(tree.rawFile("n\xFFme.txt", content));
    QVERIFY(reading);
    QCOMPARE(summary(*reading), tags);
    QVERIFY2(std::abs(reading->duration - duration) < 0.03,
             qPrintable(QString::number(reading->duration)));
}

void TestMediaReader::laterFormatsWin()
{
    const std::optional<MediaReading> reading =
        readMedia(QFile::encodeName(dataPath(u"layers.mp3"_s)));
    QVERIFY(reading);
    QStringList formats;
    for (const MediaItem &item : reading->items) {
        if (!formats.contains(item.format))
            formats.append(item.format);
    }
    QCOMPARE(formats.join(u' '), u"id3v1 ape id3v2"_s);
    QCOMPARE(summary(*reading),
             u"albumName=Album One | artist=Artist Ape | creationDate=1999 | disk=2/2 | "
             "title=Title Two | trkn=1/0 | type=Rock"_s);
}

namespace {

QByteArray id3Frame(const char *name, const QByteArray &text)
{
    QByteArray size(4, '\0');
    qToBigEndian(static_cast<quint32>(text.size() + 1), size.data());
    return QByteArray(name) + size + QByteArray(2, '\0') + '\3' + text;
}

/// A block of version 2.4, with a footer when it stands at the end.
QByteArray id3Block(const QByteArray &frames, bool hasFooter = false)
{
    const QByteArray head = QByteArray("\4\0", 2) + (hasFooter ? '\x10' : '\0') +
                            QByteArray(2, '\0') + static_cast<char>(frames.size() >> 7) +
                            static_cast<char>(frames.size() & 0x7F);
    return "ID3" + head + frames + (hasFooter ? "3DI" + head : QByteArray());
}

QByteArray box(const char *type, const QByteArray &content)
{
    QByteArray size(4, '\0');
    qToBigEndian(static_cast<quint32>(content.size() + 8), size.data());
    return size + QByteArray(type, 4) + content;
}

QByteArray zeros(qsizetype count)
{
    return QByteArray(count, '\0');
}

/// Frames of MPEG audio, 417 or 1044 bytes and 26 ms each, without an index in front.
QByteArray sound(int slow, int fast)
{
    const QByteArray frame("\xFF\xFB\x90\x44", 4);
    const QByteArray larger("\xFF\xFB\xE0\x44", 4);
    return (frame + zeros(413)).repeated(slow) + (larger + zeros(1040)).repeated(fast);
}

QByteArray dataBox(char type, const QByteArray &value)
{
    return box("data", zeros(3) + type + zeros(4) + value);
}

QByteArray movie(const QByteArray &header, const QByteArray &list)
{
    const QByteArray meta = box("meta", zeros(4) + box("ilst", list));
    return box("ftyp", "M4A ") + box("moov", box("mvhd", header) + box("udta", meta));
}

/// A song of True Audio, one second long, without its frames.
QByteArray trueAudio(const QByteArray &tags)
{
    return QByteArray("TTA1\1\0\1\0\x10\0\x40\x1F\0\0\x40\x1F\0\0", 18) + zeros(8) + tags;
}

QByteArray apeBlock(const char *key, const QByteArray &value)
{
    const QByteArray item = static_cast<char>(value.size()) + zeros(7) + key + '\0' + value;
    return item + QByteArray("APETAGEX\xD0\7\0\0", 12) + static_cast<char>(item.size() + 32) +
           zeros(3) + '\1' + zeros(15);
}

/// The block that ends a file; of its numbers only the year is set.
QByteArray id3v1Block(const QByteArray &title)
{
    return "TAG" + title + zeros(90 - title.size()) + "1999" + zeros(30) + '\x11';
}

/// A chunk of RIFF, or of AIFF when its numbers are big.
QByteArray chunk(const char *name, const QByteArray &content, bool isBig = false)
{
    QByteArray size(4, '\0');
    if (isBig)
        qToBigEndian(static_cast<quint32>(content.size()), size.data());
    else
        qToLittleEndian(static_cast<quint32>(content.size()), size.data());
    return name + size + content + zeros(content.size() % 2);
}

QByteArray infoList(std::initializer_list<std::pair<const char *, const char *>> texts)
{
    QByteArray list = "INFO";
    for (const auto &[name, text] : texts)
        list += chunk(name, QByteArray(text) + '\0');
    return chunk("LIST", list);
}

/// A film of one frame, 40 ms long.
QByteArray avi(const QByteArray &info)
{
    const QByteArray header = QByteArray("\x40\x9C\0\0", 4) + zeros(12) + '\1' + zeros(7) + '\1' +
                              zeros(7) + "\x10" + zeros(3) + "\x10" + zeros(19);
    const QByteArray stream =
        "vidsMJPG" + zeros(12) + '\1' + zeros(3) + '\x19' + zeros(7) + '\1' + zeros(23);
    const QByteArray format = '\x28' + zeros(3) + '\x10' + zeros(3) + '\x10' + zeros(3) +
                              QByteArray("\1\0\x18\0", 4) + "MJPG" + zeros(20);
    const QByteArray list = chunk("LIST", "strl" + chunk("strh", stream) + chunk("strf", format));
    return chunk("RIFF", "AVI " + chunk("LIST", "hdrl" + chunk("avih", header) + list) + info +
                             chunk("LIST", "movi" + chunk("00dc", "\xFF\xD8\xFF\xD9")));
}

/// A song of one second.
QByteArray wav(const QByteArray &tags)
{
    const QByteArray format("\1\0\1\0\x40\x1F\0\0\x40\x1F\0\0\1\0\x08\0", 16);
    return chunk("RIFF", "WAVE" + chunk("fmt ", format) + chunk("data", zeros(8000)) + tags);
}

/// A song of a second, without its sound.
QByteArray aiff(const QByteArray &tags)
{
    const QByteArray common("\0\1\0\0\x1F\x40\0\x08\x40\x0B\xFA\0\0\0\0\0\0\0", 18);
    return chunk("FORM", "AIFF" + chunk("COMM", common, true) + tags, true);
}

QByteArray flac(const QByteArray &comment)
{
    const QByteArray info = QByteArray("\x10\0\x10\0\0\0\0\0\0\0\x0A\xC4\x40\xF0\0\0\xAC\x44", 18);
    const QByteArray comments = zeros(4) + QByteArray("\1\0\0\0", 4) +
                                static_cast<char>(comment.size()) + zeros(3) + comment;
    return "fLaC" + zeros(3) + '\x22' + info + zeros(16) + '\x84' + zeros(2) +
           static_cast<char>(comments.size()) + comments;
}

/// A film with these boxes after its header.
QByteArray film(const QByteArray &boxes)
{
    const QByteArray header = zeros(12) + QByteArray("\0\0\0\1\0\0\0\2", 8);
    return box("ftyp", "qt  ") + box("moov", box("mvhd", header) + boxes);
}

/// One title in each way that a film may hold it.
QByteArray userText(const QByteArray &title)
{
    return box("\xA9nam", '\0' + (static_cast<char>(title.size()) + zeros(2)) + title);
}

QByteArray listOfItunes(const QByteArray &title)
{
    return box("meta", zeros(4) + box("ilst", box("\xA9nam", dataBox(1, title))));
}

QByteArray listOfNames(const QByteArray &title)
{
    const QByteArray keys = box("mdta", "com.apple.quicktime.title");
    return box("meta", box("hdlr", zeros(8) + "mdta" + zeros(12)) +
                           box("keys", zeros(7) + '\1' + keys) +
                           box("ilst", box("\0\0\0\1", dataBox(1, title))));
}

/// The file up to the first bytes of a part.
QByteArray headOf(const QString &name, const QByteArray &part)
{
    const QByteArray content = contentOf(dataPath(name));
    return content.first(content.lastIndexOf(part) + part.size() + 4);
}

} // namespace

void TestMediaReader::buildsOfOneFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<double>("duration");
    QTest::addColumn<QString>("tags");
    const QByteArray thousandths = zeros(12) + QByteArray("\0\0\x03\xE8", 4);
    const QByteArray fourMinutes = thousandths + QByteArray("\0\x03\xBD\x08", 4);
    QTest::newRow("the first of two leading blocks wins")
        << id3Block(id3Frame("TIT2", "first")) +
               id3Block(id3Frame("TIT2", "second") + id3Frame("TALB", "more"))
        << 0.0 << u"albumName=more | title=first"_s;
    QTest::newRow("a block at the end, by its footer")
        << "noise" + id3Block(id3Frame("TIT2", "end"), true) << 0.0 << u"title=end"_s;
    QTest::newRow("the older date serves where the newer is missing")
        << id3Block(id3Frame("TYER", "1987")) << 0.0 << u"creationDate=1987"_s;
    QTest::newRow("an extended header")
        << "ID3" + QByteArray("\4\0\x40\0\0\0\x16", 7) + QByteArray("\0\0\0\6\1\0", 6) +
               id3Frame("TIT2", "extra")
        << 0.0 << u"title=extra"_s;
    QTest::newRow("one of the third version, which does not count itself")
        << "ID3" + QByteArray("\3\0\xC0\0\0\0\x1D", 7) + QByteArray("\0\0\0\6\0\0\0\0\0\0", 10) +
               "TIT2" + QByteArray("\0\0\0\7\0\0\1\xFF\0\xFE", 10) + QByteArray("a\0\xFF\0\0", 5)
        << 0.0 << u"title=a\u00FF"_s;
    QTest::newRow("a year that is no number")
        << id3Block(id3Frame("TIT2", "t")) + "TAG" + zeros(90) + "199?" + zeros(31) << 0.0
        << u"creationDate=199? | title=t | type=Blues"_s;
    QTest::newRow("the newer date wins")
        << id3Block(id3Frame("TDRC", "1999-05") + id3Frame("TYER", "1987")) << 0.0
        << u"creationDate=1999-05"_s;
    QTest::newRow("several values of one tag")
        << id3Block(id3Frame("TPE1", QByteArray("One\0Two", 7))) << 0.0 << u"artist=One, Two"_s;
    QTest::newRow("a number above 255 stays whole")
        << id3Block(id3Frame("TRCK", "300") + id3Frame("TPOS", "02 of 3")) << 0.0
        << u"disk=2/3 | trkn=300/0"_s;
    QTest::newRow("a number that is none") << id3Block(id3Frame("TRCK", "A")) << 0.0 << QString();
    QTest::newRow("frames of many bit rates, without their sum")
        << sound(200, 200) << 400 * 1152.0 / 44100 << QString();
    QTest::newRow("a film of zero length") << movie(thousandths + zeros(4), {}) << 0.0 << QString();
    QTest::newRow("a song without tags") << movie(fourMinutes, {}) << 245.0 << QString();
    QTest::newRow("numbers and genre of iTunes")
        << movie(fourMinutes, box("gnre", dataBox(0, QByteArray("\0\x12", 2))) +
                                  box("trkn", dataBox(0, QByteArray("\0\0\x01\x2C\0\x05\0\0", 8))) +
                                  box("cprt", dataBox(2, QByteArray("\0A\x20\xAC", 4))) +
                                  box("\xA9"
                                      "day",
                                      dataBox(21, "\x07\xDB")) +
                                  box("covr", dataBox(13, "picture")))
        << 245.0 << u"copyrights=A€ | creationDate=2011 | trkn=300/5 | type=Rock"_s;
    QTest::newRow("an APE block behind True Audio")
        << trueAudio(apeBlock("Title", "APE")) << 1.0 << u"title=APE"_s;
    QTest::newRow("every text of an AVI")
        << avi(infoList({{"INAM", "Title"},
                         {"IART", "Artist"},
                         {"IPRD", "Album"},
                         {"IMUS", "Composer"},
                         {"IGNR", "17"},
                         {"ICRD", "2001"},
                         {"ICOP", "Copy"},
                         {"ICMT", "Comment"},
                         {"ILNG", "deu"},
                         {"IWRI", "Writer"},
                         {"ISFT", "Program"},
                         {"ISBJ", "Subject"},
                         {"ISRC", "Supplier"},
                         {"IMED", "Medium"},
                         {"IPRT", "3/4"}}))
        << 0.04
        << u"albumName=Album | artist=Artist | author=Writer | copyrights=Copy | creationDate=2001 "
           u"| "
           "creator=Composer | description=Comment | language=deu | software=Program | "
           "source=Medium | subject=Subject | title=Title | trkn=3/4 | type=Rock"_s;
    QTest::newRow("the other names of an AVI's texts")
        << avi(infoList({{"ISRC", "Supplier"}, {"ITRK", "5"}, {"INAM", "Caf\xE9"}})) << 0.04
        << u"source=Supplier | title=Café | trkn=5/0"_s;
    const QByteArray info = infoList({{"INAM", "info"}, {"IART", "by"}});
    const QByteArray id3 = id3Block(id3Frame("TIT2", "id3") + id3Frame("TALB", "on"));
    QTest::newRow("ID3v2 behind the INFO list")
        << wav(info + chunk("id3 ", id3)) << 1.0 << u"albumName=on | artist=by | title=id3"_s;
    QTest::newRow("the INFO list behind ID3v2")
        << wav(chunk("LIST", "adtl") + chunk("ID3 ", id3) + info) << 1.0
        << u"albumName=on | artist=by | title=info"_s;
    QTest::newRow("ID3v2 behind a text of AIFF")
        << aiff(chunk("NAME", "text", true) + chunk("ID3 ", id3, true)) << 1.0
        << u"albumName=on | title=id3"_s;
    QTest::newRow("a text of AIFF behind ID3v2")
        << aiff(chunk("ID3 ", id3, true) + chunk("NAME", "text", true)) << 1.0
        << u"albumName=on | title=text"_s;
    QTest::newRow("FLAC between both kinds of ID3")
        << id3 + flac("TITLE=vorbis") + id3v1Block("cut") << 1.0
        << u"albumName=on | creationDate=1999 | title=vorbis | type=Rock"_s;
    const QByteArray bothAtEnd = apeBlock("Title", "APE") + id3v1Block("cut");
    QTest::newRow("WavPack's own title")
        << "wvpk" + zeros(28) + bothAtEnd << 0.0 << u"creationDate=1999 | title=APE | type=Rock"_s;
    QTest::newRow("True Audio's own title")
        << id3 + trueAudio(bothAtEnd) << 1.0
        << u"albumName=on | creationDate=1999 | title=APE | type=Rock"_s;
    QTest::newRow("user data behind names")
        << film(listOfNames("named") + box("udta", userText("text"))) << 2.0 << u"title=text"_s;
    QTest::newRow("names behind user data")
        << film(box("udta", userText("text") + listOfItunes("list")) + listOfNames("named")) << 2.0
        << u"title=named"_s;
    QTest::newRow("the list of iTunes behind a text")
        << film(box("udta", userText("text") + listOfItunes("list"))) << 2.0 << u"title=list"_s;
    QTest::newRow("a text behind the list of iTunes")
        << film(box("udta", listOfItunes("list") + userText("text"))) << 2.0 << u"title=text"_s;
    QTest::newRow("a film that ends before its tracks are described")
        << headOf(u"film.mkv"_s, "\x16\x54\xAE\x6B") << 0.52 << u"title=Größe"_s;
    QTest::newRow("a film that does not say how long it is")
        << contentOf(dataPath(u"film.mkv"_s)).replace("\x44\x89\x88", "\xEC\x89\x80") << 0.48
        << u"albumName=Album | artist=Artist | copyrights=Someone | creationDate=2012 | "
           "creator=Composer | description=Words | title=Größe | trkn=3/12 | type=Jazz"_s;
    QTest::newRow("half a surrogate pair becomes the replacement character")
        << movie(fourMinutes, box("\xA9nam", dataBox(2, QByteArray("\0A\xDC\x80", 4)))) << 245.0
        << u"title=A\uFFFD"_s;
}

void TestMediaReader::buildsOfOneFile()
{
    QFETCH(QByteArray, content);
    QFETCH(double, duration);
    QFETCH(QString, tags);
    TemporaryTree tree;
    const std::optional<MediaReading> reading = readMedia(tree.rawFile("file", content));
    QVERIFY(reading);
    QCOMPARE(summary(*reading), tags);
    QCOMPARE(reading->duration, duration);
}

void TestMediaReader::noMedia_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray song = QFile::encodeName(dataPath(u"song.mp3"_s));
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("Just a few words, and some more of them.\n").repeated(100);
    QTest::newRow("playlist") << "#EXTM3U\n#EXTINF:10,Song\n" + song + "\n";
    QTest::newRow("segments on disk and in the network")
        << "#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXTINF:10,\nfile://" + song +
               "\n#EXTINF:10,\nhttp://127.0.0.1:9/a.ts\n#EXT-X-ENDLIST\n";
    QTest::newRow("concatenation script") << "ffconcat version 1.0\nfile '" + song + "'\n";
    QTest::newRow("adaptive stream") << QByteArray("<?xml version=\"1.0\"?><MPD></MPD>");
    QTest::newRow("session description") << QByteArray("v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\n");
    QTest::newRow("picture") << contentOf(dataPath(u"cover.png"_s));
    QTest::newRow("noise with sync bytes") << QByteArray("\xFF\xFB\x90\x64zzzz").repeated(500);
}

void TestMediaReader::noMedia()
{
    QFETCH(QByteArray, content);
    TemporaryTree tree;
    for (const char *name : {"a.mp3", "a.mp4", "a.m3u8"}) {
        const QByteArray path = tree.rawFile(name, content);
        QVERIFY2(!readMedia(path), name);
        QVERIFY2(readCoverPicture(path).isEmpty(), name);
    }
}

void TestMediaReader::onlyRegularFiles()
{
    TemporaryTree tree;
    const QByteArray pipe = QFile::encodeName(tree.path(u"pipe.mp3"_s));
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    tree.link(dataPath(u"song.mp3"_s), u"link.mp3"_s);
    QVERIFY(!readMedia(pipe));
    QVERIFY(!readMedia(QFile::encodeName(tree.folder(u"folder.mp3"_s))));
    QVERIFY(!readMedia("/dev/zero"));
    QVERIFY(!readMedia(QFile::encodeName(tree.path(u"missing.mp3"_s))));
    QVERIFY(readMedia(QFile::encodeName(tree.path(u"link.mp3"_s))));
}

void TestMediaReader::cutAnywhere_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"song.mp3", "song.m4a", "song.flac", "song.ogg", "song.opus", "song.wma", "song.wv",
          "song.wav", "song.aiff", "album.mka", "film.mkv", "film.avi", "film.mov", "film.ts"}) {
        QTest::newRow(name) << QString::fromUtf8(name);
    }
}

void TestMediaReader::cutAnywhere()
{
    QFETCH(QString, name);
    const QByteArray whole = contentOf(dataPath(name));
    QVERIFY(!whole.isEmpty());
    TemporaryTree tree;
    const qsizetype step = std::max<qsizetype>(1, whole.size() / 80);
    for (qsizetype size = 0; size < whole.size(); size += step) {
        const QByteArray path = tree.rawFile("cut", whole.first(size));
        if (const std::optional<MediaReading> reading = readMedia(path))
            QVERIFY(std::isfinite(reading->duration) && reading->duration >= 0);
        QVERIFY(readCoverPicture(path).size() <= size);
    }
}

void TestMediaReader::covers_data()
{
    QTest::addColumn<bool>("hasCover");
    for (const char *name : {"song.mp3", "song.m4a", "song.flac", "song.ogg", "song.opus",
                             "song.wma", "song.wv", "song.aiff"})
        QTest::newRow(name) << true;
    for (const char *name : {"layers.mp3", "song.wav", "film.mkv", "film.mov", "cover.png"})
        QTest::newRow(name) << false;
}

/// The songs whose format tells the kinds of pictures hold another one before the cover.
void TestMediaReader::covers()
{
    QFETCH(bool, hasCover);
    const QString path = dataPath(QString::fromUtf8(QTest::currentDataTag()));
    const QByteArray cover = contentOf(dataPath(u"cover.png"_s));
    QCOMPARE(readCoverPicture(QFile::encodeName(path)), hasCover ? cover : QByteArray());
}

void TestMediaReader::genres_data()
{
    QTest::addColumn<QStringList>("stored");
    QTest::addColumn<QString>("words");
    QTest::newRow("number") << QStringList{u"17"_s} << u"Rock"_s;
    QTest::newRow("in brackets") << QStringList{u"(17)"_s} << u"Rock"_s;
    QTest::newRow("refined") << QStringList{u"(4)Eurodisco"_s} << u"Disco, Eurodisco"_s;
    QTest::newRow("refined by itself") << QStringList{u"(9)Metal"_s} << u"Metal"_s;
    QTest::newRow("several") << QStringList{u"(31)(39)"_s, u"RX"_s} << u"Trance, Noise, Remix"_s;
    QTest::newRow("own words") << QStringList{u"Neue Deutsche (Welle)"_s}
                               << u"Neue Deutsche (Welle)"_s;
    QTest::newRow("bracket of its own") << QStringList{u"((I think)"_s} << u"(I think)"_s;
    QTest::newRow("beyond the list") << QStringList{u"255"_s} << u"255"_s;
}

void TestMediaReader::genres()
{
    QFETCH(QStringList, stored);
    QFETCH(QString, words);
    QCOMPARE(genreText(stored), words);
}

QTEST_GUILESS_MAIN(TestMediaReader)
#include "tst_mediareader.moc"
