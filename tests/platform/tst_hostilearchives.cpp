// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ArchiveSample.h"
#include "platform/ArchiveWalk.h"
#include "platform/PlistBuilder.h"
#include "support/Table.h"

#include <QtTest>

#include <functional>

namespace {

const QByteArray kHuge("\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 8);

QByteArray sampleFile()
{
    return ArchiveSample::fileOf({ArchiveSample::filled()});
}

/// The sample with bytes of its 26-byte trailer replaced.
QByteArray withTrailer(qsizetype at, const QByteArray &bytes)
{
    QByteArray file = sampleFile();
    return file.replace(file.size() - 26 + at, bytes.size(), bytes);
}

QByteArray archiveOf(const std::function<int(PlistBuilder &)> &root)
{
    PlistBuilder builder;
    return builder.archive(root(builder));
}

/// An archive of one list that holds one object.
QByteArray archiveOfObject(const std::function<PlistBuilder::Fields(PlistBuilder &)> &fields)
{
    return archiveOf([&fields](PlistBuilder &builder) {
        return builder.list({builder.object("TSample", fields(builder))});
    });
}

/// Lists in lists, each holding the next one ten times.
int laughs(PlistBuilder &builder, int levels)
{
    int inner = builder.member(builder.text("lol"));
    for (int i = 0; i < levels; ++i)
        inner = builder.list(QList<int>(10, inner));
    return inner;
}

} // namespace

class TestHostileArchives : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isRefused_data()
    {
        const Table<QByteArray> row("file");
        row("no bytes", QByteArray());
        row("only the magic", QByteArray("bplist00"));
        row("other magic", sampleFile().replace(0, 8, "bplist15"));
        row("XML", QByteArray("<?xml version=\"1.0\"?><plist/>").repeated(10));
        row("offsets of no bytes", withTrailer(0, QByteArray(1, '\0')));
        row("offsets of nine bytes", withTrailer(0, "\x09"));
        row("references of no bytes", withTrailer(1, QByteArray(1, '\0')));
        row("references of nine bytes", withTrailer(1, "\x09"));
        row("countless objects", withTrailer(2, kHuge));
        row("no objects", withTrailer(2, QByteArray(8, '\0')));
        row("top object that is none", withTrailer(10, kHuge));
        row("offset table beyond the end", withTrailer(18, kHuge));
        row("offset table in the magic", withTrailer(18, QByteArray(8, '\0')));

        const auto withObject = [](const QByteArray &bytes) {
            return archiveOfObject([&bytes](PlistBuilder &builder) {
                return PlistBuilder::Fields{{"text", builder.add(bytes)}};
            });
        };
        for (const int marker : {0x40, 0x50, 0x60, 0xA0, 0xD0}) {
            const QByteArray kind = QByteArray::number(marker, 16);
            const QByteArray start(1, static_cast<char>(marker | 15));
            row(("countless elements " + kind).constData(), withObject(start + '\x13' + kHuge));
            row(("count without number " + kind).constData(), withObject(start + '\x50'));
            row(("count of 16 bytes " + kind).constData(),
                withObject(start + '\x14' + QByteArray(15, '\0') + '\x01'));
        }
        row("unknown kind", withObject("\x70"));
        row("integer of 32 bytes", withObject('\x15' + QByteArray(32, '\0')));
        row("integer beyond 64 bits", withObject('\x14' + QByteArray(16, '\x01')));
        row("half a real", withObject('\x21' + QByteArray(2, '\0')));

        row("no archive", PlistBuilder().archive(0).replace("NSKeyedA", "NSUnkeyA"));
        row("no object table", sampleFile().replace("$objects", "$objectz"));
        row("no top", sampleFile().replace("$top", "$pot"));
        row("no root", sampleFile().replace("root", "boot"));
        row("root that is no object",
            archiveOf([](PlistBuilder &builder) { return builder.uid(999); }));
        row("root that is a reference",
            archiveOf([](PlistBuilder &builder) { return builder.member(builder.uid(1)); }));
        row("top that is a list", [] {
            PlistBuilder builder;
            return builder.file(builder.array({}));
        }());
    }

    void isRefused()
    {
        QFETCH(QByteArray, file);
        const TResult<KeyedUnarchiver> archive = KeyedUnarchiver::fromData(file);
        QVERIFY(!archive);
        QVERIFY(!archive.message().isEmpty());
    }

    void endsSoon_data()
    {
        const Table<QByteArray> row("file");
        row("list in itself", archiveOf([](PlistBuilder &builder) {
                return builder.list(QList<int>(50, builder.uid(2)));
            }));
        row("object in itself, by every key", archiveOfObject([](PlistBuilder &builder) {
                const int self = builder.uid(2);
                return PlistBuilder::Fields{{"text", self},
                                            {"variant", self},
                                            {"color", self},
                                            {"parts", self},
                                            {"$class", builder.uid(1)}};
            }));
        row("class of itself", archiveOf([](PlistBuilder &builder) {
                const int self = builder.nextUid();
                builder.member(builder.dictionary({{"$class", self}, {"$classname", self}}));
                return builder.list({self, self});
            }));
        row("dictionary in itself", archiveOfObject([](PlistBuilder &builder) {
                const int key = builder.member(builder.text("variant"));
                const int type = builder.classNamed("NSDictionary");
                const int self = builder.nextUid();
                builder.member(
                    builder.dictionary({{"$class", type},
                                        {"NS.keys", builder.array(QList<int>(50, key))},
                                        {"NS.objects", builder.array(QList<int>(50, self))}}));
                return PlistBuilder::Fields{{"variant", self}, {"dictionary", self}};
            }));
        row("URL that is its own base", archiveOfObject([](PlistBuilder &builder) {
                const int type = builder.classNamed("NSURL");
                const int text = builder.member(builder.text(QByteArray(5000, 'x')));
                const int self = builder.nextUid();
                builder.member(builder.dictionary(
                    {{"$class", type}, {"NS.base", self}, {"NS.relative", text}}));
                return PlistBuilder::Fields{{"url", self}};
            }));
        row("lists of lists of lists", archiveOfObject([](PlistBuilder &builder) {
                return PlistBuilder::Fields{{"variant", laughs(builder, 60)},
                                            {"parts", laughs(builder, 25)}};
            }));
        row("plain lists of lists of lists", archiveOfObject([](PlistBuilder &builder) {
                int inner = builder.text("lol");
                for (int i = 0; i < 40; ++i)
                    inner = builder.array(QList<int>(10, inner));
                return PlistBuilder::Fields{{"variant", inner}};
            }));
        row("one list in every place", archiveOf([](PlistBuilder &builder) {
                const int part = builder.object("TPart", {});
                const int parts = builder.list(QList<int>(60'000, part));
                return builder.list(
                    QList<int>(60'000, builder.object("TSample", {{"parts", parts}})));
            }));
        row("one long row in every place", archiveOfObject([](PlistBuilder &builder) {
                const int cell = builder.member(builder.text("cell"));
                const int line = builder.list(QList<int>(60'000, cell));
                return PlistBuilder::Fields{{"table", builder.list(QList<int>(60'000, line))}};
            }));
        row("one long text in every place", archiveOfObject([](PlistBuilder &builder) {
                const int text = builder.member(builder.text(QByteArray(1'000'000, 't')));
                const int line = builder.list(QList<int>(60'000, text));
                return PlistBuilder::Fields{{"table", builder.list(QList<int>(10, line))}};
            }));
        row("one dictionary of many keys", archiveOfObject([](PlistBuilder &builder) {
                const int key = builder.member(builder.text("a key that nobody asks for"));
                const int keys = builder.array(QList<int>(60'000, key));
                const int dictionary =
                    builder.object("NSDictionary", {{"NS.keys", keys}, {"NS.objects", keys}});
                PlistBuilder::Fields fields;
                for (const char *name : {"flag", "text", "variant", "color", "dictionary", "parts"})
                    fields.append({name, dictionary});
                return fields;
            }));
        row("one object of many keys", archiveOf([](PlistBuilder &builder) {
                const int type = builder.classNamed("TSample");
                const int key = builder.text("a key that nobody asks for");
                QByteArray refs;
                for (int i = 0; i < 60'000; ++i)
                    refs += PlistBuilder::bigEndian(key, 2);
                const int name = builder.text("$class");
                const int object = builder.member(builder.add(
                    PlistBuilder::counted(0xD0, 60'001) + PlistBuilder::bigEndian(name, 2) + refs +
                    PlistBuilder::bigEndian(type, 2) + refs));
                return builder.list(QList<int>(60'000, object));
            }));
        row("dates beyond time", archiveOfObject([](PlistBuilder &builder) {
                const auto real = [&builder](const QByteArray &bits) {
                    return builder.object(
                        "NSDate", {{"NS.time", builder.add('\x23' + QByteArray::fromHex(bits))}});
                };
                return PlistBuilder::Fields{{"date", real("7FF8000000000000")},
                                            {"text", real("7FEFFFFFFFFFFFFF")},
                                            {"url", real("FFF0000000000000")}};
            }));
    }

    void endsSoon()
    {
        QFETCH(QByteArray, file);
        const ArchiveWalk walk(file);
        QVERIFY(walk.opened);
        QVERIFY(walk.deepest < 32);
        // The least amounts that every pass may do, and a small multiple of the file's size.
        const qsizetype size = file.size();
        QVERIFY2(walk.objects <= (3 * size + (2 << 20)) / 64,
                 QByteArray::number(walk.objects).constData());
        QVERIFY2(walk.units <= 30 * size + (40 << 20), QByteArray::number(walk.units).constData());
    }

    void everyTruncationIsRefused()
    {
        const QByteArray file = sampleFile();
        for (qsizetype size = 0; size < file.size(); ++size)
            QVERIFY2(!KeyedUnarchiver::fromData(file.first(size)),
                     QByteArray::number(size).constData());
    }

    void flippedBitsAreHarmless()
    {
        const QByteArray file = sampleFile();
        int opened = 0;
        int walks = 0;
        // Every third bit visits each byte, and over the bytes each bit's place.
        for (qsizetype bit = 0; bit < file.size() * 8; bit += 3) {
            QByteArray flipped = file;
            flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << (bit % 8)));
            const ArchiveWalk walk(flipped);
            opened += walk.opened ? 1 : 0;
            ++walks;
            QVERIFY(walk.objects < 1000 && walk.units < 100'000);
        }
        // Most bits are letters and numbers, so most files still open: the walks were worth
        // something.
        QVERIFY(opened > walks / 2);
    }
};

QTEST_GUILESS_MAIN(TestHostileArchives)
#include "tst_hostilearchives.moc"
