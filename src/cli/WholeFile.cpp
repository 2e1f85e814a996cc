// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/WholeFile.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/easyfile.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

template <typename T>
TResult<T> failed(QLatin1StringView what, const QString &path, int error)
{
    return TResult<T>::failure(u"cannot %1 %2: %3"_s.arg(what, path, reasonNotToOpen(error)));
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
    return ::fsync(file) == 0 ? 0 : errno;
}

} // namespace

TResult<QByteArray> readWholeFile(const QString &path)
{
    const int descriptor = ::open(ByteNames::toBytes(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return failed<QByteArray>("read"_L1, path, errno);
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(descriptor);
        return failed<QByteArray>("read"_L1, path, EISDIR);
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return failed<QByteArray>("read"_L1, path, EIO);
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return failed<QByteArray>("read"_L1, path, EIO);
    return content;
}

TResult<bool> writeWholeFile(const QString &path, const QByteArray &content)
{
    const QByteArray target = ByteNames::toBytes(path);
    QByteArray temporary = target + ".XXXXXX";
    const int file = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (file < 0)
        return failed<bool>("write"_L1, path, errno);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(file, 0666 & ~mask);
    int error = writeAll(file, content);
    ::close(file);
    if (error == 0 && std::rename(temporary.constData(), target.constData()) != 0)
        error = errno;
    if (error == 0)
        return true;
    ::unlink(temporary.constData());
    return failed<bool>("write"_L1, path, error);
}

QString reasonNotToOpen(int error)
{
    return error == ENOENT ? u"there is no such file; check the spelling"_s : textForErrno(error);
}
