// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "platform/KeyedArchiver.h"
#include "rollback/JournalFolder.h"
#include "rollback/RollbackLog.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QBuffer>

#include <array>
#include <sys/stat.h>
#include <sys/time.h>

using namespace Qt::StringLiterals;

namespace {

const TDate kJuly = TDate::fromSeconds(1'751'551'509); // 2025-07-03 14:05:09 UTC
const QString kJulyName = u"Rename Batch Run - 2025-07-03, 14.05.09 (rollback data).renameLog"_s;

TRenameTRX transaction(const QString &from, const QString &to)
{
    TRenameTRX made = TRenameTRX::TRXWithSource(TFileURL::fileURLWithPath(from));
    made.renamedURL = TFileURL::fileURLWithPath(to);
    made.renameComplete = made.insured = true;
    return made;
}

/// Path of a log of that many records.
QString writeLog(const QString &folder, qsizetype records, TDate date = kJuly, bool keep = false)
{
    auto writer = RollbackLogWriter::create(folder);
    if (!writer)
        return {};
    for (qsizetype i = 0; i < records; ++i)
        writer.value()->append(transaction(u"/f/old %1"_s.arg(i), u"/f/new %1"_s.arg(i)));
    return writer.value()->finish(date, keep).value();
}

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    ::stat(ByteNames::toBytes(path).constData(), &status);
    return status.st_mode & 0777U;
}

void setAge(const QString &path, time_t seconds)
{
    const std::array<timeval, 2> times{timeval{seconds, 0}, timeval{seconds, 0}};
    ::utimes(ByteNames::toBytes(path).constData(), times.data());
}

} // namespace

class TestRollbackLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesCarryLocalTime_data()
    {
        const Table<qint64, QString> row("seconds", "name");
        row("afternoon", 1'751'551'509, kJulyName);
        row("single digits", 1'767'323'045,
            u"Rename Batch Run - 2026-01-02, 03.04.05 (rollback data).renameLog");
    }

    void namesCarryLocalTime()
    {
        QFETCH(qint64, seconds);
        QFETCH(QString, name);
        QCOMPARE(rollbackLogName(TDate::fromSeconds(seconds)), name);
    }

    void recordsComeBackInOrder()
    {
        const TemporaryTree tree;
        auto writer = RollbackLogWriter::create(tree.path(u"Logs"_s));
        QVERIFY(writer);
        const QString raw = ByteNames::fromBytes("/f/raw \xFF\xFE.txt");
        const QString longName = u"/f/"_s + QString(85, QChar(0x4E00)); // 255 bytes
        writer.value()->append(transaction(raw, u"/f/1"_s));
        writer.value()->append(transaction(u"/f/2"_s, longName));
        TRenameTRX failed = transaction(u"/g/3"_s, u"/g/4"_s);
        failed.renameComplete = false;
        failed.errorLog.addErrorOfType(2, u"kein Platz"_s);
        writer.value()->append(failed);
        const auto path = writer.value()->finish(kJuly);
        QCOMPARE(path.message(), QString());
        QCOMPARE(path.value(), tree.path(u"Logs/"_s + kJulyName));

        const auto read = readRollbackLog(path.value());
        QCOMPARE(read.message(), QString());
        QCOMPARE(read.value().size(), std::size_t{3});
        QCOMPARE(read.value()[0].originalURL.path(), raw);
        QCOMPARE(read.value()[1].renamedURL.path(), longName);
        QVERIFY(read.value()[1].renameComplete);
        QVERIFY(!read.value()[2].renameComplete);
        QVERIFY(read.value()[2].errorLog == failed.errorLog);
    }

    void recordsKeepTheirOrderAndShareFolders()
    {
        const TemporaryTree tree;
        const auto read = readRollbackLog(writeLog(tree.path(), 1001));
        QCOMPARE(read.value().size(), std::size_t{1001});
        QSet<const TFolder *> folders;
        for (std::size_t i = 0; i < read.value().size(); ++i) {
            const TRenameTRX &record = read.value()[i];
            QCOMPARE(record.originalURL.path(), u"/f/old %1"_s.arg(i));
            QVERIFY(record.renamedURL.folder() == record.originalURL.folder());
            folders += record.originalURL.folder().get();
        }
        QVERIFY(folders.size() <= 2); // one for each of two threads
    }

    void emptyRunsLeaveALog()
    {
        const TemporaryTree tree;
        const auto read = readRollbackLog(writeLog(tree.path(), 0));
        QVERIFY(read);
        QVERIFY(read.value().empty());
    }

    void sameSecond()
    {
        const TemporaryTree tree;
        const QString first = writeLog(tree.path(), 1);
        const QString second = writeLog(tree.path(), 2);
        QCOMPARE(second, first);
        QCOMPARE(readRollbackLog(first).value().size(), std::size_t{2});
        const QString beside = writeLog(tree.path(), 3, kJuly, true);
        QVERIFY(beside.endsWith(u"14.05.10 (rollback data).renameLog"_s));
        QVERIFY(writeLog(tree.path(), 4, kJuly, true)
                    .endsWith(u"14.05.11 (rollback data).renameLog"_s));
        QCOMPARE(readRollbackLog(first).value().size(), std::size_t{2});
    }

    void sameNameOfAnotherMoment()
    {
        // As an hour later, when clocks have been put back.
        const TemporaryTree tree;
        const QString first = writeLog(tree.path(), 1);
        setAge(first, kJuly.nanos / TDate::kNanosPerSecond - 3600);
        const QString second = writeLog(tree.path(), 2);
        QVERIFY(second.endsWith(u"14.05.10 (rollback data).renameLog"_s));
        QCOMPARE(readRollbackLog(first).value().size(), std::size_t{1});
        QCOMPARE(readRollbackLog(second).value().size(), std::size_t{2});
    }

    void nobodyElseMayRead()
    {
        const TemporaryTree tree;
        const QString path = writeLog(tree.path(u"data/Tavrin/Logs"_s), 1);
        QCOMPARE(modeOf(tree.path(u"data/Tavrin"_s)), mode_t{0700});
        QCOMPARE(modeOf(tree.path(u"data/Tavrin/Logs"_s)), mode_t{0700});
        QCOMPARE(modeOf(path), mode_t{0600});
    }

    void abandonedLogsLeaveNothing()
    {
        const TemporaryTree tree;
        {
            auto writer = RollbackLogWriter::create(tree.path());
            writer.value()->append(transaction(u"/f/a"_s, u"/f/b"_s));
        }
        QCOMPARE(tree.list(), QStringList{u".running/"_s});
    }

    void foldersThatCannotBe_data()
    {
        const Table<QString> row("folder");
        row("below a file", u"file/Logs");
        row("is a file", u"file");
        row("name too long", QString(300, u'x'));
    }

    void foldersThatCannotBe()
    {
        QFETCH(QString, folder);
        const TemporaryTree tree;
        tree.file(u"file"_s);
        const auto writer = RollbackLogWriter::create(tree.path(folder));
        QVERIFY(!writer);
        QVERIFY2(writer.message().contains(tree.path(folder)), qPrintable(writer.message()));
        QCOMPARE(tree.list(), QStringList{u"file"_s});
    }

    void damagedLogsAreRefused_data()
    {
        const Table<QByteArray, QString> row("data", "says");
        QByteArray whole;
        {
            const TemporaryTree tree;
            writeLog(tree.path(), 2);
            whole = tree.content(kJulyName);
        }
        constexpr std::array<const char *, 2> kForeignClass{"TTextRule", "NSObject"};
        QBuffer foreign;
        foreign.open(QIODevice::WriteOnly);
        KeyedArchiver archiver(foreign);
        for (int i = 0; i < 900; ++i)
            archiver.appendObject(TRenameTRX::archiveClass(), [](TEncoder &coder) {
                transaction(u"/f/a"_s, u"/f/b"_s).encodeWithCoder(coder);
            });
        archiver.appendObject(kForeignClass,
                              [](TEncoder &coder) { coder.encodeString("theText"_L1, u"x"_s); });
        QVERIFY(archiver.finish());
        row("another record", foreign.data(), u"record 901 is of the class \"TTextRule\"");
        row("empty", QByteArray(), u"is no rollback log");
        row("text", QByteArray(1000, 'x'), u"is no rollback log");
        row("cut off", whole.chopped(40), u"is no rollback log");
        row("beginning missing", whole.mid(9), u"is no rollback log");
        row("other class", QByteArray(whole).replace("TRenameTRX", "TRenameTRY"), u"TRenameTRY");
    }

    void damagedLogsAreRefused()
    {
        QFETCH(QByteArray, data);
        QFETCH(QString, says);
        const TemporaryTree tree;
        const QString path = tree.file(u"a.renameLog"_s, data);
        const auto read = readRollbackLog(path);
        QVERIFY(!read);
        QVERIFY2(read.message().contains(says) && read.message().contains(path),
                 qPrintable(read.message()));
    }

    void listsNewestFirst()
    {
        const TemporaryTree tree;
        QVERIFY(savedRollbackLogs(tree.path(u"missing"_s)).empty());
        const QString old = writeLog(tree.path(), 3);
        const QString young = writeLog(tree.path(), 12, kJuly, true);
        const QString broken = tree.file(u"broken.renameLog"_s, "no log");
        tree.file(u"other.txt"_s);
        tree.file(u".hidden.renameLog"_s);
        tree.folder(u"folder.renameLog"_s);
        setAge(old, 1000);
        setAge(broken, 2000);
        setAge(young, 3000);
        ::mkfifo(ByteNames::toBytes(tree.path(u"pipe.renameLog"_s)).constData(), 0600);

        const std::vector<SavedRollbackLog> logs = savedRollbackLogs(tree.path());
        QStringList shown;
        for (const SavedRollbackLog &log : logs)
            shown += u"%1 %2"_s.arg(log.name).arg(log.files);
        QCOMPARE(shown,
                 (QStringList{u"Rename Batch Run - 2025-07-03, 14.05.10 (rollback data) 12"_s,
                              u"broken -1"_s,
                              u"Rename Batch Run - 2025-07-03, 14.05.09 (rollback data) 3"_s}));
        QCOMPARE(logs.front().path, young);
        QCOMPARE(logs.front().date, TDate::fromSeconds(3000));
    }

    void disksThatKeepSmallLetters()
    {
        const TemporaryTree tree;
        tree.file(u"rename batch.renamelog"_s);
        tree.file(u".running/1.rename batch.finished"_s);
        QCOMPARE(savedRollbackLogs(tree.path()).size(), 1U);
        const auto folder = JournalFolder::openExisting(tree.path());
        QVERIFY(folder.value().openFinished("Rename Batch.renameLog").isOpen());
    }

    void summaries_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<qint64>("most");
        QTest::addColumn<QString>("summary"); // files, folder of the first, whether there are more
        QTest::newRow("one folder")
            << QStringList{u"/a/b/1"_s, u"/a/b/2"_s} << qint64{100'000} << u"2 /a/b"_s;
        QTest::newRow("several folders")
            << QStringList{u"/a/1"_s, u"/b/2"_s, u"/c/3"_s} << qint64{100'000} << u"3 /a more"_s;
        QTest::newRow("no file") << QStringList() << qint64{100'000} << u"0 -"_s;
        QTest::newRow("too large") << QStringList{u"/a/b/1"_s} << qint64{100} << u"-1 -"_s;
    }
    void summaries()
    {
        QFETCH(const QStringList, files);
        const TemporaryTree tree;
        auto writer = RollbackLogWriter::create(tree.path()).value();
        for (const QString &file : files)
            writer->append(transaction(file, file + u'x'));
        QFETCH(const qint64, most);
        const RollbackLogSummary found = summaryOfRollbackLog(writer->finish(kJuly).value(), most);
        QString told = QString::number(found.files) + u' ';
        told += found.folder ? found.folder->path() : u"-"_s;
        QTEST(told + (found.hasMoreFolders ? u" more"_s : QString()), "summary");
        QCOMPARE(summaryOfRollbackLog(tree.path(), most).files, -1);
        QCOMPARE(summaryOfRollbackLog(tree.path(u"nonesuch"_s), most).files, -1);
    }
};

QTEST_GUILESS_MAIN(TestRollbackLog)

#include "tst_rollbacklog.moc"
