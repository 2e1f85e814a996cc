// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

class TestByteNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytesGoBackUnchanged_data();
    void bytesGoBackUnchanged();
    void anyBytesGoBackUnchanged();
    void lonePairHalves_data();
    void lonePairHalves();
    void urlPaths_data();
    void urlPaths();
    void invalidUrlPaths_data();
    void invalidUrlPaths();
    void display_data();
    void display();
};

void TestByteNames::bytesGoBackUnchanged_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("raw");
    QTest::newRow("empty") << QByteArray() << u""_s << false;
    QTest::newRow("ascii") << "photo.jpg"_ba << u"photo.jpg"_s << false;
    QTest::newRow("two bytes") << "\xC3\xA4"_ba << u"\u00E4"_s << false;
    QTest::newRow("three bytes") << "\xE2\x82\xAC"_ba << u"\u20AC"_s << false;
    QTest::newRow("pair") << "\xF0\x9F\x98\x80"_ba << u"\U0001F600"_s << false;
    QTest::newRow("last code point") << "\xF4\x8F\xBF\xBF"_ba << u"\U0010FFFF"_s << false;
    QTest::newRow("byte order mark in front") << "\xEF\xBB\xBFx"_ba << u"\uFEFFx"_s << false;
    QTest::newRow("not a character") << "\xEF\xBF\xBF"_ba << u"\uFFFF"_s << false;
    QTest::newRow("latin 1") << "\xE4.txt"_ba << u"\xDCE4.txt"_s << true;
    QTest::newRow("follow byte alone") << "\x80"_ba << u"\xDC80"_s << true;
    QTest::newRow("cut short") << "a\xE2\x82"_ba << u"a\xDCE2\xDC82"_s << true;
    QTest::newRow("cut short, then text") << "\xC3z"_ba << u"\xDCC3z"_s << true;
    QTest::newRow("encoded U+DC80") << "\xED\xB2\x80"_ba << u"\xDCED\xDCB2\xDC80"_s << true;
    QTest::newRow("encoded pair of halves")
        << "\xED\xA0\xBD\xED\xB8\x80"_ba << u"\xDCED\xDCA0\xDCBD\xDCED\xDCB8\xDC80"_s << true;
    QTest::newRow("overlong slash") << "\xC0\xAF"_ba << u"\xDCC0\xDCAF"_s << true;
    QTest::newRow("overlong, three bytes") << "\xE0\x80\xAF"_ba << u"\xDCE0\xDC80\xDCAF"_s << true;
    QTest::newRow("above the last")
        << "\xF4\x90\x80\x80"_ba << u"\xDCF4\xDC90\xDC80\xDC80"_s << true;
    QTest::newRow("never in UTF-8") << "\xFE\xFF"_ba << u"\xDCFE\xDCFF"_s << true;
    QTest::newRow("raw after a pair") << "\xF0\x9F\x98\x80\x80"_ba << u"\U0001F600\xDC80"_s << true;
}

void TestByteNames::bytesGoBackUnchanged()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QCOMPARE(ByteNames::fromBytes(bytes), text);
    QCOMPARE(ByteNames::toBytes(text), bytes);
    QTEST(ByteNames::hasRawBytes(text), "raw");
    QCOMPARE(ByteNames::fromUrlPath(ByteNames::toUrlPath(text)),
             bytes.isEmpty() ? QString() : text);
}

void TestByteNames::anyBytesGoBackUnchanged()
{
    std::mt19937 random(20240229);
    // Bytes at the borders of UTF-8's ranges meet in every order far more often than by chance.
    constexpr char kBorders[] = "\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xEC\xED\xEE\xEF"
                                "\xF0\xF1\xF3\xF4\xF5\xFF"
                                "a";
    for (int round = 0; round < 200'000; ++round) {
        QByteArray bytes;
        for (auto length = random() % 12; length > 0; --length)
            bytes += kBorders[random() % (sizeof kBorders - 1)];
        const QString text = ByteNames::fromBytes(bytes);
        if (ByteNames::toBytes(text) != bytes)
            QFAIL(bytes.toHex(' ').constData());
        QCOMPARE(ByteNames::hasRawBytes(text), !bytes.isValidUtf8());
    }
}

void TestByteNames::lonePairHalves_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("clean");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("high half") << u"a\xD83D"_s << u"a\uFFFD"_s << "a\xEF\xBF\xBD"_ba;
    QTest::newRow("low half that is no byte") << u"\xDE00z"_s << u"\uFFFDz"_s << "\xEF\xBF\xBDz"_ba;
    QTest::newRow("below the bytes") << u"\xDC7F"_s << u"\uFFFD"_s << "\xEF\xBF\xBD"_ba;
    QTest::newRow("two high halves")
        << u"\xD83D\xD83D"_s << u"\uFFFD\uFFFD"_s << "\xEF\xBF\xBD\xEF\xBF\xBD"_ba;
    QTest::newRow("raw byte stays") << u"\xDCE4"_s << u"\xDCE4"_s << "\xE4"_ba;
    QTest::newRow("pair stays") << u"\U0001F600"_s << u"\U0001F600"_s << "\xF0\x9F\x98\x80"_ba;
}

void TestByteNames::lonePairHalves()
{
    QFETCH(QString, text);
    QTEST(ByteNames::withoutLoneSurrogates(text), "clean");
    QTEST(ByteNames::toBytes(text), "bytes");
}

void TestByteNames::urlPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("encoded");
    QTest::newRow("plain") << u"/home/me/a-b_c.~1"_s << u"/home/me/a-b_c.~1"_s;
    QTest::newRow("blank and percent") << u"/100% sure"_s << u"/100%25%20sure"_s;
    QTest::newRow("marks of a URL") << u"/a?b#c[d];e"_s << u"/a%3Fb%23c%5Bd%5D%3Be"_s;
    QTest::newRow("umlaut") << u"/\u00E4"_s << u"/%C3%A4"_s;
    QTest::newRow("raw byte") << u"/\xDCE4"_s << u"/%E4"_s;
    QTest::newRow("line break") << u"/a\nb"_s << u"/a%0Ab"_s;
}

void TestByteNames::urlPaths()
{
    QFETCH(QString, path);
    QFETCH(QString, encoded);
    QCOMPARE(ByteNames::toUrlPath(path), encoded);
    QCOMPARE(ByteNames::fromUrlPath(encoded), path);
    QCOMPARE(ByteNames::fromUrlPath(encoded.toLower()), path.toLower());
}

void TestByteNames::invalidUrlPaths_data()
{
    QTest::addColumn<QString>("encoded");
    for (const char *const text : {"/a%", "/a%4", "/a%G1", "/a%1G", "/a%00b", "/a%-1"})
        QTest::newRow(text) << QString::fromLatin1(text);
    QTest::newRow("not ASCII") << u"/\u00E4"_s;
    QTest::newRow("wide digits") << u"/%\uFF14\uFF11"_s;
}

void TestByteNames::invalidUrlPaths()
{
    QFETCH(QString, encoded);
    QVERIFY(ByteNames::fromUrlPath(encoded).isNull());
}

void TestByteNames::display_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("plain") << u"a \u00E4 \U0001F600"_s << u"a \u00E4 \U0001F600"_s;
    QTest::newRow("line break and escape") << u"a\n\x1B[0m"_s << u"a\\x0A\\x1B[0m"_s;
    QTest::newRow("delete, next line") << u"\x7F\u0085"_s << u"\\x7F\\xC2\\x85"_s;
    QTest::newRow("line separator") << u"\u2028"_s << u"\\xE2\\x80\\xA8"_s;
    QTest::newRow("right to left override") << u"a\u202Egpj"_s << u"a\\xE2\\x80\\xAEgpj"_s;
    QTest::newRow("raw byte") << u"\xDCE4.txt"_s << u"\\xE4.txt"_s;
    QTest::newRow("lone half") << u"\xD83D"_s << u"\uFFFD"_s;
}

void TestByteNames::display()
{
    QFETCH(QString, name);
    QTEST(ByteNames::forDisplay(name), "shown");
}

QTEST_GUILESS_MAIN(TestByteNames)
#include "tst_bytenames.moc"
