// SPDX-License-Identifier: GPL-3.0-or-later
#include "helper/RequestServer.h"

#include "platform/MetadataFrames.h"
#include "readers/ImageReader.h"
#include "readers/MediaReader.h"
#include "readers/ThumbnailReader.h"

#include <array>
#include <cerrno>
#include <sys/socket.h>
#include <sys/stat.h>

namespace {

constexpr std::size_t kBlock = 16 * 1024;

bool isRegularFile(const QByteArray &path)
{
    struct stat status = {};
    return ::stat(path.constData(), &status) == 0 && S_ISREG(status.st_mode);
}

std::optional<MetadataThumbnail> thumbnailOf(const QImage &picture)
{
    if (picture.isNull())
        return {};
    const QImage image = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    MetadataThumbnail thumbnail{image.width(), image.height(), {}};
    for (int row = 0; row < image.height(); ++row)
        thumbnail.pixels.append(
            QByteArrayView(image.constScanLine(row), qsizetype{4} * image.width()));
    return thumbnail;
}

} // namespace

MetadataReply answer(const MetadataRequest &request)
{
    MetadataReply reply;
    reply.id = request.id;
    if (!isRegularFile(request.path))
        return reply;
    if (request.parts.testFlag(MetadataRequest::ImageProperties))
        reply.imageProperties = readImageProperties(request.path, request.wish);
    if (request.parts.testFlag(MetadataRequest::Media))
        reply.media = readMedia(request.path);
    if (request.parts.testFlag(MetadataRequest::Thumbnail))
        reply.thumbnail = thumbnailOf(readThumbnail(request.path, request.edge));
    return reply;
}

bool RequestServer::serve()
{
    if (!send(MetadataProtocol::greeting()))
        return true;
    MetadataFrames frames(MetadataProtocol::kMaxRequest);
    std::array<char, kBlock> block;
    while (true) {
        const ssize_t count = ::recv(m_socket, block.data(), block.size(), 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return true;
        frames.append({block.data(), count});
        if (!answerAll(frames))
            return false;
    }
}

bool RequestServer::answerAll(MetadataFrames &frames)
{
    while (const std::optional<QByteArray> content = frames.next()) {
        const std::optional<MetadataRequest> request = MetadataProtocol::readRequest(*content);
        if (!request)
            return false;
        // When the other side no longer listens, the next read says so.
        send(MetadataProtocol::frame(answer(*request)));
    }
    return !frames.isBroken();
}

bool RequestServer::send(const QByteArray &bytes) const
{
    for (qsizetype sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(m_socket, bytes.constData() + sent,
                                     static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR)
            return false;
        sent += count > 0 ? count : 0;
    }
    return true;
}
