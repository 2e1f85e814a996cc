// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/Checksum.h"
#include "rollback/FrameWriter.h"
#include "rollback/JournalContents.h"

#include <QBuffer>
#include <QTemporaryFile>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using JournalFormat::Record;

namespace {

/// A journal made of whatever records the test writes.
QByteArray journal(const std::function<void(FrameWriter &)> &write)
{
    QTemporaryFile file;
    file.open();
    FrameWriter writer(file.handle());
    writer.writePreamble();
    write(writer);
    writer.flush();
    file.seek(0);
    return file.readAll();
}

void putHeader(FrameWriter &writer)
{
    writer.begin(Record::Header, 64);
    writer.putBytes("boot");
    writer.putFixed(77);
}

void putFolder(FrameWriter &writer, QByteArrayView path)
{
    writer.begin(Record::Folder, path.size() + 16);
    writer.putBytes(path);
}

void putFile(FrameWriter &writer, quint64 folder, QByteArrayView name, qint64 inodeStep = 1)
{
    writer.begin(Record::File, name.size() + 64);
    writer.putByte(JournalFormat::kHasBirth);
    writer.putVarint(folder);
    writer.putBytes(name);
    writer.putSigned(inodeStep);
    writer.putVarint(1);
    writer.putVarint(1000);
    writer.putSigned(5);
    writer.putSigned(-3);
}

void putPlanEnd(FrameWriter &writer, quint64 folders, quint64 files)
{
    writer.begin(Record::PlanEnd, 64);
    writer.putVarint(folders);
    writer.putVarint(files);
}

void putMove(FrameWriter &writer, qint64 indexStep, QByteArrayView name)
{
    writer.begin(Record::Move, name.size() + 64);
    writer.putSigned(indexStep);
    writer.putBytes(name);
}

void putPlan(FrameWriter &writer)
{
    putHeader(writer);
    putFolder(writer, "/photos");
    putFile(writer, 0, "a.jpg");
    putFile(writer, 0, "b.jpg");
    putPlanEnd(writer, 1, 2);
}

TResult<JournalContents> read(QByteArray bytes)
{
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    return JournalContents::read(device);
}

} // namespace

class TestJournalContents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checksumIsTheCommonOne()
    {
        QCOMPARE(crc32c("123456789"), 0xE3069283U);
        QCOMPARE(crc32c("6789", crc32c("12345")), 0xE3069283U);
        QCOMPARE(crc32c(QByteArray(32, '\0')), 0x8A9136AAU);
    }

    void readsWhatWasWritten()
    {
        const auto contents = read(journal([](FrameWriter &writer) {
            putPlan(writer);
            putMove(writer, 1, "new b.jpg");
            putMove(writer, -1, "new a.jpg");
        }));
        QVERIFY2(contents, qPrintable(contents.message()));
        const JournalContents &journal = contents.value();
        QCOMPARE(journal.bootId(), QByteArray("boot"));
        QCOMPARE(journal.time().nanos, 77);
        QCOMPARE(journal.folders().front(), QByteArray("/photos"));
        QCOMPARE(journal.files().size(), std::size_t{2});
        const JournalContents::File &second = journal.files()[1];
        QCOMPARE(journal.text(second.name), QByteArrayView("b.jpg"));
        QCOMPARE(journal.text(second.newName), QByteArrayView("new b.jpg"));
        QCOMPARE(second.inode, quint64{2});
        QCOMPARE(second.size, 1000);
        QCOMPARE(second.birth.nanos, second.modification.nanos - 3);
        QVERIFY(second.evidence == JournalContents::Evidence::Move);
        QVERIFY(!journal.isFinished());
    }

    void largePlansTakeManyFrames()
    {
        constexpr int kFiles = 20'000;
        const QByteArray longPath = '/' + QByteArray(100'000, 'p');
        const auto contents = read(journal([&](FrameWriter &writer) {
            putHeader(writer);
            putFolder(writer, "/f");
            for (int i = 0; i < kFiles; ++i)
                putFile(writer, 0, "name " + QByteArray::number(i));
            putFolder(writer, longPath); // longer than a usual frame
            putFile(writer, 1, "last");
            putPlanEnd(writer, 2, kFiles + 1);
        }));
        QVERIFY2(contents, qPrintable(contents.message()));
        QVERIFY(contents.value().nextSequence() > 5);
        QCOMPARE(contents.value().folders().back(), longPath);
        QCOMPARE(contents.value().text(contents.value().files()[12'345].name),
                 QByteArrayView("name 12345"));
        QCOMPARE(contents.value().files().back().inode, quint64{kFiles + 1});
    }

    void tornTailsAreLeftOut()
    {
        qsizetype planSize = 0;
        const QByteArray whole = journal([&](FrameWriter &writer) {
            putPlan(writer);
            writer.flush();
            planSize = writer.written();
            putMove(writer, 0, "one");
        });
        for (qsizetype size = planSize; size < whole.size(); ++size) {
            // Cut off, with the reserved space behind it or without.
            for (const QByteArray &torn :
                 {whole.first(size), whole.first(size) + QByteArray(99, '\0')}) {
                const auto contents = read(torn);
                QVERIFY2(contents, qPrintable(contents.message()));
                QVERIFY(contents.value().files()[0].evidence == JournalContents::Evidence::None);
                QCOMPARE(contents.value().end(), planSize);
            }
        }
    }

    void hostileRecordsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const auto row = [](const char *name, const std::function<void(FrameWriter &)> &write) {
            QTest::newRow(name) << journal(write);
        };
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("other file") << QByteArray(100, 'x');
        row("no frames", [](FrameWriter &) {});
        row("no header", [](FrameWriter &writer) { putPlanEnd(writer, 0, 0); });
        row("two headers", [](FrameWriter &writer) {
            putHeader(writer);
            putHeader(writer);
            putPlanEnd(writer, 0, 0);
        });
        row("no plan's end", [](FrameWriter &writer) {
            putHeader(writer);
            putFolder(writer, "/f");
            putFile(writer, 0, "a");
        });
        row("fewer files than said", [](FrameWriter &writer) {
            putHeader(writer);
            putPlanEnd(writer, 0, 1ULL << 60U);
        });
        row("moves before the plan's end", [](FrameWriter &writer) {
            putHeader(writer);
            putFolder(writer, "/f");
            putFile(writer, 0, "a");
            putMove(writer, 0, "b");
            putPlanEnd(writer, 1, 1);
        });
        row("files after the plan's end", [](FrameWriter &writer) {
            putPlan(writer);
            putFile(writer, 0, "c");
        });
        const auto withFolder = [&row](const char *name, QByteArrayView path) {
            row(name, [path](FrameWriter &writer) {
                putHeader(writer);
                putFolder(writer, path);
                putPlanEnd(writer, 1, 0);
            });
        };
        withFolder("relative folder", "f");
        withFolder("no folder", "");
        withFolder("folder with NUL", QByteArrayView("/f\0g", 4));
        const auto withFile = [&row](const char *name, quint64 folder, QByteArrayView file) {
            row(name, [folder, file](FrameWriter &writer) {
                putHeader(writer);
                putFolder(writer, "/f");
                putFile(writer, folder, file);
                putPlanEnd(writer, 1, 1);
            });
        };
        withFile("no such folder", 1, "a");
        withFile("folder of a huge number", ~0ULL, "a");
        withFile("name leads up", 0, "../a");
        withFile("name is the parent", 0, "..");
        withFile("name with NUL", 0, QByteArrayView("a\0b", 3));
        const auto withMove = [&row](const char *name, qint64 step, QByteArrayView file) {
            row(name, [step, file](FrameWriter &writer) {
                putPlan(writer);
                putMove(writer, step, file);
            });
        };
        withMove("move of no file", 2, "x");
        withMove("move of a negative file", -1, "x");
        withMove("move of a huge number", std::numeric_limits<qint64>::min(), "x");
        withMove("move up", 0, "../x");
        withMove("move to nothing", 0, "");
        row("unknown record", [](FrameWriter &writer) {
            putPlan(writer);
            writer.begin(static_cast<Record>('?'), 8);
        });
        row("text longer than its frame", [](FrameWriter &writer) {
            putPlan(writer);
            writer.begin(Record::Move, 64);
            writer.putSigned(0);
            writer.putVarint(1ULL << 62U);
        });
        row("number that does not end", [](FrameWriter &writer) {
            putPlan(writer);
            writer.begin(Record::Move, 64);
            for (int i = 0; i < 12; ++i)
                writer.putByte(0xFF);
        });
    }

    void hostileRecordsAreRefused()
    {
        QFETCH(QByteArray, bytes);
        const auto contents = read(bytes);
        QVERIFY(!contents);
        QVERIFY(!contents.message().isEmpty());
    }

    void noBitFlipOfThePlanIsBelieved()
    {
        const QByteArray whole = journal(putPlan);
        for (qsizetype bit = 0; bit < whole.size() * 8; ++bit) {
            QByteArray flipped = whole;
            flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << (bit % 8)));
            QVERIFY2(!read(flipped), qPrintable(QString::number(bit)));
        }
    }

    void noCutOfThePlanIsBelieved()
    {
        const QByteArray whole = journal(putPlan);
        for (qsizetype size = 0; size < whole.size(); ++size)
            QVERIFY2(!read(whole.first(size)), qPrintable(QString::number(size)));
        QVERIFY(read(whole));
    }
};

QTEST_GUILESS_MAIN(TestJournalContents)

#include "tst_journalcontents.moc"
