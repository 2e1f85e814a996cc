// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/PictureSamples.h"
#include "readers/ThumbnailReader.h"
#include "readers/TiffBuilder.h"
#include "support/TemporaryTree.h"

#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

using T = TiffBuilder;

/// Wide and black, with a white upper left quarter.
QImage marked()
{
    QImage image(320, 160, QImage::Format_RGB32);
    image.fill(Qt::black);
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 160; ++x)
            image.setPixelColor(x, y, Qt::white);
    }
    return image;
}

/// The corner where the white quarter is: "tl", "tr", "bl" or "br".
QString whiteCorner(const QImage &image)
{
    const int x = image.width() / 4;
    const int y = image.height() / 4;
    const auto isWhite = [&](int column, int row) {
        return image.pixelColor(column, row).lightness() > 128;
    };
    for (const bool isBelow : {false, true}) {
        for (const bool isRight : {false, true}) {
            if (isWhite(isRight ? 3 * x : x, isBelow ? 3 * y : y))
                return QString(isBelow ? u'b' : u't') + (isRight ? u'r' : u'l');
        }
    }
    return {};
}

QByteArray orientationBlock(int orientation, const QByteArray &preview = {})
{
    TiffBuilder tiff;
    tiff.add(T::Main, 0x0112, T::Short, T::shorts({orientation}));
    if (preview.isEmpty())
        return tiff.build();
    // The place of the preview is known once the rest is built.
    const auto withPlace = [&](int place) {
        TiffBuilder all = tiff;
        all.add(T::Thumbnail, 0x0103, T::Short, T::shorts({6}));
        all.add(T::Thumbnail, 0x0201, T::Long, T::longs({place}));
        all.add(T::Thumbnail, 0x0202, T::Long, T::longs({int(preview.size())}));
        return all.build();
    };
    return withPlace(int(withPlace(0).size())) + preview;
}

QByteArray sample(const QString &name)
{
    QFile file(QString::fromUtf8(TAVRIN_SOURCE_DIR) + u"/tests/data/pictures/"_s + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Without layers and resources; unpacked, gray, of 16 bits.
QByteArray psd(const QImage &image)
{
    QByteArray file("8BPS\0\1\0\0\0\0\0\0\0\1", 14);
    for (const int number : {image.height(), image.width()})
        file += QByteArray(2, '\0') + static_cast<char>(number >> 8) + static_cast<char>(number);
    file += QByteArray("\0\x10\0\1", 4) + QByteArray(14, '\0');
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            file += QByteArray(1, static_cast<char>(qGray(image.pixel(x, y)))) + '\0';
    }
    return file;
}

/// A song that begins with an ID3 tag of one picture.
QByteArray song(const QByteArray &picture)
{
    const QByteArray frame = QByteArray("\0image/jpeg\0\x03\0", 14) + picture;
    QByteArray size = T::number(quint64(frame.size()), 4);
    std::reverse(size.begin(), size.end());
    const auto total = quint64(frame.size()) + 10;
    QByteArray syncsafe;
    for (int shift = 21; shift >= 0; shift -= 7)
        syncsafe.append(static_cast<char>(total >> shift & 0x7F));
    const QByteArray sound =
        (QByteArray("\xFF\xFB\x90\x44", 4) + QByteArray(413, '\0')).repeated(8);
    return QByteArray("ID3\3\0\0", 6) + syncsafe + "APIC" + size + QByteArray(2, '\0') + frame +
           sound;
}

} // namespace

class TestThumbnailReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pictureIsUprightAndFits_data();
    void pictureIsUprightAndFits();
    void thereIsNone_data();
    void thereIsNone();
    void pipeIsRefused();

private:
    TemporaryTree m_tree;
};

void TestThumbnailReader::pictureIsUprightAndFits_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("edge");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("corner");
    const char *corners[] = {"tl", "tr", "br", "bl", "tl", "tr", "br", "bl"};
    for (int i = 1; i <= 8; ++i) {
        const QSize size = i <= 4 ? QSize(64, 32) : QSize(32, 64);
        const QString corner = QString::fromLatin1(corners[i - 1]);
        QTest::addRow("photo, orientation %d", i)
            << jpegFile(marked(), orientationBlock(i)) << 64 << size << corner;
        QTest::addRow("preview, orientation %d", i)
            << orientationBlock(i, jpegFile(marked())) << 64 << size << corner;
    }
    QTest::newRow("small ones keep their size")
        << pngFile(marked()) << 1000 << QSize(320, 160) << u"tl"_s;
    QTest::newRow("heif, its thumbnail")
        << sample(u"marked.heic"_s) << 64 << QSize(64, 32) << u"tl"_s;
    QTest::newRow("heif, itself") << sample(u"marked.heic"_s) << 1000 << QSize(320, 160) << u"tl"_s;
    QTest::newRow("heif of two tiles, turned to the left")
        << sample(u"tiles.heic"_s) << 64 << QSize(64, 64) << u"bl"_s;
    QTest::newRow("avif") << sample(u"marked.avif"_s) << 64 << QSize(64, 32) << u"tl"_s;
    QTest::newRow("jpeg 2000, turned to the right by its Exif data")
        << sample(u"marked.jp2"_s) << 64 << QSize(32, 64) << u"tr"_s;
    QTest::newRow("jpeg 2000 of too few steps")
        << sample(u"flat.j2k"_s) << 64 << QSize(64, 32) << u"tl"_s;
    QTest::newRow("psd without a preview") << psd(marked()) << 64 << QSize(64, 32) << u"tl"_s;
    QTest::newRow("tga, packed") << sample(u"marked.tga"_s) << 64 << QSize(64, 32) << u"tl"_s;
    QTest::newRow("cover") << song(jpegFile(marked())) << 64 << QSize(64, 32) << u"tl"_s;
}

void TestThumbnailReader::pictureIsUprightAndFits()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, edge);
    QFETCH(QSize, size);
    QFETCH(QString, corner);
    const QImage image = readThumbnail(m_tree.rawFile("caf\xE9", bytes), edge);
    QCOMPARE(image.size(), size);
    QCOMPARE(whiteCorner(image), corner);
}

void TestThumbnailReader::thereIsNone_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("drawing") << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='9' "
                                           "height='9'><rect width='9' height='9'/></svg>");
    QTest::newRow("photo without preview") << orientationBlock(1);
    QTest::newRow("heif cut in its second tile") << sample(u"tiles.heic"_s).chopped(8);
    QTest::newRow("broken preview") << orientationBlock(1, "\xFF\xD8\xFF junk");
    QTest::newRow("too large") << QByteArray("BM", 2) + QByteArray(12, '\0') +
                                      T::longs({40, 60000, 60000}) + T::shorts({1, 24}) +
                                      QByteArray(24, '\0');
}

void TestThumbnailReader::thereIsNone()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(readThumbnail(m_tree.rawFile("a.jpg", bytes), 64).isNull());
}

void TestThumbnailReader::pipeIsRefused()
{
    const QByteArray pipe = m_tree.path(u"pipe.jpg"_s).toUtf8();
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    QVERIFY(readThumbnail(pipe, 64).isNull());
}

QTEST_GUILESS_MAIN(TestThumbnailReader)
#include "tst_thumbnailreader.moc"
