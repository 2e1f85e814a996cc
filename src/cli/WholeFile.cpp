// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/WholeFile.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/easyfile.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

TResult<QByteArray> notRead(const QString &path, int error)
{
    return TResult<QByteArray>::failure(u"cannot read %1: %2"_s.arg(path, reasonNotToOpen(error)));
}

TResult<bool> notWritten(const QString &path, int error)
{
    const QString reason =
        error == ENOENT ? u"there is no such folder; check the spelling"_s : textForErrno(error);
    return TResult<bool>::failure(u"cannot write %1: %2"_s.arg(path, reason));
}

/// 0 or an errno.
int writeAll(int file, const QByteArray &content)
{
    for (qsizetype done = 0; done < content.size();) {
        const ssize_t written =
            ::write(file, content.data() + done, static_cast<size_t>(content.size() - done));
        if (written < 0 && errno != EINTR)
            return errno;
        done += written > 0 ? written : 0;
    }
    // A pipe or a device has nothing to bring to a disk.
    return ::fsync(file) == 0 || errno == EINVAL || errno == EROFS ? 0 : errno;
}

/// /dev/stdout, and also the file or pipe that it stands for.
bool isStandardOutput(const struct stat &status)
{
    struct stat output = {};
    return ::fstat(STDOUT_FILENO, &output) == 0 && output.st_dev == status.st_dev &&
           output.st_ino == status.st_ino;
}

/// Writes into what is there: a pipe, a device.
int writeInto(const QByteArray &target, const QByteArray &content)
{
    const int file = ::open(target.constData(), O_WRONLY | O_CREAT | O_NOCTTY | O_CLOEXEC, 0666);
    if (file < 0)
        return errno;
    const int error = writeAll(file, content);
    return ::close(file) == 0 || error != 0 ? error : errno;
}

mode_t usualMode()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

/// Puts a new file in the place of the old one, if there is one, at once.
int replace(const QByteArray &target, mode_t mode, const QByteArray &content)
{
    // A short name of its own, for the target's may be as long as names can be.
    QByteArray temporary = target.left(target.lastIndexOf('/') + 1) + ".tavrin-XXXXXX";
    const int file = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (file < 0)
        return errno;
    ::fchmod(file, mode);
    int error = writeAll(file, content);
    if (::close(file) != 0 && error == 0)
        error = errno;
    if (error == 0 && std::rename(temporary.constData(), target.constData()) != 0)
        error = errno;
    if (error != 0)
        ::unlink(temporary.constData());
    return error;
}

/// Where a link leads to in the end; the path itself when it is none, or leads nowhere.
QByteArray linkResolved(const QByteArray &path)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(
        ::realpath(path.constData(), nullptr), &std::free);
    return resolved ? QByteArray(resolved.get()) : path;
}

} // namespace

TResult<QByteArray> readWholeFile(const QString &path)
{
    const int descriptor = ::open(ByteNames::toBytes(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return notRead(path, errno);
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(descriptor);
        return notRead(path, EISDIR);
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return notRead(path, EIO);
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return notRead(path, EIO);
    return content;
}

TResult<bool> writeWholeFile(const QString &path, const QByteArray &content)
{
    const QByteArray target = ByteNames::toBytes(path);
    struct stat link = {};
    struct stat status = {};
    const bool isThere = ::stat(target.constData(), &status) == 0;
    const bool leadsNowhere = !isThere && ::lstat(target.constData(), &link) == 0;
    int error = 0;
    if (isThere && isStandardOutput(status))
        error = writeAll(STDOUT_FILENO, content);
    else if ((isThere && !S_ISREG(status.st_mode)) || leadsNowhere)
        error = writeInto(target, content);
    else if (isThere)
        error = replace(linkResolved(target), status.st_mode & 07777, content);
    else
        error = replace(target, usualMode(), content);
    return error == 0 ? TResult<bool>(true) : notWritten(path, error);
}

QString reasonNotToOpen(int error)
{
    switch (error) {
    case ENOENT:
        return u"there is no such file; check the spelling"_s;
    case EACCES:
        return u"you are not allowed to read it; ask its owner for permission"_s;
    case EISDIR:
        return u"it is a folder"_s;
    default:
        return textForErrno(error);
    }
}

QString reasonNotToRead(const QString &path)
{
    const QByteArray file = ByteNames::toBytes(path);
    struct stat status = {};
    if (::stat(file.constData(), &status) != 0)
        return reasonNotToOpen(errno);
    if (S_ISDIR(status.st_mode))
        return reasonNotToOpen(EISDIR);
    return ::access(file.constData(), R_OK) == 0 ? QString() : reasonNotToOpen(errno);
}
