// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "commonprocs/easyfile.h"
#include "platform/KeyedArchiver.h"
#include "rollback/JournalFolder.h"
#include "rollback/RollbackLog.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr QLatin1StringView kCannotWrite{"The rollback log cannot be written to \"%1\": %2"};
constexpr int kMostSeconds = 24 * 60 * 60;
/// Seconds that the time of a file may be behind the clock.
constexpr qint64 kStepsOfFileTimes = 2;
constexpr mode_t kProtectedMode = 0400;
constexpr qint64 kSizeOfEmptyLog = 1024;
/// What a record takes besides the folder's path and, a few times, the name.
constexpr qint64 kSizeOfRecord = 120;
constexpr qint64 kNamesInRecord = 4;
/// How much is written between two requests to begin bringing it to the disk.
constexpr qint64 kWrittenBetween = qint64{512} * 1024;

QString failureText(const QByteArray &folder, const QString &why)
{
    return QString(kCannotWrite).arg(ByteNames::forDisplay(ByteNames::fromBytes(folder)), why);
}

/// Moves a file without replacing, also where the file system has no such move. 0 or an errno.
int moveAside(int folder, const QByteArray &from, const QByteArray &to)
{
    if (::renameat2(folder, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    struct stat status;
    if (::lstat(to.constData(), &status) == 0)
        return EEXIST;
    return ::renameat(folder, from.constData(), AT_FDCWD, to.constData()) == 0 ? 0 : errno;
}

/// Whether the log under a name is that of a run which finished in the second of the date, as its
/// time and the permission to write say: an hour that comes twice in a year gives names twice.
bool isOfThatSecond(const QByteArray &path, TDate date)
{
    struct stat status;
    return ::lstat(path.constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           (status.st_mode & S_IWUSR) != 0 &&
           status.st_mtim.tv_sec >= date.nanos / TDate::kNanosPerSecond - kStepsOfFileTimes;
}

} // namespace

class RollbackLogWriter::Private
{
public:
    Private(JournalFolder runningFolder, OpenFile openFile, QByteArray fileName)
        : folder(std::move(runningFolder))
        , name(std::move(fileName))
    {
        file.open(openFile.release(), QIODevice::WriteOnly | QIODevice::Unbuffered,
                  QFileDevice::AutoCloseHandle);
        archiver = std::make_unique<KeyedArchiver>(file);
    }

    TResult<QString> place(TDate date, bool keepOthers) const;
    void protect() const;
    void beginWriteback();

    JournalFolder folder;
    QByteArray name;
    QFile file;
    qint64 begun = 0; ///< bytes that are on their way to the disk
    std::unique_ptr<KeyedArchiver> archiver;
    bool placed = false;
};

/// The log is synced at the end of the run; what is on the disk by then need not be waited for.
void RollbackLogWriter::Private::beginWriteback()
{
    const qint64 written = file.pos();
    if (written - begun < kWrittenBetween)
        return;
    ::sync_file_range(file.handle(), begun, written - begun, SYNC_FILE_RANGE_WRITE);
    begun = written;
}

/// The log's name does not tell when its run finished, so a run that does finish in that second
/// must not replace it. The missing permission to write is there from the moment the log is in
/// place, and lasts as long as the log; a disk that knows no permissions goes without.
void RollbackLogWriter::Private::protect() const
{
    ::fchmod(file.handle(), kProtectedMode);
}

TResult<QString> RollbackLogWriter::Private::place(TDate date, bool keepOthers) const
{
    if (keepOthers)
        protect();
    int error = EEXIST;
    for (int second = 0; error == EEXIST && second < kMostSeconds; ++second) {
        const TDate when{date.nanos + second * TDate::kNanosPerSecond};
        const QByteArray path = folder.logsPath() + '/' + ByteNames::toBytes(rollbackLogName(when));
        if (second == 1 && !keepOthers)
            protect();
        error = moveAside(folder.descriptor(), name, path);
        // Nobody but another run of this second replaces it between the look and the move.
        if (error == EEXIST && second == 0 && !keepOthers && isOfThatSecond(path, date))
            error =
                ::renameat(folder.descriptor(), name.constData(), AT_FDCWD, path.constData()) == 0
                    ? 0
                    : errno;
        if (error == 0)
            return ByteNames::fromBytes(path);
    }
    return TResult<QString>::failure(failureText(folder.logsPath(), textForErrno(error)));
}

RollbackLogWriter::RollbackLogWriter() = default;

TResult<std::unique_ptr<RollbackLogWriter>> RollbackLogWriter::create(const QString &logsFolder)
{
    using Result = TResult<std::unique_ptr<RollbackLogWriter>>;
    DiskFileManager fileManager;
    TResult<JournalFolder> folder = JournalFolder::open(logsFolder, fileManager);
    if (!folder)
        return Result::failure(folder.message());
    QByteArray name;
    TResult<OpenFile> file = folder.value().createLocked(JournalFolder::kPartialLog, name);
    if (!file)
        return Result::failure(file.message());
    std::unique_ptr<RollbackLogWriter> writer(new RollbackLogWriter);
    writer->m_private = std::make_unique<Private>(std::move(folder).value(),
                                                  std::move(file).value(), std::move(name));
    return writer;
}

RollbackLogWriter::~RollbackLogWriter()
{
    if (m_private && !m_private->placed)
        m_private->folder.remove(m_private->name);
}

/// So that a disk that is full stops a run before its first move. What was not needed is given back
/// by finish.
TResult<bool> RollbackLogWriter::reserve(std::span<const TFileItem> files)
{
    Private &d = *m_private;
    qint64 size = kSizeOfEmptyLog;
    for (const TFileItem &file : files)
        size += file.url.folder()->bytes().size() + kSizeOfRecord +
                kNamesInRecord * file.url.lastPathComponent().size();
    if (::fallocate(d.file.handle(), FALLOC_FL_KEEP_SIZE, 0, size) == 0 || errno == EOPNOTSUPP ||
        errno == ENOSYS)
        return true;
    return TResult<bool>::failure(failureText(d.folder.logsPath(), textForErrno(errno)));
}

void RollbackLogWriter::append(const TRenameTRX &transaction)
{
    m_private->archiver->appendObject(TRenameTRX::archiveClass(), [&transaction](TEncoder &coder) {
        transaction.encodeWithCoder(coder);
    });
    m_private->beginWriteback();
}

TResult<QString> RollbackLogWriter::finish(TDate date, bool keepOthers)
{
    Private &d = *m_private;
    const auto failure = [&d](const QString &why) {
        return TResult<QString>::failure(failureText(d.folder.logsPath(), why));
    };
    if (!d.archiver->finish())
        return failure(d.file.errorString());
    if (::ftruncate(d.file.handle(), d.file.size()) != 0)
        return failure(textForErrno(errno));
    // The journal counts as finished next, so from here on the log must survive a power cut.
    if (::fdatasync(d.file.handle()) != 0)
        return failure(textForErrno(errno));
    TResult<QString> path = d.place(date, keepOthers);
    d.placed = static_cast<bool>(path);
    return path;
}
