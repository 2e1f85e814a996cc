// SPDX-License-Identifier: GPL-3.0-or-later
// A helper program that opens no file: the name of each file says what becomes of it. Writes its
// process number and the names it was asked about to $FAKE_HELPER_LOG.
#include "platform/MetadataFrames.h"
#include "platform/MetadataProtocol.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void log(const QByteArray &line)
{
    const int file = ::open(std::getenv("FAKE_HELPER_LOG"), O_WRONLY | O_APPEND | O_CLOEXEC);
    [[maybe_unused]] const ssize_t written =
        ::write(file, line.constData(), static_cast<size_t>(line.size()));
    ::close(file);
}

MetadataReply replyTo(const MetadataRequest &request, const QString &name)
{
    MetadataReply reply;
    reply.id = request.id + (name.startsWith(u"wrong"_s) ? 1 : 0);
    if (request.parts.testFlag(MetadataRequest::ImageProperties))
        reply.imageProperties = QVariantMap{{u"Name"_s, name}};
    if (request.parts.testFlag(MetadataRequest::Media))
        reply.media = MediaReading{{{u"tags"_s, u"key"_s, u"title"_s, name}}, 61};
    return reply;
}

QByteArray answer(const MetadataRequest &request)
{
    const QString name = QString::fromUtf8(request.path.mid(request.path.lastIndexOf('/') + 1));
    log(QByteArray::number(::getpid()) + ' ' + name.toUtf8() + '\n');
    if (name.startsWith(u"crash"_s))
        ::_exit(1);
    while (name.startsWith(u"stall"_s))
        ::pause();
    if (name.startsWith(u"slow"_s))
        ::usleep(20'000);
    if (name.startsWith(u"nonsense"_s))
        return QByteArray("\x03\x00\x00\x00???", 7);
    if (name.startsWith(u"huge"_s))
        return QByteArray("\xff\xff\xff\x7f", 4);
    return MetadataProtocol::frame(replyTo(request, name));
}

} // namespace

int main(int, char **argv)
{
    const QByteArray mood = qgetenv("FAKE_HELPER");
    if (mood == "mute")
        return 0;
    const int socket = std::atoi(argv[1]);
    const auto send = [socket](const QByteArray &bytes) {
        ::send(socket, bytes.constData(), static_cast<size_t>(bytes.size()), MSG_NOSIGNAL);
    };
    QByteArray greeting = MetadataProtocol::greeting();
    if (mood == "newer")
        greeting.back() = static_cast<char>(greeting.back() + 1);
    send(greeting);
    MetadataFrames frames(MetadataProtocol::kMaxRequest);
    char block[4096];
    for (ssize_t count = 0; (count = ::recv(socket, block, sizeof block, 0)) > 0;) {
        frames.append({block, count});
        while (const auto content = frames.next())
            send(answer(*MetadataProtocol::readRequest(*content)));
    }
    return 0;
}
