// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CborValues.h"
#include "platform/MetadataFrames.h"
#include "platform/MetadataProtocol.h"
#include "platform/TDate.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QVariantMap properties()
{
    return {{u"Text"_s, u"Grüße \U0001F4F7"_s},
            {u"Least"_s, std::numeric_limits<qint64>::min()},
            {u"Minus"_s, qint64{-1}},
            {u"Most"_s, std::numeric_limits<quint64>::max()},
            {u"Real"_s, 1.0 / 60},
            {u"Flag"_s, true},
            {u"Bytes"_s, QByteArray("\0\xff", 2)},
            {u"Date"_s, QVariant::fromValue(TDate{-5})},
            {u"Nothing"_s, QVariant()},
            {u"List"_s, QVariantList{qint64{2}, u"b"_s, QVariantList{}}},
            {u"{IPTC}"_s, QVariantMap{{u"Contact"_s, QVariantMap{{u"City"_s, u"Ulm"_s}}}}}};
}

MetadataReply reply()
{
    return {7, properties(),
            MediaReading{{{u"itunes"_s, quint32{0xA96E616D}, u"title"_s, u"Song"_s},
                          {u"itunes"_s, u"trkn"_s, {}, QByteArray(8, '\1')}},
                         245.5},
            MetadataThumbnail{2, 1, QByteArray(8, 'p')}};
}

QByteArray contentOf(const QByteArray &frame)
{
    return frame.mid(MetadataProtocol::kHeaderBytes);
}

/// A reply whose properties, media and thumbnail are these bytes.
QByteArray replyOf(const QByteArray &parts)
{
    return "\x84\x01" + parts;
}

/// The properties {"a": value}, and nothing else.
QByteArray valueOf(const QByteArray &value)
{
    return replyOf("\xa1\x61"
                   "a" +
                   value + "\xf6\xf6");
}

} // namespace

class TestMetadataProtocol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void repliesComeThrough();
    void requestsComeThrough();
    void tooLargeRepliesBecomeEmpty();
    void refusesHostileReplies_data();
    void refusesHostileReplies();
    void refusesEveryPartOfAReply();
    void refusesHostileRequests_data();
    void refusesHostileRequests();
    void takesFramesApart();
    void refusesLongFrames();
};

void TestMetadataProtocol::repliesComeThrough()
{
    const auto read = MetadataProtocol::readReply(contentOf(MetadataProtocol::frame(reply())));
    QVERIFY(read);
    QCOMPARE(read->id, 7U);
    QCOMPARE(*read->imageProperties, properties());
    QCOMPARE(read->media->duration, 245.5);
    QCOMPARE(read->media->items.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        const MediaItem item = reply().media->items[i];
        QCOMPARE(read->media->items[i].format, item.format);
        QCOMPARE(read->media->items[i].key, item.key);
        QCOMPARE(read->media->items[i].commonKey, item.commonKey);
        QCOMPARE(read->media->items[i].value, item.value);
    }
    QCOMPARE(read->thumbnail->width, 2);
    QCOMPARE(read->thumbnail->pixels, QByteArray(8, 'p'));

    const auto empty = MetadataProtocol::readReply(
        contentOf(MetadataProtocol::frame(MetadataReply{9, {}, {}, {}})));
    QVERIFY(empty && !empty->imageProperties && !empty->media && !empty->thumbnail);
}

void TestMetadataProtocol::requestsComeThrough()
{
    const MetadataRequest request{1U << 31,
                                  {MetadataRequest::Media, MetadataRequest::Thumbnail},
                                  256,
                                  "/a\xff\n",
                                  {{{{}, u"Depth"_s}, {u"{Exif}"_s, u"FNumber"_s}}}};
    const auto read = MetadataProtocol::readRequest(contentOf(MetadataProtocol::frame(request)));
    QVERIFY(read);
    QCOMPARE(read->id, request.id);
    QCOMPARE(read->parts, request.parts);
    QCOMPARE(read->edge, 256);
    QCOMPARE(read->path, request.path);
    QCOMPARE(read->wish.tags.size(), 2U);
    QCOMPARE(read->wish.tags.back().category, u"{Exif}"_s);
    QCOMPARE(read->wish.tags.back().tag, u"FNumber"_s);
    // Too many wishes for one request are a wish for all.
    MetadataRequest greedy;
    greedy.wish.tags.assign(200, {u"{Exif}"_s, u"FNumber"_s});
    const QByteArray frame = MetadataProtocol::frame(greedy);
    QVERIFY(frame.size() < MetadataProtocol::kMaxRequest);
    QVERIFY(MetadataProtocol::readRequest(contentOf(frame))->wish.isAll());
    QVERIFY(MetadataProtocol::isGreeting(contentOf(MetadataProtocol::greeting())));
    QVERIFY(!MetadataProtocol::isGreeting(contentOf(MetadataProtocol::frame(request))));
}

void TestMetadataProtocol::tooLargeRepliesBecomeEmpty()
{
    MetadataReply large = reply();
    large.imageProperties->insert(u"Large"_s, QByteArray(MetadataProtocol::kMaxReply, 'x'));
    const auto read = MetadataProtocol::readReply(contentOf(MetadataProtocol::frame(large)));
    QVERIFY(read && !read->imageProperties && !read->media);
    QCOMPARE(read->id, 7U);
}

void TestMetadataProtocol::refusesHostileReplies_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no array") << QByteArray("\x01");
    QTest::newRow("something behind") << contentOf(MetadataProtocol::frame(reply())) + '\xf6';
    QTest::newRow("too few parts") << QByteArray("\x83\x01\xf6\xf6");
    QTest::newRow("too many parts") << QByteArray("\x85\x01\xf6\xf6\xf6\xf6");
    QTest::newRow("a negative id") << QByteArray("\x84\x20\xf6\xf6\xf6");
    QTest::newRow("properties that are a text") << replyOf("\x61x\xf6\xf6");
    QTest::newRow("endless map") << replyOf("\xbf\xff\xf6\xf6");
    QTest::newRow("keys that are numbers") << replyOf(QByteArray("\xa1\x00\x00\xf6\xf6", 5));
    QTest::newRow("endless list") << valueOf("\x9f\xff");
    QTest::newRow("endless text") << valueOf("\x7f\x61z\xff");
    QTest::newRow("a list of 2^62") << valueOf("\x9b\x40" + QByteArray(7, '\0'));
    QTest::newRow("a map of 2^62") << valueOf("\xbb\x40" + QByteArray(7, '\0'));
    QTest::newRow("a text of 2^40 bytes") << valueOf(QByteArray("\x7b\0\0\1\0\0\0\0\0", 9));
    QTest::newRow("bytes of 2^31") << valueOf(QByteArray("\x5a\x80\0\0\0", 5));
    QTest::newRow("no UTF-8") << valueOf("\x61\xff");
    QTest::newRow("below 64 bits") << valueOf("\x3b" + QByteArray(8, '\xff'));
    QTest::newRow("another tag") << valueOf(QByteArray("\xc1\x00", 2));
    QTest::newRow("tag in a tag") << valueOf(QByteArray("\xda\x00\x54\x44\x61", 5).repeated(2) +
                                             '\0');
    QTest::newRow("deep") << valueOf(QByteArray(100, '\x81') + "\xf6");
    QTest::newRow("deep maps") << valueOf(QByteArray("\xa1\x61z").repeated(1000) + "\xf6");
    QTest::newRow("many") << valueOf("\x9a\x00\x04\x00\x00" + QByteArray(0x40000, '\xf6'));
    QTest::newRow("half-precision") << valueOf(QByteArray("\xf9\x3c\x00", 3));
    QTest::newRow("media without items") << replyOf("\xf6\x81\xf6\xf6");
    QTest::newRow("thumbnail without its pixels")
        << replyOf(QByteArray("\xf6\xf6\x83\x02\x02\x44", 6) + "pppp");
    QTest::newRow("empty thumbnail") << replyOf(QByteArray("\xf6\xf6\x83\x00\x00\x40", 6));
    QTest::newRow("giant thumbnail")
        << replyOf(QByteArray("\xf6\xf6\x83\x1a\x7f\xff\xff\xff\x1a\x7f\xff\xff\xff\x40", 14));
}

void TestMetadataProtocol::refusesHostileReplies()
{
    QFETCH(QByteArray, content);
    QVERIFY(MetadataProtocol::readReply(valueOf("\x01")));
    QVERIFY(!MetadataProtocol::readReply(content));
}

void TestMetadataProtocol::refusesEveryPartOfAReply()
{
    const QByteArray whole = contentOf(MetadataProtocol::frame(reply()));
    for (qsizetype size = 0; size < whole.size(); ++size)
        QVERIFY2(!MetadataProtocol::readReply(whole.first(size)),
                 qPrintable(QString::number(size)));
    // Whatever a byte turns into, reading comes to an end.
    for (qsizetype i = 0; i < whole.size(); ++i) {
        QByteArray damaged = whole;
        for (int bit = 0; bit < 8; ++bit) {
            damaged[i] = static_cast<char>(whole[i] ^ 1 << bit);
            MetadataProtocol::readReply(damaged);
        }
    }
}

void TestMetadataProtocol::refusesHostileRequests_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("unknown part") << QByteArray("\x84\x01\x08\x00\x41/", 6);
    QTest::newRow("giant edge") << QByteArray("\x84\x01\x04\x19\x04\x01\x41/");
    QTest::newRow("long path") << "\x84\x01\x01\x01\x59\x10\x01" + QByteArray(4097, '/');
    QTest::newRow("path that is a text") << QByteArray("\x84\x01\x01\x01\x61/");
}

void TestMetadataProtocol::refusesHostileRequests()
{
    QFETCH(QByteArray, content);
    QVERIFY(!MetadataProtocol::readRequest(content));
}

void TestMetadataProtocol::takesFramesApart()
{
    MetadataFrames frames(100);
    const QByteArray stream = MetadataProtocol::greeting().repeated(3);
    qsizetype found = 0;
    for (qsizetype i = 0; i < stream.size(); ++i) {
        frames.append(QByteArrayView(stream).sliced(i, 1));
        while (const auto content = frames.next()) {
            QVERIFY(MetadataProtocol::isGreeting(*content));
            ++found;
        }
    }
    QCOMPARE(found, 3);
    frames.append(stream);
    for (; frames.next(); ++found) {
    }
    QCOMPARE(found, 6);
    QVERIFY(!frames.isBroken());
}

void TestMetadataProtocol::refusesLongFrames()
{
    MetadataFrames frames(100);
    frames.append(QByteArray("\x65\0\0\0", 4));
    QVERIFY(!frames.next());
    QVERIFY(frames.isBroken());
    frames.append(MetadataProtocol::greeting());
    QVERIFY(!frames.next());
}

QTEST_GUILESS_MAIN(TestMetadataProtocol)
#include "tst_metadataprotocol.moc"
