// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "platform/TreeCoder.h"
#include "rollback/TRenameTRX.h"
#include "support/Table.h"

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
    void readsBackWhatWasWritten()
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

    void keepsItsKeys()
    {
        TRenameTRX transaction = TRenameTRX::TRXWithSource(TFileURL::fileURLWithPath(u"/f/a"_s));
        transaction.renamedURL = TFileURL::fileURLWithPath(u"/f/b"_s);
        transaction.insured = true;
        transaction.errorLog.addErrorOfType(2, u"bad"_s);
        withDecoder([&](TEncoder &coder) { transaction.encodeWithCoder(coder); },
                    [](const TDecoder &coder) {
                        QCOMPARE(coder.decodeString("originalPath"_L1), u"/f/a"_s);
                        QCOMPARE(coder.decodeUrl("originalURL"_L1), u"file:///f/a"_s);
                        QCOMPARE(coder.decodeUrl("renamedURL"_L1), u"file:///f/b"_s);
                        int entries = 0;
                        coder.decodeArray("errorLog"_L1, [&entries](const TDecoder &entry) {
                            QCOMPARE(entry.decodeString("errDesc"_L1), u"bad"_s);
                            QCOMPARE(entry.decodeInteger("errClass"_L1), 2);
                            ++entries;
                        });
                        QCOMPARE(entries, 1);
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

    void pathWinsOverUrl_data()
    {
        const Table<QString, QString> row("path", "result");
        row("other path", u"/x/from path", u"/x/from path");
        row("tilde", u"~/x/a", u"/home/me/x/a");
        row("tilde of a user", u"~root/a", u"/root/a");
        row("tilde alone", u"~", u"/home/me");
        row("no such user", u"/~/a", u"/~/a");
        row("no path: the URL stands", QString(), u"/x/from url");
    }

    void pathWinsOverUrl()
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

    void rawNamesLiveInTheUrl()
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

    void trustsOnlyWhatRunsProduce_data()
    {
        // path: "originalPath", or "originalURL" when it is one
        // url: "renamedURL"
        const Table<QString, QString, bool> row("path", "url", "trusted");
        row("same folder", u"/f/a", u"file:///f/b", true);
        row("dots within names", u"/f/.a", u"file:///f/..b", true);
        row("dots within folders", u"/.f/...g/a", u"file:///.f/...g/b", true);
        row("root folder", u"/a", u"file:///b", true);
        row("another folder", u"/f/a", u"file:///g/b", false);
        row("below", u"/f/a", u"file:///f/g/b", false);
        row("relative", u"f/a", u"file:///f/b", false);
        row("parent parts", u"/f/../etc/a", u"file:///f/../etc/b", false);
        row("own parts", u"/f/./a", u"file:///f/./b", false);
        row("name is parent", u"/f/..", u"file:///f/b", false);
        row("encoded parent", u"/f/a", u"file:///f/%2E%2E", false);
        row("encoded slash", u"/f/a", u"file:///f/..%2F..%2Fetc%2Fpasswd", false);
        row("encoded NUL", u"/f/a", u"file:///f/b%00c", false);
        row("NUL in path", QString(u"/f/a\0b"_s), u"file:///f/b", false);
        row("other scheme", u"/f/a", u"http:///f/b", false);
        row("no target", u"/f/a", QString(), false);
        row("root itself", u"/", u"file:///", false);
        row("URL alone", u"file:///f/a", u"file:///f/b", true);
        row("URL alone, parent parts", u"file:///f/../etc/a", u"file:///f/../etc/b", false);
    }

    void trustsOnlyWhatRunsProduce()
    {
        QFETCH(QString, path);
        QFETCH(QString, url);
        QFETCH(bool, trusted);
        withDecoder(
            [&](TEncoder &coder) {
                if (path.startsWith("file:"_L1))
                    coder.encodeUrl("originalURL"_L1, {}, path);
                else
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
};

QTEST_GUILESS_MAIN(TestRenameTRX)

#include "tst_renametrx.moc"
