// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/JournalFolder.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/easyfile.h"

#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>

namespace {

constexpr QByteArrayView kName{"/.running"};
constexpr QLatin1StringView kCannotMake{"The folder \"%1\" cannot be made: %2"};
constexpr QLatin1StringView kCannotRead{"What interrupted runs left in \"%1\" cannot be read: %2"};
constexpr QLatin1StringView kCannotCreate{"No file can be made in \"%1\": %2"};
constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr int kAttempts = 8;

QString failureText(QLatin1StringView format, const QByteArray &path, int error)
{
    return QString(format).arg(ByteNames::forDisplay(ByteNames::fromBytes(path)),
                               textForErrno(error));
}

/// Makes a folder in its parent and sees to it that the entry lasts. 0 or an errno.
int makeFolder(const QByteArray &path, FileManager &fileManager)
{
    if (::mkdir(path.constData(), kFolderMode) != 0)
        return errno == EEXIST ? 0 : errno;
    const QByteArray parentPath = path.first(qMax(qsizetype{1}, path.lastIndexOf('/')));
    const OpenFile parent(::open(parentPath.constData(), kFolderFlags));
    return parent.isOpen() ? fileManager.sync(parent.descriptor()) : errno;
}

/// makeFolder for every missing part of an absolute path.
int makeFolders(const QByteArray &path, FileManager &fileManager)
{
    struct stat status;
    if (::stat(path.constData(), &status) == 0)
        return S_ISDIR(status.st_mode) ? 0 : ENOTDIR;
    for (qsizetype slash = path.indexOf('/', 1); slash > 0; slash = path.indexOf('/', slash + 1))
        if (const int error = makeFolder(path.first(slash), fileManager))
            return error;
    return makeFolder(path, fileManager);
}

/// How the name of a finished journal ends: with its rollback log's name, if there is one.
QByteArray endingFor(const QByteArray &rollbackLog)
{
    const QByteArray stem = rollbackLog.first(qMax(qsizetype{0}, rollbackLog.lastIndexOf('.')));
    return (stem.isEmpty() ? QByteArray() : '.' + stem) + JournalFolder::kFinished.toByteArray();
}

/// Of two spellings, too: some disks keep every name in small letters.
bool endsWith(QByteArrayView name, QByteArrayView ending)
{
    return name.size() >= ending.size() &&
           name.last(ending.size()).compare(ending, Qt::CaseInsensitive) == 0;
}

/// Errors that say what stands under a name, and not that the disk fails.
bool isNoOpenFile(int error)
{
    return error == ENOENT || error == EISDIR || error == ELOOP || error == ENXIO;
}

int lockedOrError(int file)
{
    return ::flock(file, LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
}

} // namespace

TResult<JournalFolder> JournalFolder::open(const QString &logsFolder, FileManager &fileManager)
{
    const QByteArray path = ByteNames::toBytes(logsFolder) + kName.toByteArray();
    if (const int error = makeFolders(path, fileManager))
        return TResult<JournalFolder>::failure(failureText(kCannotMake, path, error));
    return openExisting(logsFolder);
}

TResult<JournalFolder> JournalFolder::openExisting(const QString &logsFolder, int *error)
{
    const QByteArray logsPath = ByteNames::toBytes(logsFolder);
    const QByteArray path = logsPath + kName.toByteArray();
    OpenFile folder(::open(path.constData(), kFolderFlags | O_NOFOLLOW));
    if (!folder.isOpen()) {
        const int why = errno;
        if (error != nullptr)
            *error = why;
        return TResult<JournalFolder>::failure(
            failureText(error != nullptr ? kCannotRead : kCannotMake, path, why));
    }
    return JournalFolder(std::move(folder), logsPath);
}

TResult<OpenFile> JournalFolder::createLocked(QByteArrayView ending, QByteArray &name) const
{
    int error = 0;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        name = QUuid::createUuid().toByteArray(QUuid::WithoutBraces) + ending.toByteArray();
        OpenFile file(::openat(descriptor(), name.constData(),
                               O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode));
        if (!file.isOpen()) {
            error = errno;
            break;
        }
        error = lockedOrError(file.descriptor());
        struct stat status;
        // A clean-up that came between making and locking has deleted the file, or is about to.
        if (error == 0 && ::fstat(file.descriptor(), &status) == 0 && status.st_nlink > 0)
            return file;
        remove(name);
        if (error != 0 && error != EWOULDBLOCK)
            break;
    }
    return TResult<OpenFile>::failure(failureText(kCannotCreate, pathOf({}), error));
}

TResult<OpenFile> JournalFolder::openLocked(const QByteArray &name) const
{
    OpenFile file(
        ::openat(descriptor(), name.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen() && !isNoOpenFile(errno))
        return TResult<OpenFile>::failure(failureText(kCannotRead, pathOf(name), errno));
    if (!file.isOpen() || lockedOrError(file.descriptor()) != 0)
        return OpenFile();
    // The name must still mean this file: its writer may have renamed it before letting go.
    struct stat opened;
    struct stat named;
    const bool same = ::fstat(file.descriptor(), &opened) == 0 &&
                      ::fstatat(descriptor(), name.constData(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
                      opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
    return same ? std::move(file) : OpenFile{};
}

TResult<std::vector<QByteArray>> JournalFolder::names(QByteArrayView ending) const
{
    std::vector<QByteArray> found;
    const auto failure = [this] {
        return TResult<std::vector<QByteArray>>::failure(
            failureText(kCannotRead, pathOf({}), errno));
    };
    OpenFile again(::openat(descriptor(), ".", kFolderFlags));
    const std::unique_ptr<DIR, int (*)(DIR *)> listing(::fdopendir(again.descriptor()),
                                                       &::closedir);
    if (!listing)
        return failure();
    again.release();
    errno = 0;
    while (const dirent *entry = ::readdir(listing.get()))
        if (endsWith(entry->d_name, ending))
            found.emplace_back(entry->d_name);
    if (errno != 0)
        return failure();
    std::sort(found.begin(), found.end());
    return found;
}

int JournalFolder::rename(const QByteArray &from, const QByteArray &to) const
{
    return ::renameat(descriptor(), from.constData(), descriptor(), to.constData()) == 0 ? 0
                                                                                         : errno;
}

void JournalFolder::remove(const QByteArray &name) const
{
    ::unlinkat(descriptor(), name.constData(), 0);
}

int JournalFolder::keepFinished(QByteArray &name, const OpenFile &file, qint64 size,
                                const QByteArray &rollbackLog) const
{
    const QByteArray finished = name.first(name.lastIndexOf('.')) + endingFor(rollbackLog);
    if (::ftruncate(file.descriptor(), size) != 0)
        return errno;
    if (const int error = rename(name, finished))
        return error;
    name = finished;
    removeOldJournals();
    return 0;
}

OpenFile JournalFolder::openFinished(const QByteArray &rollbackLog) const
{
    auto kept = names(endingFor(rollbackLog));
    if (!kept || kept.value().empty())
        return {};
    const QByteArray youngest = oldestFirst(std::move(kept).value()).back();
    return OpenFile(::openat(descriptor(), youngest.constData(),
                             O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
}

std::vector<QByteArray> JournalFolder::oldestFirst(std::vector<QByteArray> files) const
{
    std::vector<std::pair<qint64, QByteArray>> byAge;
    for (QByteArray &name : files) {
        struct stat status;
        if (::fstatat(descriptor(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0)
            byAge.emplace_back(status.st_mtim.tv_sec * TDate::kNanosPerSecond +
                                   status.st_mtim.tv_nsec,
                               std::move(name));
    }
    std::sort(byAge.begin(), byAge.end());
    files.clear();
    for (auto &[age, name] : byAge)
        files.push_back(std::move(name));
    return files;
}

void JournalFolder::removeOldJournals() const
{
    auto finished = names(kFinished);
    if (!finished || static_cast<qsizetype>(finished.value().size()) <= kKeptJournals)
        return;
    const std::vector<QByteArray> kept = oldestFirst(std::move(finished).value());
    for (qsizetype i = 0; i < static_cast<qsizetype>(kept.size()) - kKeptJournals; ++i)
        remove(kept[static_cast<std::size_t>(i)]);
}

QByteArray JournalFolder::nameOf(const QString &path)
{
    return ByteNames::toBytes(path.sliced(path.lastIndexOf(u'/') + 1));
}

QByteArray JournalFolder::pathOf(const QByteArray &name) const
{
    const QByteArray folder = m_logsPath + kName.toByteArray();
    return name.isEmpty() ? folder : folder + '/' + name;
}
