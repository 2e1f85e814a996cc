// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/JsonText.h"
#include "cli/JsonWriter.h"
#include "commonprocs/ByteNames.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

class TestJsonWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void strings_data();
    void strings();
    void rawBytesSurviveAReader();
    void jsonValuesKeepTheirNumbers();
};

void TestJsonWriter::strings_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("plain") << u"a.jpg"_s << QByteArray(R"("a.jpg")");
    QTest::newRow("quotes and backslashes") << u"\"\\"_s << QByteArray(R"("\"\\")");
    QTest::newRow("control characters")
        << u"a\n\t\u0001\u007f\u0085"_s << QByteArray(R"("a\n\t\u0001\u007f\u0085")");
    QTest::newRow("line separators") << u"\u2028\u2029"_s << QByteArray(R"("\u2028\u2029")");
    QTest::newRow("two and three bytes") << u"ü€"_s << QByteArray("\"\xc3\xbc\xe2\x82\xac\"");
    QTest::newRow("surrogate pair") << u"😀"_s << QByteArray("\"\xf0\x9f\x98\x80\"");
    QTest::newRow("raw byte") << ByteNames::fromBytes("a\xff"
                                                      "b")
                              << QByteArray(R"("a\udcffb")");
    QTest::newRow("raw bytes around a pair") << ByteNames::fromBytes("\x80\xf0\x9f\x98\x80\xfe")
                                             << QByteArray("\"\\udc80\xf0\x9f\x98\x80\\udcfe\"");
    QTest::newRow("lone high surrogate") << QString(QChar(0xD83D)) << QByteArray(R"("\ud83d")");
}

void TestJsonWriter::strings()
{
    QFETCH(QString, text);
    QByteArray json;
    appendJsonString(json, text);
    QTEST(json, "json");
    QCOMPARE(QJsonDocument::fromJson("[" + json + "]").array()[0].toString(), text);
}

void TestJsonWriter::rawBytesSurviveAReader()
{
    QByteArray name;
    for (int byte = 1; byte < 256; ++byte)
        name.append(static_cast<char>(byte));
    QByteArray json;
    appendJsonString(json, ByteNames::fromBytes(name));
    const QString read = QJsonDocument::fromJson("[" + json + "]").array()[0].toString();
    QCOMPARE(ByteNames::toBytes(read), name);
}

void TestJsonWriter::jsonValuesKeepTheirNumbers()
{
    const QByteArray text =
        R"({"a":[9007199254740993,0.1,-2.5,true,null],"b":{"c":"\udcff"},"d":1e+300})";
    JsonWriter json;
    json.json(QJsonDocument::fromJson(text).object());
    QCOMPARE(json.bytes(), text);
}

QTEST_GUILESS_MAIN(TestJsonWriter)
#include "tst_jsonwriter.moc"
