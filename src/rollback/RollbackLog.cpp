// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/RollbackLog.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/TimeUtils.h"
#include "commonprocs/TwoHalves.h"
#include "commonprocs/URLListProcessing.h"
#include "commonprocs/easyfile.h"
#include "platform/KeyedUnarchiver.h"
#include "rollback/FolderPool.h"
#include "rollback/OpenFile.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <iterator>
#include <optional>
#include <sys/stat.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr char kNameFormat[] = "Rename Batch Run - %d-%02d-%02d, %02d.%02d.%02d (rollback data).";
constexpr QLatin1StringView kCannotRead{"The rollback log \"%1\" cannot be read: %2"};
constexpr QLatin1StringView kNoLog{"\"%1\" is no rollback log: %2"};
constexpr QLatin1StringView kNoFile{"it is not a regular file"};
constexpr QLatin1StringView kTooLarge{"it is larger than any log"};
constexpr QLatin1StringView kNoArray{"it holds no list of transactions"};
constexpr QLatin1StringView kForeignRecord{"record %1 is of the class \"%2\""};
constexpr QLatin1StringView kNoRecord{"only %1 of its %2 records are transactions"};
/// A transaction takes some 250 bytes, so this is beyond any run that fits into memory.
constexpr qint64 kLargestLog = 16LL * 1024 * 1024 * 1024;

QString shown(const QString &path)
{
    return ByteNames::forDisplay(path);
}

/// The whole file; only a regular one, since reading a device or a pipe may never end.
TResult<QByteArray> readWhole(const QString &path, qint64 mostBytes = kLargestLog)
{
    const auto failure = [&path](const QString &why) {
        return TResult<QByteArray>::failure(QString(kCannotRead).arg(shown(path), why));
    };
    OpenFile opened(
        ::open(ByteNames::toBytes(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status;
    if (!opened.isOpen() || ::fstat(opened.descriptor(), &status) != 0)
        return failure(textForErrno(errno));
    if (!S_ISREG(status.st_mode))
        return failure(kNoFile);
    if (status.st_size > mostBytes)
        return failure(kTooLarge);
    QFile file;
    file.open(opened.release(), QIODevice::ReadOnly | QIODevice::Unbuffered,
              QFileDevice::AutoCloseHandle);
    QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return failure(file.errorString());
    return data;
}

/// Number of records of a log that can be read; -1 otherwise.
qsizetype recordsIn(const QString &path)
{
    const TResult<QByteArray> data = readWhole(path);
    if (!data)
        return -1;
    const TResult<KeyedUnarchiver> archive = KeyedUnarchiver::fromData(data.value());
    return archive ? archive.value().count() : -1;
}

struct ReadRecords
{
    std::vector<TRenameTRX> transactions;
    std::optional<QString> foreign; ///< class of the first record that is none; nothing follows it
};

ReadRecords readRecords(const KeyedUnarchiver &archive, qsizetype first, qsizetype end)
{
    ReadRecords records;
    // The first half has room for the second.
    records.transactions.reserve(static_cast<std::size_t>(archive.count() - first));
    FolderPool folders;
    const QLatin1StringView own(TRenameTRX::archiveClass().front());
    archive.forEachObject(first, end, [&](const TDecoder &coder) {
        if (records.foreign)
            return;
        if (const QString name = coder.className(); name != own)
            records.foreign = name;
        else
            records.transactions.emplace_back().initWithCoder(coder, folders);
    });
    return records;
}

/// When a regular file was modified; unset for anything else.
TDate dateOfFile(const TFileURL &url)
{
    struct stat status;
    if (::stat(url.fileSystemPath().constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    return TDate::fromSeconds(status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}

} // namespace

QString rollbackLogName(TDate date)
{
    const TimeUtils::CalendarParts parts = TimeUtils::localParts(date);
    return QString::asprintf(kNameFormat, parts.year, parts.month, parts.day, parts.hour,
                             parts.minute, parts.second) +
           kRollbackLogExtension;
}

TResult<std::vector<TRenameTRX>> readRollbackLog(const QString &path)
{
    using Result = TResult<std::vector<TRenameTRX>>;
    const auto failure = [&path](const QString &why) {
        return Result::failure(QString(kNoLog).arg(shown(path), why));
    };
    const TResult<QByteArray> data = readWhole(path);
    if (!data)
        return Result::failure(data.message());
    const TResult<KeyedUnarchiver> archive = KeyedUnarchiver::fromData(data.value());
    if (!archive)
        return failure(archive.message());
    const qsizetype count = archive.value().count();
    if (count < 0)
        return failure(kNoArray);

    std::array<ReadRecords, 2> halves;
    inTwoHalves(0, static_cast<std::size_t>(count),
                [&](std::size_t from, std::size_t to, int half) {
                    halves[static_cast<std::size_t>(half)] = readRecords(
                        archive.value(), static_cast<qsizetype>(from), static_cast<qsizetype>(to));
                });
    std::vector<TRenameTRX> transactions = std::move(halves[0].transactions);
    if (!halves[0].foreign)
        std::ranges::move(halves[1].transactions, std::back_inserter(transactions));
    if (const auto &foreign = halves[0].foreign ? halves[0].foreign : halves[1].foreign)
        return failure(QString(kForeignRecord).arg(transactions.size() + 1).arg(shown(*foreign)));
    if (static_cast<qsizetype>(transactions.size()) != count)
        return failure(QString(kNoRecord).arg(transactions.size()).arg(count));
    return transactions;
}

namespace {

/// All logs of the folder with their dates, newest first. Some disks keep every name in small
/// letters.
std::vector<std::pair<TDate, QString>> datedLogs(const QString &logsFolder)
{
    TFileURLs urls;
    const QString extension = kRollbackLogExtension;
    processURLforExtensionstoList(TFileURL::fileURLWithPath(logsFolder),
                                  {extension, extension.toLower()}, urls);
    std::vector<std::pair<TDate, QString>> found;
    for (const TFileURL &url : urls)
        if (const TDate date = dateOfFile(url); date.isSet())
            found.emplace_back(date, url.path());
    std::sort(found.begin(), found.end(), std::greater());
    return found;
}

} // namespace

QStringList rollbackLogPaths(const QString &logsFolder)
{
    return rollbackLogPathsSince(logsFolder, {});
}

QStringList rollbackLogPathsSince(const QString &logsFolder, TDate moment)
{
    QStringList paths;
    for (const auto &[date, path] : datedLogs(logsFolder))
        if (!moment.isSet() || date.nanos >= moment.nanos)
            paths += path;
    return paths;
}

RollbackLogSummary summaryOfRollbackLog(const QString &path, qint64 mostBytes)
{
    const TResult<QByteArray> data = readWhole(path, mostBytes);
    if (!data)
        return {};
    const TResult<KeyedUnarchiver> archive = KeyedUnarchiver::fromData(data.value());
    const qsizetype count = archive ? archive.value().count() : -1;
    if (count <= 0)
        return {count, {}, false};
    const auto folderOf = [&archive](qsizetype record) {
        TFolderPtr folder;
        archive.value().forEachObject(record, record + 1, [&folder](const TDecoder &coder) {
            TRenameTRX transaction;
            transaction.initWithCoder(coder);
            folder = transaction.originalURL.folder();
        });
        return folder;
    };
    const TFolderPtr first = folderOf(0);
    const TFolderPtr last = folderOf(count - 1);
    return {count, first, first && last && first->path() != last->path()};
}

std::vector<SavedRollbackLog> savedRollbackLogs(const QString &logsFolder)
{
    std::vector<SavedRollbackLog> logs;
    for (const auto &[date, path] : datedLogs(logsFolder)) {
        const QString name = TFileURL::fileURLWithPath(path).lastPathComponent();
        logs.push_back({path, removeExtensionFromFilename(name), date, recordsIn(path)});
    }
    return logs;
}
