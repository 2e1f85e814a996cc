// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ImageReader.h"
#include "readers/PictureSamples.h"
#include "readers/TiffBuilder.h"
#include "support/TemporaryTree.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

using T = TiffBuilder;

/// "{GIF}/LoopCount" or "PixelWidth".
QVariant valueAt(const QVariantMap &properties, const QString &key)
{
    const qsizetype slash = key.startsWith(u'{') ? key.indexOf(u'/') : -1;
    return slash < 0 ? properties.value(key)
                     : properties.value(key.left(slash)).toMap().value(key.mid(slash + 1));
}

/// With all the digits that a name would show.
QString asInNames(const QVariant &number)
{
    return QString::number(number.toDouble(), 'g', 16);
}

bool isSame(const QVariant &a, const QVariant &b)
{
    if (a.typeId() == QMetaType::QVariantList && b.typeId() == QMetaType::QVariantList) {
        const QVariantList left = a.toList();
        const QVariantList right = b.toList();
        return std::equal(left.begin(), left.end(), right.begin(), right.end(), isSame);
    }
    const bool isText = b.typeId() == QMetaType::QString;
    if (!a.isValid() || !b.isValid() || isText)
        return a == b;
    return a.typeId() != QMetaType::QString && asInNames(a) == asInNames(b);
}

QString shown(const QVariant &value)
{
    QString text;
    QDebug(&text) << value;
    return text;
}

qint64 peakMemory()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

QByteArray count(quint32 number)
{
    return T::number(number, 4);
}

} // namespace

/// Pictures made of bytes, whole and broken.
class TestImageReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatIsRead_data();
    void formatIsRead();
    void tagHasItsShape_data();
    void tagHasItsShape();
    void xmpTellsWhatExifDataDoesNot_data();
    void xmpTellsWhatExifDataDoesNot();
    void xmpHasItsShapeInIptc_data();
    void xmpHasItsShapeInIptc();
    void wholeCategoryIsSeenByItself_data();
    void wholeCategoryIsSeenByItself();
    void iptcRecordHasItsShape_data();
    void iptcRecordHasItsShape();
    void truncatedFileDoesNoHarm();
    void flippedBitsDoNoHarm();
    void nothingIsReadFrom_data();
    void nothingIsReadFrom();
    void pipeAndFolderAreRefused();
    void hostileCountTakesNoMemory_data();
    void hostileCountTakesNoMemory();

private:
    std::optional<QVariantMap> read(const QByteArray &bytes) const
    {
        return readImageProperties(m_tree.rawFile("caf\xE9.txt", bytes)); // no name helps
    }

    TemporaryTree m_tree;
};

void TestImageReader::formatIsRead_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QVariantMap>("expected");
    for (const PictureSample &sample : pictureSamples())
        QTest::newRow(sample.name) << sample.bytes << sample.expected;
}

void TestImageReader::formatIsRead()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QVariantMap, expected);
    const auto properties = read(bytes);
    QVERIFY(properties);
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        const QVariant value = valueAt(*properties, it.key());
        QVERIFY2(isSame(value, it.value()), qPrintable(it.key() + u": "_s + shown(value)));
    }
}

void TestImageReader::tagHasItsShape_data()
{
    QTest::addColumn<int>("folder");
    QTest::addColumn<int>("tag");
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("expected");
    const auto row = [](const char *name, T::Folder folder, int tag, T::Type type,
                        const QByteArray &stored, const QString &key,
                        const QVariant &expected = {}) {
        QTest::newRow(name) << int(folder) << tag << int(type) << stored << key << expected;
    };
    const auto list = [](std::initializer_list<int> numbers) {
        return QVariant(QVariantList(numbers.begin(), numbers.end()));
    };
    row("rational", T::Exif, 0x829A, T::Rational, T::longs({1, 60}), u"{Exif}/ExposureTime"_s,
        1.0 / 60);
    row("zero denominator", T::Exif, 0x829D, T::Rational, T::longs({5, 0}), u"{Exif}/FNumber"_s);
    row("large unsigned parts", T::Exif, 0x920A, T::Rational,
        count(4000000000U) + count(2000000000U), u"{Exif}/FocalLength"_s, 2);
    row("negative", T::Exif, 0x9204, T::SRational, T::longs({-1, 3}), u"{Exif}/ExposureBiasValue"_s,
        -1.0 / 3);
    row("one speed is a list", T::Exif, 0x8827, T::Short, T::shorts({400}),
        u"{Exif}/ISOSpeedRatings"_s, list({400}));
    row("version of three digits", T::Exif, 0x9000, T::Undefined, "0231", u"{Exif}/ExifVersion"_s,
        list({2, 3, 1}));
    row("version of two digits", T::Exif, 0xA000, T::Undefined, "0100", u"{Exif}/FlashPixVersion"_s,
        list({1, 0}));
    row("one byte", T::Exif, 0xA300, T::Undefined, "\x03", u"{Exif}/FileSource"_s, 3);
    row("text ends at NUL", T::Main, 0x0110, T::Ascii, "Cam \0junk"_ba, u"{TIFF}/Model"_s,
        u"Cam"_s);
    row("text in UTF-8", T::Main, 0x013B, T::Ascii, "Zoë\0"_ba, u"{TIFF}/Artist"_s, u"Zoë"_s);
    row("text in Latin-1", T::Main, 0x013B, T::Ascii, "Zo\xEB\0"_ba, u"{TIFF}/Artist"_s, u"Zoë"_s);
    row("blank text", T::Main, 0x010E, T::Ascii, "     \0"_ba, u"{TIFF}/ImageDescription"_s);
    row("editor's copyright", T::Main, 0x8298, T::Ascii, " \0Ed\0"_ba, u"{TIFF}/Copyright"_s,
        u"Ed"_s);
    row("comment", T::Exif, 0x9286, T::Undefined, "ASCII\0\0\0Hi  \0"_ba, u"{Exif}/UserComment"_s,
        u"Hi"_s);
    row("comment in UTF-16", T::Exif, 0x9286, T::Undefined, "UNICODE\0\x16\x04\x17\x04"_ba,
        u"{Exif}/UserComment"_s, u"ЖЗ"_s);
    row("comment outside the first plane", T::Exif, 0x9286, T::Undefined,
        "UNICODE\0\xE5\x65\x3D\xD8\x00\xDE"_ba, u"{Exif}/UserComment"_s, u"日😀"_s);
    row("comment of the other byte order", T::Exif, 0x9286, T::Undefined, "UNICODE\0\0H\0i"_ba,
        u"{Exif}/UserComment"_s, u"Hi"_s);
    row("comment in JIS", T::Exif, 0x9286, T::Undefined, "JIS\0\0\0\0\0\x1B$B:#F|\x1B(B!"_ba,
        u"{Exif}/UserComment"_s, u"今日!"_s);
    row("degrees", T::Gps, 2, T::Rational, T::longs({48, 1, 30, 1, 36, 1}), u"{GPS}/Latitude"_s,
        48.51);
    row("degrees without seconds", T::Gps, 4, T::Rational, T::longs({2, 1, 1500, 100, 0, 0}),
        u"{GPS}/Longitude"_s, 2.25);
    row("time", T::Gps, 7, T::Rational, T::longs({3, 1, 4, 1, 5, 1}), u"{GPS}/TimeStamp"_s,
        u"03:04:05"_s);
    row("time with a fraction", T::Gps, 7, T::Rational, T::longs({23, 1, 4, 1, 525, 100}),
        u"{GPS}/TimeStamp"_s, u"23:04:05.25"_s);
    row("time that would be rounded to the next day", T::Gps, 7, T::Rational,
        T::longs({23, 1, 59, 1, 599999999, 10000000}), u"{GPS}/TimeStamp"_s, u"23:59:59.999999"_s);
    row("time that is rounded to the next hour", T::Gps, 7, T::Rational,
        T::longs({8, 1, 59, 1, 599999999, 10000000}), u"{GPS}/TimeStamp"_s, u"09:00:00"_s);
    row("time with parts of minutes", T::Gps, 7, T::Rational, T::longs({8, 1, 1235, 100, 0, 1}),
        u"{GPS}/TimeStamp"_s, u"08:12:21"_s);
    row("time with parts of hours", T::Gps, 7, T::Rational, T::longs({181, 60, 0, 1, 0, 1}),
        u"{GPS}/TimeStamp"_s, u"03:01:00"_s);
    row("leap second", T::Gps, 7, T::Rational, T::longs({23, 1, 59, 1, 60, 1}),
        u"{GPS}/TimeStamp"_s, u"23:59:60"_s);
    row("time as hours alone", T::Gps, 7, T::Rational, T::longs({3, 1, 0, 0, 0, 0}),
        u"{GPS}/TimeStamp"_s);
    row("four bytes", T::Gps, 0, T::Byte, "\x02\x03\0\0"_ba, u"{GPS}/GPSVersion"_s,
        list({2, 3, 0, 0}));
    row("number for a reference", T::Gps, 5, T::Byte, "\x01", u"{GPS}/AltitudeRef"_s, 1);
    row("unknown keeps its place", T::Exif, 0xA432, T::Rational,
        T::longs({24, 1, 70, 1, 0, 0, 4, 1}), u"{ExifAux}/LensInfo"_s, list({24, 70, 0, 4}));
    row("DNG version", T::Main, 0xC612, T::Byte, "\x01\x04\0\0"_ba, u"{DNG}/DNGVersion"_s,
        list({1, 4, 0, 0}));
    row("raw files' exposure", T::Main, 0x829A, T::Rational, T::longs({1, 4}),
        u"{Exif}/ExposureTime"_s, 0.25);
    row("orientation", T::Main, 0x0112, T::Short, T::shorts({6}), u"Orientation"_s, 6);
    row("no such orientation", T::Main, 0x0112, T::Short, T::shorts({9}), u"Orientation"_s);
    row("dots per inch by default", T::Main, 0x011A, T::Rational, T::longs({72, 1}), u"DPIWidth"_s,
        72);
    row("sRGB without a profile", T::Exif, 0xA001, T::Short, T::shorts({1}), u"ProfileName"_s,
        u"sRGB IEC61966-2.1"_s);
    row("no profile", T::Exif, 0xA001, T::Short, T::shorts({0xFFFF}), u"ProfileName"_s);
}

/// The tag travels in a JPEG, whose own statements it joins.
void TestImageReader::tagHasItsShape()
{
    QFETCH(int, folder);
    QFETCH(int, tag);
    QFETCH(int, type);
    QFETCH(QByteArray, stored);
    QFETCH(QString, key);
    QFETCH(QVariant, expected);
    TiffBuilder tiff;
    tiff.add(T::Main, 0x011B, T::Rational, T::longs({72, 1}));
    tiff.add(T::Folder(folder), quint16(tag), T::Type(type), stored);
    QImage image(4, 4, QImage::Format_RGB32);
    image.setDotsPerMeterX(0);
    const auto properties = read(jpegFile(image, tiff.build()));
    QVERIFY(properties);
    const QVariant value = valueAt(*properties, key);
    QVERIFY2(isSame(value, expected), qPrintable(shown(value)));
}

void TestImageReader::xmpTellsWhatExifDataDoesNot_data()
{
    QTest::addColumn<ImageWish>("wish");
    QTest::newRow("all tags") << ImageWish();
    QTest::newRow("one that the header has not") << ImageWish{{{u"{TIFF}"_s, u"Model"_s}}};
    QTest::newRow("one that XMP writes differently")
        << ImageWish{{{u"{Exif}"_s, u"DateTimeOriginal"_s}}};
    QTest::newRow("one that the header never has") << ImageWish{{{u"{IPTC}"_s, u"TimeCreated"_s}}};
}

void TestImageReader::xmpTellsWhatExifDataDoesNot()
{
    QFETCH(ImageWish, wish);
    TiffBuilder tiff;
    tiff.add(T::Main, 0x010F, T::Ascii, "Maker\0"_ba);
    tiff.add(T::Main, 0x0112, T::Short, T::shorts({8}));
    const QByteArray xmp = xmpPacket("tiff:Make='Other' tiff:Model='Cam' tiff:Orientation='6' "
                                     "exif:DateTimeOriginal='2011-02-03T04:05' "
                                     "photoshop:DateCreated='2012-03-04T05:06:07.8+09:00'");
    const QByteArray file = jpegFile(QImage(4, 4, QImage::Format_RGB32), tiff.build(), xmp);
    const QVariantMap all{{u"{TIFF}/Make"_s, u"Maker"_s},
                          {u"{TIFF}/Model"_s, u"Cam"_s},
                          {u"Orientation"_s, 8},
                          {u"{Exif}/DateTimeOriginal"_s, u"2011:02:03 04:05:00"_s},
                          {u"{IPTC}/DateCreated"_s, u"20120304"_s},
                          {u"{IPTC}/TimeCreated"_s, u"050607+0900"_s}};
    const auto properties = readImageProperties(m_tree.rawFile("x", file), wish);
    QVERIFY(properties);
    for (const auto &[key, value] : all.asKeyValueRange()) {
        const bool isWanted = wish.isAll() || key.endsWith(wish.tags.front().tag);
        QVERIFY2(!isWanted || isSame(valueAt(*properties, key), value), qPrintable(key));
    }
}

void TestImageReader::xmpHasItsShapeInIptc_data()
{
    QTest::addColumn<QByteArray>("xmp");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("stars") << xmpPacket("xmp:Rating='3'") << u"StarRating"_s << QVariant(3);
    QTest::newRow("stars with a fraction")
        << xmpPacket("xmp:Rating='4.0'") << u"StarRating"_s << QVariant(4);
    QTest::newRow("no number of stars")
        << xmpPacket("xmp:Rating='many'") << u"StarRating"_s << QVariant(u"many"_s);
    for (const char *prefix : {"Iptc4xmpCore", "iptc", "my"}) {
        const QByteArray space = "http://iptc.org/std/Iptc4xmpCore/1.0/xmlns/";
        const QByteArray contact = QByteArray("<P:CreatorContactInfo xmlns:P='" + space +
                                              "' rdf:parseType='Resource'><P:CiAdrCity>Graz"
                                              "</P:CiAdrCity><P:CiEmailWork>a@b</P:CiEmailWork>"
                                              "</P:CreatorContactInfo>")
                                       .replace("P:", QByteArray(prefix) + ':')
                                       .replace(":P=", ':' + QByteArray(prefix) + '=');
        QTest::addRow("contact under %s", prefix)
            << xmpPacket("", contact.constData()) << u"CreatorContactInfo"_s
            << QVariant(QVariantMap{{u"CiAdrCity"_s, u"Graz"_s}, {u"CiEmailWork"_s, u"a@b"_s}});
    }
}

void TestImageReader::xmpHasItsShapeInIptc()
{
    QFETCH(QByteArray, xmp);
    QFETCH(QString, key);
    QFETCH(QVariant, expected);
    const auto properties = read(jpegFile(QImage(4, 4, QImage::Format_RGB32), {}, xmp));
    QVERIFY(properties);
    const QVariant value = valueAt(*properties, u"{IPTC}/"_s + key);
    QVERIFY2(isSame(value, expected), qPrintable(shown(value)));
}

void TestImageReader::wholeCategoryIsSeenByItself_data()
{
    QTest::addColumn<bool>("isThere");
    for (const char *category : {"{Exif}", "{TIFF}", "{IPTC}", "{JFIF}"})
        QTest::newRow(category) << true;
    QTest::newRow("{GPS}") << false;
}

/// Rules ask for it as for any general tag; XMP alone tells of most of them here.
void TestImageReader::wholeCategoryIsSeenByItself()
{
    QFETCH(bool, isThere);
    const QString category = QString::fromUtf8(QTest::currentDataTag());
    const QByteArray xmp =
        xmpPacket("exif:ExposureTime='1/8' tiff:Model='Cam' photoshop:City='Graz'");
    const QByteArray file = jpegFile(QImage(4, 4, QImage::Format_RGB32), {}, xmp);
    const auto properties =
        readImageProperties(m_tree.rawFile("x", file), ImageWish{{{u""_s, category}}});
    QVERIFY(properties);
    QCOMPARE(properties->contains(category), isThere);
}

void TestImageReader::iptcRecordHasItsShape_data()
{
    QTest::addColumn<int>("dataset");
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("repeated") << 25 << "one|zwölf"_ba << u"{IPTC}/Keywords"_s
                              << QVariant(QVariantList{u"one"_s, u"zwölf"_s});
    QTest::newRow("single of a repeatable")
        << 80 << "Me"_ba << u"{IPTC}/Byline"_s << QVariant(QVariantList{u"Me"_s});
    QTest::newRow("once only") << 120 << "A|B"_ba << u"{IPTC}/Caption/Abstract"_s
                               << QVariant(u"A"_s);
    QTest::newRow("number") << 10 << "5"_ba << u"{IPTC}/Urgency"_s << QVariant(5);
    QTest::newRow("date") << 55 << "20040226"_ba << u"{IPTC}/DateCreated"_s
                          << QVariant(u"20040226"_s);
    QTest::newRow("time") << 60 << "062751-0500"_ba << u"{IPTC}/TimeCreated"_s
                          << QVariant(u"062751-0500"_s);
    QTest::newRow("time without a zone")
        << 60 << "121314"_ba << u"{IPTC}/TimeCreated"_s << QVariant(u"121314"_s);
    QTest::newRow("time of the first zone")
        << 63 << "121314+0000"_ba << u"{IPTC}/DigitalCreationTime"_s << QVariant(u"121314+0000"_s);
    QTest::newRow("codes of places") << 26 << "AUT|DEU"_ba << u"{IPTC}/ContentLocationCode"_s
                                     << QVariant(QVariantList{u"AUT"_s, u"DEU"_s});
    QTest::newRow("one reference")
        << 45 << "Agency"_ba << u"{IPTC}/ReferenceService"_s << QVariant(QVariantList{u"Agency"_s});
    QTest::newRow("days of references") << 47 << "20040226|20040227"_ba << u"{IPTC}/ReferenceDate"_s
                                        << QVariant(QVariantList{u"20040226"_s, u"20040227"_s});
    QTest::newRow("not a date") << 55 << "spring"_ba << u"{IPTC}/DateCreated"_s
                                << QVariant(u"spring"_s);
}

void TestImageReader::iptcRecordHasItsShape()
{
    QFETCH(int, dataset);
    QFETCH(QByteArray, stored);
    QFETCH(QString, key);
    QFETCH(QVariant, expected);
    QByteArray records;
    for (const QByteArray &value : stored.split('|')) {
        records += QByteArray("\x1C\x02", 2) + static_cast<char>(dataset) + '\0' +
                   static_cast<char>(value.size()) + value;
    }
    TiffBuilder tiff;
    tiff.add(T::Main, 0x0100, T::Short, T::shorts({1}));
    tiff.add(T::Main, 0x83BB, T::Undefined, records);
    const QImage image(4, 4, QImage::Format_RGB32);
    for (const QByteArray &file : {tiff.build(), jpegFile(image, {}, {}, records)}) {
        const auto properties = read(file);
        QVERIFY(properties);
        QCOMPARE(valueAt(*properties, key), expected);
    }
}

void TestImageReader::truncatedFileDoesNoHarm()
{
    for (const PictureSample &sample : pictureSamples()) {
        for (qsizetype size = 0; size < sample.bytes.size(); size += 1 + size / 64)
            read(sample.bytes.first(size));
    }
}

void TestImageReader::flippedBitsDoNoHarm()
{
    QRandomGenerator random(7);
    for (const PictureSample &sample : pictureSamples()) {
        for (int round = 0; round < 60; ++round) {
            QByteArray bytes = sample.bytes;
            for (int i = 0; i <= round % 3; ++i) {
                const auto at =
                    static_cast<qsizetype>(random.bounded(static_cast<quint32>(bytes.size())));
                bytes[at] = static_cast<char>(bytes[at] ^ (1 << random.bounded(8)));
            }
            read(bytes);
        }
    }
}

void TestImageReader::nothingIsReadFrom_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("Dear diary, JPEG and GIF89a are formats.\n");
    QTest::newRow("bare XMP") << QByteArray(
        "<?xpacket begin=''?><x:xmpmeta xmlns:x='adobe:ns:meta/'></x:xmpmeta>");
    QTest::newRow("film") << QByteArray("\0\0\0\x10"
                                        "ftypisom\0\0\0\0\0\0\0\x08moov",
                                        24);
    QTest::newRow("drawing") << QByteArray(
        "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
}

void TestImageReader::nothingIsReadFrom()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!read(bytes));
}

void TestImageReader::pipeAndFolderAreRefused()
{
    const QByteArray pipe = m_tree.path(u"pipe.jpg"_s).toUtf8();
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    QVERIFY(!readImageProperties(pipe)); // and nobody waits for a writer
    QVERIFY(!readImageProperties(m_tree.folder(u"a.jpg"_s).toUtf8()));
    QVERIFY(!readImageProperties("/dev/zero"));
}

void TestImageReader::hostileCountTakesNoMemory_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray giga("\x40\0\0\0", 4);
    QTest::newRow("png") << QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16) + giga + giga +
                                QByteArray("\x08\6\0\0\0\0\0\0\0", 9) + giga + "zTXtTitle";
    QTest::newRow("tiff") << QByteArray("II*\0\x08\0\0\0\1\0\x0E\1\2\0\0\0\0\x40\x1A\0\0\0\0\0\0\0",
                                        26);
    QTest::newRow("psd") << QByteArray("8BPS\0\1\0\0\0\0\0\0\0\3", 14) + giga + giga +
                                QByteArray("\0\x08\0\3\0\0\0\0", 8) + giga + "8BIM\4\x0F\0" + giga;
    QTest::newRow("heif") << QByteArray("\0\0\0\x10"
                                        "ftypheic\0\0\0\0",
                                        16) +
                                 giga + "meta" + QByteArray(4, '\0') + giga + "iinf";
    QTest::newRow("webp") << "RIFF" + giga + "WEBPEXIF" + QByteArray("\0\0\0\x40", 4);
    QTest::newRow("jp2") << QByteArray("\0\0\0\x0CjP  \r\n\x87\n", 12) + giga + "jp2h" + giga +
                                "colr\2";
    QTest::newRow("jpeg") << QByteArray("\xFF\xD8\xFF\xE1\xFF\xFF"
                                        "Exif\0\0MM\0*\0\0\0\x08\0\1\1\x0F\0\2",
                                        24) +
                                 giga + giga;
}

void TestImageReader::hostileCountTakesNoMemory()
{
    QFETCH(QByteArray, bytes);
    constexpr qint64 kMostKibibytes = 64 * 1024;
    const qint64 before = peakMemory();
    read(bytes);
    QVERIFY(peakMemory() - before < kMostKibibytes);
}

QTEST_GUILESS_MAIN(TestImageReader)
#include "tst_imagereader.moc"
