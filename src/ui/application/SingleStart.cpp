// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/application/SingleStart.h"

#include "commonprocs/URLListProcessing.h"
#include "platform/PrivateFolder.h"
#include "ui/application/StartMessage.h"

#include <QCryptographicHash>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kPause = 20ms;         ///< between two tries to reach the first one
constexpr auto kClientPatience = 10s; ///< with one that connects and says nothing
constexpr qsizetype kMostClients = 16;
constexpr qsizetype kHashDigits = 16;
constexpr const char *kRuntimeFolder = "XDG_RUNTIME_DIR";

bool isOfThisUser(qintptr socket)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    return ::getsockopt(static_cast<int>(socket), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == ::geteuid();
}

bool isPrivate(const QByteArray &folder)
{
    struct stat status = {};
    return ::lstat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

/// A descriptor that closes itself.
class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    int number() const { return m_number; }

private:
    int m_number;
};

bool sendAll(int socket, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t sent =
            ::send(socket, bytes.data(), static_cast<size_t>(bytes.size()), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        bytes = bytes.sliced(static_cast<qsizetype>(sent));
    }
    return true;
}

bool receivesAnswer(int socket)
{
    QByteArray answer(StartMessage::kAnswer.size(), '\0');
    const ssize_t got =
        ::recv(socket, answer.data(), static_cast<size_t>(answer.size()), MSG_WAITALL);
    return got == static_cast<ssize_t>(answer.size()) && answer == StartMessage::kAnswer;
}

} // namespace

/// One later start that is telling its paths. Ends itself, whatever the other side does.
class SingleStart::Client : public QObject
{
public:
    Client(QLocalSocket *socket, SingleStart &start)
        : QObject(&start)
        , m_start(start)
        , m_socket(socket)
    {
        socket->setParent(this);
        connect(socket, &QLocalSocket::readyRead, this, &Client::read);
        connect(socket, &QLocalSocket::disconnected, this, &QObject::deleteLater);
        QTimer::singleShot(kClientPatience, this, &QObject::deleteLater);
        read();
    }

private:
    void read()
    {
        if (m_isDone)
            return;
        const StartMessage::Reader::State state = m_reader.add(m_socket->readAll());
        if (state == StartMessage::Reader::State::More)
            return;
        m_isDone = true;
        if (state == StartMessage::Reader::State::Complete) {
            m_socket->write(StartMessage::kAnswer.data(), StartMessage::kAnswer.size());
            Q_EMIT m_start.pathsReceived(m_reader.paths());
        }
        m_socket->disconnectFromServer();
    }

    SingleStart &m_start;
    QLocalSocket *m_socket;
    StartMessage::Reader m_reader;
    bool m_isDone = false;
};

SingleStart::SingleStart(const QString &folder, const QString &display, QObject *parent)
    : QObject(parent)
{
    if (folder.isEmpty())
        return;
    const QByteArray hash =
        QCryptographicHash::hash(display.toUtf8(), QCryptographicHash::Sha256).toHex();
    const QString base = u"%1/tavrin-%2"_s.arg(folder, QLatin1StringView(hash.first(kHashDigits)));
    m_lockPath = QFile::encodeName(base + ".lock"_L1);
    m_socketPath = base + ".socket"_L1;
}

SingleStart::~SingleStart()
{
    retire();
}

QString SingleStart::privateFolder()
{
    const QByteArray runtime = qgetenv(kRuntimeFolder);
    if (runtime.startsWith('/') && isPrivate(runtime))
        return QFile::decodeName(runtime);
    const QByteArray own =
        QFile::encodeName(tempDirectoryURL().path()) + "/tavrin-" + QByteArray::number(::geteuid());
    return makePrivateFolder(own) && isPrivate(own) ? QFile::decodeName(own) : QString();
}

QString SingleStart::display()
{
    return QStringList{qEnvironmentVariable("QT_QPA_PLATFORM"),
                       qEnvironmentVariable("WAYLAND_DISPLAY"), qEnvironmentVariable("DISPLAY"),
                       appSupportDirURL().path()}
        .join(u'\n');
}

bool SingleStart::lock()
{
    if (m_lock < 0)
        m_lock = ::open(m_lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    return m_lock >= 0 && ::flock(m_lock, LOCK_EX | LOCK_NB) == 0;
}

void SingleStart::closeLock()
{
    if (m_lock >= 0)
        ::close(m_lock);
    m_lock = -1;
}

SingleStart::Outcome SingleStart::start(const QStringList &paths,
                                        std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!m_lockPath.isEmpty()) {
        if (lock())
            return Outcome::First;
        // The first one may just be starting, and listens in a moment; or it is ending.
        if (m_lock < 0 || handOver(paths)) {
            const Outcome outcome = m_lock < 0 ? Outcome::Alone : Outcome::HandedOver;
            closeLock();
            return outcome;
        }
        if (std::chrono::steady_clock::now() >= deadline)
            break;
        std::this_thread::sleep_for(kPause);
    }
    closeLock();
    return Outcome::Alone;
}

bool SingleStart::handOver(const QStringList &paths) const
{
    const QByteArray message = StartMessage::encode(paths);
    const QByteArray path = QFile::encodeName(m_socketPath);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (message.isEmpty() || path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval patience{std::chrono::seconds(kPatience / 1s).count(), 0};
    ::setsockopt(socket.number(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    ::setsockopt(socket.number(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    // The one type that the call takes for addresses of every kind.
    const auto *generic = static_cast<const sockaddr *>(static_cast<const void *>(&address));
    return ::connect(socket.number(), generic, sizeof address) == 0 &&
           isOfThisUser(socket.number()) && sendAll(socket.number(), message) &&
           receivesAnswer(socket.number());
}

void SingleStart::listen()
{
    if (m_lock < 0)
        return;
    QLocalServer::removeServer(m_socketPath); // of a first one that was killed
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, &SingleStart::accept);
    m_server->listen(m_socketPath);
}

void SingleStart::accept()
{
    while (QLocalSocket *socket = m_server->nextPendingConnection()) {
        const bool isWelcome =
            isOfThisUser(socket->socketDescriptor()) && children().size() < kMostClients;
        if (isWelcome)
            new Client(socket, *this); // its parent's
        else
            socket->deleteLater();
    }
}

void SingleStart::retire()
{
    m_server.reset();
    const QObjectList clients = children();
    qDeleteAll(clients);
    closeLock();
}
