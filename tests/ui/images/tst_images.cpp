// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TemporaryTree.h"
#include "ui/images/ImageCanvas.h"
#include "ui/images/Images.h"
#include "ui/images/ThumbnailCache.h"

#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// One pixel a letter: its colours are told apart by the letter.
QImage picture(const QStringList &rows)
{
    QImage image(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()),
                 QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(rows[y][x].toLatin1(), 0, 0));
    return image;
}

QString letters(const QImage &image)
{
    QStringList rows;
    for (int y = 0; y < image.height(); ++y) {
        QString row;
        for (int x = 0; x < image.width(); ++x)
            row += QChar(qRed(image.pixel(x, y)));
        rows += row;
    }
    return rows.join(u'/');
}

} // namespace

/// Pictures in memory, and those that desktop programs share.
class TestImages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void turnsUpright_data();
    void turnsUpright();
    void fitsWithItsAspect_data();
    void fitsWithItsAspect();
    void goesToPlainPixelsAndBack();
    void roundsItsCorners();
    void becomesAFile();
    void findsOnlyWhatBelongsToTheFile_data();
    void findsOnlyWhatBelongsToTheFile();
    void sharesThumbnailsWithOtherPrograms();
};

void TestImages::turnsUpright_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QString>("seen");
    // Stored is what a camera writes whose picture is to be seen as ABC over DEF.
    QTest::addRow("upright") << 1 << u"ABC/DEF"_s;
    QTest::addRow("mirrored") << 2 << u"CBA/FED"_s;
    QTest::addRow("upside down") << 3 << u"FED/CBA"_s;
    QTest::addRow("upside down, mirrored") << 4 << u"DEF/ABC"_s;
    QTest::addRow("transposed") << 5 << u"AD/BE/CF"_s;
    QTest::addRow("to be turned right") << 6 << u"DA/EB/FC"_s;
    QTest::addRow("transposed the other way") << 7 << u"FC/EB/DA"_s;
    QTest::addRow("to be turned left") << 8 << u"CF/BE/AD"_s;
    QTest::addRow("unknown") << 9 << u"ABC/DEF"_s;
}

void TestImages::turnsUpright()
{
    QFETCH(int, orientation);
    const QImage stored = picture({u"ABC"_s, u"DEF"_s});
    const QImage seen = Images::upright(stored, orientation);
    QTEST(letters(seen), "seen");
    QCOMPARE(Images::upright(stored.size(), orientation), seen.size());
}

void TestImages::fitsWithItsAspect_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("fitting");
    QTest::addRow("wide") << QSize(400, 100) << QSize(100, 25);
    QTest::addRow("high") << QSize(100, 400) << QSize(15, 60);
    QTest::addRow("small stays small") << QSize(3, 4) << QSize(3, 4);
    QTest::addRow("a line keeps a pixel") << QSize(5000, 1) << QSize(100, 1);
}

void TestImages::fitsWithItsAspect()
{
    QFETCH(QSize, size);
    QTEST(Images::fitted(QImage(size, QImage::Format_RGB32), QSize(100, 60)).size(), "fitting");
}

void TestImages::goesToPlainPixelsAndBack()
{
    QImage image = picture({u"ABC"_s, u"DEF"_s});
    image.setPixelColor(1, 1, QColor(200, 100, 0, 128));
    MetadataThumbnail plain = Images::toThumbnail(image.convertToFormat(QImage::Format_ARGB32));
    QCOMPARE(plain.pixels.size(), 2 * 3 * 4);
    QCOMPARE(Images::fromThumbnail(plain), image);
    plain.pixels.chop(1);
    QVERIFY(Images::fromThumbnail(plain).isNull());
}

void TestImages::roundsItsCorners()
{
    ImageCanvas canvas(QSize(20, 10), 2);
    canvas->fillRect(QRect(0, 0, 20, 10), Qt::red);
    const QImage rounded = Images::rounded(canvas.finish(), 6);
    QCOMPARE(rounded.size(), QSize(40, 20));
    QCOMPARE(qAlpha(rounded.pixel(39, 19)), 0);
    QCOMPARE(rounded.pixelColor(20, 19), QColor(Qt::red));
}

void TestImages::becomesAFile()
{
    const TemporaryTree tree;
    const QString path = tree.path(u"picture"_s);
    QImage image = picture({u"AB"_s});
    QCOMPARE(Images::save(image, path, Images::Format::Png), QString());
    QCOMPARE(letters(QImage(path)), u"AB"_s);
    image.fill(Qt::transparent);
    QCOMPARE(Images::save(image, path, Images::Format::Jpeg, 95), QString());
    QCOMPARE(QImage(path, "jpeg").pixelColor(0, 0), QColor(Qt::white));
    QVERIFY(!Images::save(image, tree.path(u"missing/picture"_s), Images::Format::Png).isEmpty());
    QCOMPARE(tree.list(), QStringList{u"picture"_s});
}

void TestImages::findsOnlyWhatBelongsToTheFile_data()
{
    QTest::addColumn<QString>("spoil");
    QTest::addColumn<qint64>("modified");
    QTest::addColumn<int>("edge");
    QTest::addColumn<QSize>("found");
    QTest::addRow("hit") << QString() << 77LL << 256 << QSize(200, 100);
    QTest::addRow("scaled down") << QString() << 77LL << 128 << QSize(128, 64);
    QTest::addRow("too small") << QString() << 77LL << 512 << QSize();
    QTest::addRow("stale") << QString() << 78LL << 256 << QSize();
    QTest::addRow("of another file") << u"uri"_s << 77LL << 256 << QSize();
    QTest::addRow("larger than it may be") << u"size"_s << 77LL << 256 << QSize();
    QTest::addRow("no picture") << u"text"_s << 77LL << 256 << QSize();
    QTest::addRow("a link") << u"link"_s << 77LL << 256 << QSize();
    QTest::addRow("a pipe") << u"pipe"_s << 77LL << 256 << QSize();
}

void TestImages::findsOnlyWhatBelongsToTheFile()
{
    QFETCH(QString, spoil);
    const TemporaryTree tree;
    const ThumbnailCache cache(tree.path(u"thumbnails"_s).toUtf8());
    const auto file = TFileURL::fileURLWithPath(u"/home/me/a b;ü.jpg"_s);
    QVERIFY(cache.store(file, 77, 256, QImage(200, 100, QImage::Format_RGB32)));
    const QString path =
        tree.path(u"thumbnails/large/"_s + tree.list(u"thumbnails/large"_s).constFirst());
    QImage image(spoil == "size"_L1 ? 257 : 200, 100, QImage::Format_RGB32);
    image.setText(u"Thumb::URI"_s, spoil == "uri"_L1 ? u"file:///b"_s : file.absoluteString());
    image.setText(u"Thumb::MTime"_s, u"77"_s);
    if (spoil == "link"_L1)
        QVERIFY(QFile::rename(path, path + u'2') && QFile::link(path + u'2', path));
    else if (spoil == "pipe"_L1)
        QVERIFY(QFile::remove(path) && ::mkfifo(path.toUtf8().constData(), 0600) == 0);
    else if (spoil == "text"_L1)
        tree.file(path.mid(tree.path().size() + 1), "no picture");
    else if (!spoil.isEmpty())
        QVERIFY(image.save(path, "png"));
    QFETCH(qint64, modified);
    QFETCH(int, edge);
    const QImage found = cache.find(file, modified, edge);
    QTEST(found.isNull() ? QSize() : found.size(), "found");
}

/// The name and the marks are what others look for.
void TestImages::sharesThumbnailsWithOtherPrograms()
{
    const TemporaryTree tree;
    const ThumbnailCache cache(tree.path(u"thumbnails"_s).toUtf8());
    const auto file = TFileURL::fileURLWithPath(u"/home/jens/photos/me.png"_s);
    QVERIFY(cache.store(file, 5, 128, QImage(8, 8, QImage::Format_RGB32)));
    const QString name = u"thumbnails/normal/c6ee772d9e49320e97ec29a7eb5b1697.png"_s;
    QVERIFY(tree.exists(name));
    QCOMPARE(QImage(tree.path(name)).text(u"Thumb::MTime"_s), u"5"_s);
    const auto mode = [&](const QString &relative) {
        struct stat status = {};
        ::stat(tree.path(relative).toUtf8().constData(), &status);
        return status.st_mode & 0777U;
    };
    QCOMPARE(mode(name), 0600U);
    QCOMPARE(mode(u"thumbnails/normal"_s), 0700U);
    QVERIFY(!cache.store(TFileURL::fileURLWithPath(tree.path(name)), 5, 128,
                         QImage(8, 8, QImage::Format_RGB32)));
    QCOMPARE(tree.list(u"thumbnails"_s).size(), 2);
}

QTEST_GUILESS_MAIN(TestImages)
#include "tst_images.moc"
