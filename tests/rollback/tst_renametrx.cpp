// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "platform/TreeCoder.h"
#include "rollback/TRenameTRX.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

TRenameTRX roundTrip(const TRenameTRX &transaction)
{
    TreeArchive archive;
    archive.appendObject(TRenameTRX::archiveClass(),
                         [&](TEncoder &coder) { transaction.encodeWithCoder(coder); });
    TRenameTRX back;
    archive.forEachObject([&](const TDecoder &coder) { back.initWithCoder(coder); });
    return back;
}

void withDecoder(const TEncoder::Encode &encode, const TDecoder::Decode &decode)
{
    TreeArchive archive;
    archive.appendObject(TRenameTRX::archiveClass(), encode);
    archive.forEachObject(decode);
}

} // namespace

class TestRenameTRX : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsBackWhatWasWritten();
    void keepsItsKeys();
    void pathWinsOverUrl_data();
    void pathWinsOverUrl();
    void rawNamesLiveInTheUrl();
    void trustsOnlyWhatRunsProduce_data();
    void trustsOnlyWhatRunsProduce();
};

void TestRenameTRX::readsBackWhatWasWritten()
{
    TRenameTRX transaction =
        TRenameTRX::TRXWithSource(TFileURL::fileURLWithPath(u"/photos/a b#ä%20.jpg"_s));
    transaction.renamedURL = TFileURL::fileURLWithPath(u"/photos/new?.jpg"_s);
    transaction.errorLog.addErrorOfType(1, u"not unique"_s);
    transaction.renameComplete = true;
    transaction.insured = true;
    transaction.renamedExistsWithStatus = 100;

    const TRenameTRX back = roundTrip(transaction);
    QCOMPARE(back.originalPath, u"/photos/a b#ä%20.jpg"_s);
    QVERIFY(back.originalURL == transaction.originalURL);
    QVERIFY(back.renamedURL == transaction.renamedURL);
    QVERIFY(back.errorLog == transaction.errorLog);
    QVERIFY(back.renameComplete);
    QVERIFY(back.insured);
    QCOMPARE(back.renamedExistsWithStatus, 0);
}

void TestRenameTRX::keepsItsKeys()
{
    TRenameTRX transaction = TRenameTRX::TRXWithSource(TFileURL::fileURLWithPath(u"/f/a"_s));
    transaction.renamedURL = TFileURL::fileURLWithPath(u"/f/b"_s);
    transaction.insured = true;
    withDecoder([&](TEncoder &coder) { transaction.encodeWithCoder(coder); },
                [](const TDecoder &coder) {
                    QCOMPARE(coder.decodeString("originalPath"_L1), u"/f/a"_s);
                    QCOMPARE(coder.decodeUrl("originalURL"_L1), u"file:///f/a"_s);
                    QCOMPARE(coder.decodeUrl("renamedURL"_L1), u"file:///f/b"_s);
                    QVERIFY(coder.containsValueForKey("errorLog"_L1));
                    QVERIFY(coder.containsValueForKey("renameComplete"_L1));
                    QVERIFY(coder.decodeBool("color"_L1));
                    QVERIFY(!coder.containsValueForKey("insured"_L1));
                });
    withDecoder([](TEncoder &coder) { coder.encodeBool("insured"_L1, true); },
                [](const TDecoder &coder) {
                    TRenameTRX bare;
                    bare.initWithCoder(coder);
                    QVERIFY(!bare.insured);
                    QVERIFY(bare.errorLog.isEmpty());
                    QVERIFY(!bare.originalURL.isValid());
                });
}

void TestRenameTRX::pathWinsOverUrl_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("result");
    QTest::newRow("other path") << u"/x/from path"_s << u"/x/from path"_s;
    QTest::newRow("tilde") << u"~/x/a"_s << u"/home/me/x/a"_s;
    QTest::newRow("tilde of a user") << u"~root/a"_s << u"/root/a"_s;
    QTest::newRow("tilde alone") << u"~"_s << u"/home/me"_s;
    QTest::newRow("no such user") << u"/~/a"_s << u"/~/a"_s;
    QTest::newRow("no path: the URL stands") << QString() << u"/x/from url"_s;
}

void TestRenameTRX::pathWinsOverUrl()
{
    QFETCH(QString, path);
    QFETCH(QString, result);
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", "/home/me");
    withDecoder(
        [&](TEncoder &coder) {
            coder.encodeString("originalPath"_L1, path);
            coder.encodeUrl("originalURL"_L1, u"file:///x/"_s, u"from%20url"_s);
        },
        [&](const TDecoder &coder) {
            TRenameTRX transaction;
            transaction.initWithCoder(coder);
            QCOMPARE(transaction.originalURL.path(), result);
            QCOMPARE(transaction.originalPath, path.isNull() ? QString() : result);
        });
    qputenv("HOME", home);
}

void TestRenameTRX::rawNamesLiveInTheUrl()
{
    const QString path = ByteNames::fromBytes("/f/caf\xE9.txt");
    TRenameTRX transaction = TRenameTRX::TRXWithSource(TFileURL::fileURLWithPath(path));
    withDecoder([&](TEncoder &coder) { transaction.encodeWithCoder(coder); },
                [](const TDecoder &coder) {
                    QVERIFY(!coder.containsValueForKey("originalPath"_L1));
                    QCOMPARE(coder.decodeUrl("originalURL"_L1), u"file:///f/caf%E9.txt"_s);
                });
    QCOMPARE(roundTrip(transaction).originalURL.fileSystemPath(), QByteArray("/f/caf\xE9.txt"));
}

void TestRenameTRX::trustsOnlyWhatRunsProduce_data()
{
    QTest::addColumn<QString>("path"); // "originalPath"
    QTest::addColumn<QString>("url");  // "renamedURL"
    QTest::addColumn<bool>("trusted");
    QTest::newRow("same folder") << u"/f/a"_s << u"file:///f/b"_s << true;
    QTest::newRow("dots within names") << u"/f/.a"_s << u"file:///f/..b"_s << true;
    QTest::newRow("dots within folders") << u"/.f/...g/a"_s << u"file:///.f/...g/b"_s << true;
    QTest::newRow("root folder") << u"/a"_s << u"file:///b"_s << true;
    QTest::newRow("another folder") << u"/f/a"_s << u"file:///g/b"_s << false;
    QTest::newRow("below") << u"/f/a"_s << u"file:///f/g/b"_s << false;
    QTest::newRow("relative") << u"f/a"_s << u"file:///f/b"_s << false;
    QTest::newRow("parent parts") << u"/f/../etc/a"_s << u"file:///f/../etc/b"_s << false;
    QTest::newRow("own parts") << u"/f/./a"_s << u"file:///f/./b"_s << false;
    QTest::newRow("name is parent") << u"/f/.."_s << u"file:///f/b"_s << false;
    QTest::newRow("encoded parent") << u"/f/a"_s << u"file:///f/%2E%2E"_s << false;
    QTest::newRow("encoded slash") << u"/f/a"_s << u"file:///f/..%2F..%2Fetc%2Fpasswd"_s << false;
    QTest::newRow("encoded NUL") << u"/f/a"_s << u"file:///f/b%00c"_s << false;
    QTest::newRow("NUL in path") << QString(u"/f/a\0b"_s) << u"file:///f/b"_s << false;
    QTest::newRow("other scheme") << u"/f/a"_s << u"http:///f/b"_s << false;
    QTest::newRow("no target") << u"/f/a"_s << QString() << false;
    QTest::newRow("root itself") << u"/"_s << u"file:///"_s << false;
}

void TestRenameTRX::trustsOnlyWhatRunsProduce()
{
    QFETCH(QString, path);
    QFETCH(QString, url);
    QFETCH(bool, trusted);
    withDecoder(
        [&](TEncoder &coder) {
            coder.encodeString("originalPath"_L1, path);
            coder.encodeUrl("renamedURL"_L1, {}, url);
            coder.encodeBool("renameComplete"_L1, true);
        },
        [&](const TDecoder &coder) {
            TRenameTRX transaction;
            transaction.initWithCoder(coder);
            QCOMPARE(transaction.isTrustworthy(), trusted);
        });
}

QTEST_GUILESS_MAIN(TestRenameTRX)

#include "tst_renametrx.moc"
