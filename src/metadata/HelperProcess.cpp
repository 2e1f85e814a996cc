// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/HelperProcess.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/easyfile.h"
#include "platform/MetadataProtocol.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kChildSocket = 3; ///< the socket's number in the helper
constexpr auto kBlock = std::size_t{64} * 1024;
/// A process that hangs in the kernel (a dead network disk) is left to the system after this.
constexpr int kMillisecondsToDie = 1000;
constexpr char kNull[] = "/dev/null";
constexpr char kName[] = "tavrin-metadata";

/// What a child process shall find, released at the end.
class SpawnPlan
{
public:
    explicit SpawnPlan(int socket)
    {
        ::posix_spawn_file_actions_init(&m_files);
        ::posix_spawn_file_actions_adddup2(&m_files, socket, kChildSocket);
        ::posix_spawn_file_actions_addopen(&m_files, STDIN_FILENO, kNull, O_RDONLY, 0);
        // Libraries that complain about files would do so in the midst of the user's output.
        ::posix_spawn_file_actions_addopen(&m_files, STDOUT_FILENO, kNull, O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&m_files, STDERR_FILENO, kNull, O_WRONLY, 0);
        ::posix_spawnattr_init(&m_attributes);
        sigset_t signals;
        sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&m_attributes, &signals);
        sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&m_attributes, &signals);
        // A group of its own: keys at the terminal (stop, interrupt) are meant for the program.
        ::posix_spawnattr_setpgroup(&m_attributes, 0);
        ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK |
                                                      POSIX_SPAWN_SETPGROUP);
    }
    ~SpawnPlan()
    {
        ::posix_spawn_file_actions_destroy(&m_files);
        ::posix_spawnattr_destroy(&m_attributes);
    }
    SpawnPlan(const SpawnPlan &) = delete;
    SpawnPlan &operator=(const SpawnPlan &) = delete;

    /// 0 or an errno.
    int spawn(const QByteArray &program, int niceness, pid_t &process) const
    {
        QByteArray name(kName);
        QByteArray socket = QByteArray::number(kChildSocket);
        QByteArray nice = QByteArray::number(niceness);
        char *const arguments[] = {name.data(), socket.data(), nice.data(), nullptr};
        return ::posix_spawn(&process, program.constData(), &m_files, &m_attributes, arguments,
                             environ);
    }

private:
    posix_spawn_file_actions_t m_files;
    posix_spawnattr_t m_attributes;
};

void reap(pid_t process)
{
    ::kill(process, SIGKILL);
    const auto handle = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
    pollfd ended{handle, POLLIN, 0};
    const bool watched = handle >= 0;
    while (watched && ::poll(&ended, 1, kMillisecondsToDie) < 0 && errno == EINTR) {
    }
    ::waitpid(process, nullptr, watched ? WNOHANG : 0);
    if (watched)
        ::close(handle);
}

bool isProgram(const std::filesystem::path &path)
{
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored) && ::access(path.c_str(), X_OK) == 0;
}

} // namespace

HelperProcess::HelperProcess(pid_t process, int socket)
    : m_process(process)
    , m_socket(socket)
    , m_frames(MetadataProtocol::kMaxReply)
{
}

HelperProcess::~HelperProcess()
{
    ::close(m_socket);
    reap(m_process);
}

TResult<std::shared_ptr<HelperProcess>> HelperProcess::start(const QByteArray &program,
                                                             int niceness)
{
    using Result = TResult<std::shared_ptr<HelperProcess>>;
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return Result::failure(textForErrno(errno));
    pid_t process = 0;
    const int error = SpawnPlan(ends[1]).spawn(program, niceness, process);
    ::close(ends[1]);
    if (error == 0)
        return std::shared_ptr<HelperProcess>(new HelperProcess(process, ends[0]));
    ::close(ends[0]);
    return Result::failure(textForErrno(error));
}

bool HelperProcess::send(const QByteArray &frame) const
{
    const auto size = static_cast<std::size_t>(frame.size());
    return ::send(m_socket, frame.constData(), size, MSG_DONTWAIT | MSG_NOSIGNAL) == frame.size();
}

bool HelperProcess::receive()
{
    std::array<char, kBlock> block;
    const ssize_t count = ::recv(m_socket, block.data(), block.size(), MSG_DONTWAIT);
    if (count > 0)
        m_frames.append({block.data(), count});
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

QString standardMetadataHelper()
{
    if (const QByteArray named = qgetenv("TAVRIN_METADATA_HELPER"); !named.isEmpty())
        return ByteNames::fromBytes(named);
    std::error_code ignored;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
    const std::filesystem::path installed = folder / TAVRIN_HELPER_FROM_PROGRAMS / kName;
    for (const auto &path : {folder / kName, folder / ".." / "helper" / kName}) {
        if (isProgram(path))
            return ByteNames::fromBytes(path.c_str());
    }
    return ByteNames::fromBytes(installed.lexically_normal().c_str());
}
