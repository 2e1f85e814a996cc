// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "support/Table.h"

#include <random>

using namespace Qt::StringLiterals;

class TestByteNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytesGoBackUnchanged_data()
    {
        const Table<QByteArray, QString, bool> row("bytes", "text", "raw");
        row("empty", QByteArray(), u"", false);
        row("ascii", "photo.jpg"_ba, u"photo.jpg", false);
        row("two bytes", "\xC3\xA4"_ba, u"\u00E4", false);
        row("three bytes", "\xE2\x82\xAC"_ba, u"\u20AC", false);
        row("pair", "\xF0\x9F\x98\x80"_ba, u"\U0001F600", false);
        row("last code point", "\xF4\x8F\xBF\xBF"_ba, u"\U0010FFFF", false);
        row("byte order mark in front", "\xEF\xBB\xBFx"_ba, u"\uFEFFx", false);
        row("not a character", "\xEF\xBF\xBF"_ba, u"\uFFFF", false);
        row("latin 1", "\xE4.txt"_ba, u"\xDCE4.txt", true);
        row("follow byte alone", "\x80"_ba, u"\xDC80", true);
        row("cut short", "a\xE2\x82"_ba, u"a\xDCE2\xDC82", true);
        row("cut short, then text", "\xC3z"_ba, u"\xDCC3z", true);
        row("encoded U+DC80", "\xED\xB2\x80"_ba, u"\xDCED\xDCB2\xDC80", true);
        row("encoded pair of halves", "\xED\xA0\xBD\xED\xB8\x80"_ba,
            u"\xDCED\xDCA0\xDCBD\xDCED\xDCB8\xDC80", true);
        row("overlong slash", "\xC0\xAF"_ba, u"\xDCC0\xDCAF", true);
        row("overlong, three bytes", "\xE0\x80\xAF"_ba, u"\xDCE0\xDC80\xDCAF", true);
        row("above the last", "\xF4\x90\x80\x80"_ba, u"\xDCF4\xDC90\xDC80\xDC80", true);
        row("never in UTF-8", "\xFE\xFF"_ba, u"\xDCFE\xDCFF", true);
        row("raw after a pair", "\xF0\x9F\x98\x80\x80"_ba, u"\U0001F600\xDC80", true);
    }

    void bytesGoBackUnchanged()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QCOMPARE(ByteNames::fromBytes(bytes), text);
        QCOMPARE(ByteNames::toBytes(text), bytes);
        QTEST(ByteNames::hasRawBytes(text), "raw");
        QCOMPARE(ByteNames::fromUrlPath(ByteNames::toUrlPath(text)),
                 bytes.isEmpty() ? QString() : text);
    }

    void anyBytesGoBackUnchanged()
    {
        std::mt19937 random(20240229);
        // Bytes at the borders of UTF-8's ranges meet in every order far more often than by chance.
        constexpr char kBorders[] =
            "\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xEC\xED\xEE\xEF"
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

    void lonePairHalves_data()
    {
        const Table<QString, QString, QByteArray> row("text", "clean", "bytes");
        row("high half", u"a\xD83D", u"a\uFFFD", "a\xEF\xBF\xBD"_ba);
        row("low half that is no byte", u"\xDE00z", u"\uFFFDz", "\xEF\xBF\xBDz"_ba);
        row("below the bytes", u"\xDC7F", u"\uFFFD", "\xEF\xBF\xBD"_ba);
        row("two high halves", u"\xD83D\xD83D", u"\uFFFD\uFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD"_ba);
        row("raw byte stays", u"\xDCE4", u"\xDCE4", "\xE4"_ba);
        row("pair stays", u"\U0001F600", u"\U0001F600", "\xF0\x9F\x98\x80"_ba);
    }

    void lonePairHalves()
    {
        QFETCH(QString, text);
        QTEST(ByteNames::withoutLoneSurrogates(text), "clean");
        QTEST(ByteNames::toBytes(text), "bytes");
    }

    void urlPaths_data()
    {
        const Table<QString, QString> row("path", "encoded");
        row("plain", u"/home/me/a-b_c.~1", u"/home/me/a-b_c.~1");
        row("blank and percent", u"/100% sure", u"/100%25%20sure");
        row("marks of a URL", u"/a?b#c[d];e", u"/a%3Fb%23c%5Bd%5D%3Be");
        row("umlaut", u"/\u00E4", u"/%C3%A4");
        row("raw byte", u"/\xDCE4", u"/%E4");
        row("line break", u"/a\nb", u"/a%0Ab");
    }

    void urlPaths()
    {
        QFETCH(QString, path);
        QFETCH(QString, encoded);
        QCOMPARE(ByteNames::toUrlPath(path), encoded);
        QCOMPARE(ByteNames::fromUrlPath(encoded), path);
        QCOMPARE(ByteNames::fromUrlPath(encoded.toLower()), path.toLower());
    }

    void invalidUrlPaths_data()
    {
        const Table<QString> row("encoded");
        for (const char *const text : {"/a%", "/a%4", "/a%G1", "/a%1G", "/a%00b", "/a%-1"})
            row(text, QString::fromLatin1(text));
        row("not ASCII", u"/\u00E4");
        row("wide digits", u"/%\uFF14\uFF11");
    }

    void invalidUrlPaths()
    {
        QFETCH(QString, encoded);
        QVERIFY(ByteNames::fromUrlPath(encoded).isNull());
    }

    void display_data()
    {
        const Table<QString, QString> row("name", "shown");
        row("plain", u"a \u00E4 \U0001F600", u"a \u00E4 \U0001F600");
        row("line break and escape", u"a\n\x1B[0m", u"a\\x0A\\x1B[0m");
        row("delete, next line", u"\x7F\u0085", u"\\x7F\\xC2\\x85");
        row("line separator", u"\u2028", u"\\xE2\\x80\\xA8");
        row("right to left override", u"a\u202Egpj", u"a\\xE2\\x80\\xAEgpj");
        row("raw byte", u"\xDCE4.txt", u"\\xE4.txt");
        row("lone half", u"\xD83D", u"\uFFFD");
    }

    void display()
    {
        QFETCH(QString, name);
        QTEST(ByteNames::forDisplay(name), "shown");
    }
};

QTEST_GUILESS_MAIN(TestByteNames)
#include "tst_bytenames.moc"
