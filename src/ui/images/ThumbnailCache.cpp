// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/images/ThumbnailCache.h"

#include "commonprocs/ByteNames.h"
#include "platform/PrivateFolder.h"
#include "ui/images/Images.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QFile>
#include <QImageReader>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

struct Size
{
    const char *name;
    int edge;
};
constexpr Size kSizes[] = {{"normal", 128}, {"large", 256}, {"x-large", 512}, {"xx-large", 1024}};

constexpr QLatin1StringView kFolder{"/thumbnails"};
constexpr QLatin1StringView kUri{"Thumb::URI"};
constexpr QLatin1StringView kModified{"Thumb::MTime"};
constexpr QLatin1StringView kSoftware{"Software"};
constexpr QLatin1StringView kTavrin{"Tavrin"};
constexpr const char *kPng = "png";
constexpr QByteArrayView kSignature{"\x89PNG"};
/// More than any picture of the largest size needs.
constexpr off_t kMaxBytes = off_t{8} * 1024 * 1024;

/// Nothing when it is no plain file of a reasonable size.
QByteArray bytesOf(const QByteArray &path)
{
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
    if (descriptor < 0)
        return {};
    struct stat status = {};
    const bool isPlain = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                         status.st_size > 0 && status.st_size <= kMaxBytes;
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle)) {
        ::close(descriptor);
        return {};
    }
    return isPlain ? file.read(kMaxBytes) : QByteArray();
}

/// Null unless the picture says that it belongs to that state of that file.
QImage decoded(QByteArray bytes, const QString &uri, qint64 modified, int edge)
{
    QBuffer buffer(&bytes);
    if (!bytes.startsWith(kSignature) || !buffer.open(QIODevice::ReadOnly))
        return {};
    QImageReader reader(&buffer, kPng);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > edge || size.height() > edge)
        return {};
    const QImage image = reader.read();
    const bool belongs =
        image.text(kUri) == uri && image.text(kModified) == QString::number(modified);
    return belongs ? image : QImage();
}

bool writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count =
            ::write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (count <= 0)
            return false;
        bytes = bytes.sliced(count);
    }
    return true;
}

/// Readers see the whole file or none; the temporary one is for its owner alone from the start.
bool replaceFile(const QByteArray &path, const QByteArray &bytes)
{
    QByteArray temporary = path + ".XXXXXX";
    const int descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool isWritten = writeAll(descriptor, bytes);
    const bool isClosed = ::close(descriptor) == 0;
    if (isWritten && isClosed && ::rename(temporary.constData(), path.constData()) == 0)
        return true;
    ::unlink(temporary.constData());
    return false;
}

} // namespace

ThumbnailCache ThumbnailCache::standard()
{
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return ThumbnailCache(ByteNames::toBytes(cache + kFolder));
}

ThumbnailCache::ThumbnailCache(QByteArray folder)
    : m_folder(std::move(folder))
{
}

int ThumbnailCache::edgeFor(int pixels)
{
    int edge = 0;
    for (const Size &size : kSizes) {
        edge = size.edge;
        if (edge >= pixels)
            break;
    }
    return edge;
}

QByteArray ThumbnailCache::pathFor(const TFileURL &file, QByteArrayView size) const
{
    const QByteArray uri = file.absoluteString().toLatin1();
    return m_folder + '/' + size.toByteArray() + '/' +
           QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex() + ".png";
}

QImage ThumbnailCache::find(const TFileURL &file, qint64 modifiedSeconds, int edge) const
{
    const QString uri = file.absoluteString();
    for (const Size &size : kSizes) {
        if (size.edge < edge)
            continue;
        const QImage image =
            decoded(bytesOf(pathFor(file, size.name)), uri, modifiedSeconds, size.edge);
        if (!image.isNull())
            return Images::fitted(image, QSize(edge, edge));
    }
    return {};
}

bool ThumbnailCache::store(const TFileURL &file, qint64 modifiedSeconds, int edge,
                           const QImage &image) const
{
    const Size *const size = std::ranges::find(kSizes, edge, &Size::edge);
    if (size == std::end(kSizes) || image.isNull() || image.width() > edge ||
        image.height() > edge || file.fileSystemPath().startsWith(m_folder + '/'))
        return false;
    QImage marked = image;
    marked.setText(kUri, file.absoluteString());
    marked.setText(kModified, QString::number(modifiedSeconds));
    marked.setText(kSoftware, kTavrin);
    const TResult<QByteArray> bytes = Images::encoded(marked, Images::Format::Png);
    return bytes && makePrivateFolder(m_folder + '/' + size->name) &&
           replaceFile(pathFor(file, size->name), bytes.value());
}
