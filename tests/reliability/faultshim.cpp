// SPDX-License-Identifier: GPL-3.0-or-later
// A library that is loaded before the C library (LD_PRELOAD) and stands between a program and the
// disk. It counts the calls that open or change something below one folder, and kills the program
// at a chosen one or lets it fail. Configured by the environment:
//
//   TAVRIN_FAULT_UNDER   the folder; calls on anything else pass untouched and uncounted
//   TAVRIN_FAULT_LOG     file to which every counted call is appended: "KIND NAME" and, for the one
//                        that was meddled with, " <-"
//   TAVRIN_FAULT         KIND:N:WHAT or KIND:N+:WHAT. KIND is a kind below, or "any"; the N-th call
//                        of the kind is meddled with, and with a plus every later one, too. WHAT is
//                        kill-before, kill-inside, kill-after, short, or the number of an error
//   TAVRIN_PLAIN_DISK    "links" or "no links": the folder looks like one of a user-space file
//                        system, whose inode numbers do not last and whose renames know no flags
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace {

enum class What { Nothing, KillBefore, KillInside, KillAfter, Short, Fail };

struct Plan
{
    std::string under;
    std::string kind;
    long first = 0;
    bool lasting = false;
    What what = What::Nothing;
    int error = 0;
    int log = -1;
    bool isPlain = false;
    bool hasLinks = true;
};

std::string setting(const char *name)
{
    const char *value = std::getenv(name);
    return value != nullptr ? value : "";
}

Plan readPlan()
{
    Plan plan;
    plan.under = setting("TAVRIN_FAULT_UNDER");
    plan.isPlain = !setting("TAVRIN_PLAIN_DISK").empty();
    plan.hasLinks = setting("TAVRIN_PLAIN_DISK") != "no links";
    if (const std::string log = setting("TAVRIN_FAULT_LOG"); !log.empty())
        plan.log = static_cast<int>(syscall(SYS_openat, AT_FDCWD, log.c_str(),
                                            O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    const std::string fault = setting("TAVRIN_FAULT");
    const auto colon = fault.find(':');
    const auto second = fault.find(':', colon + 1);
    if (colon == std::string::npos || second == std::string::npos)
        return plan;
    plan.kind = fault.substr(0, colon);
    plan.first = std::atol(fault.c_str() + colon + 1);
    plan.lasting = fault[second - 1] == '+';
    const std::string what = fault.substr(second + 1);
    if (what == "kill-before")
        plan.what = What::KillBefore;
    else if (what == "kill-inside")
        plan.what = What::KillInside;
    else if (what == "kill-after")
        plan.what = What::KillAfter;
    else if (what == "short")
        plan.what = What::Short;
    else {
        plan.what = What::Fail;
        plan.error = std::atoi(what.c_str());
    }
    return plan;
}

const Plan &plan()
{
    static const Plan read = readPlan();
    return read;
}

/// The call that the C library would have made.
template <typename Function>
Function *next(Function * /*ours*/, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

std::string linkText(int descriptor)
{
    char link[64];
    char target[PATH_MAX];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const long length = syscall(SYS_readlinkat, AT_FDCWD, link, target, sizeof target);
    return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
}

std::string fullPath(int folder, const char *name)
{
    if (name[0] == '/' || folder == AT_FDCWD)
        return name;
    return linkText(folder) + '/' + name;
}

[[noreturn]] void die()
{
    syscall(SYS_kill, getpid(), SIGKILL);
    for (;;)
        pause();
}

/// Counts a call, and says what is to become of it.
What enter(const char *kind, const std::string &path)
{
    static std::atomic<long> count{0};
    static std::mutex logLock;
    const int before = errno;
    if (plan().under.empty() || path.compare(0, plan().under.size(), plan().under) != 0)
        return What::Nothing;
    const bool counts = plan().kind == "any" || plan().kind == kind;
    const long number = counts ? ++count : 0;
    const bool hit =
        counts && (number == plan().first || (plan().lasting && number > plan().first));
    if (plan().log >= 0) {
        const std::lock_guard lock(logLock);
        const std::string line =
            std::string(kind) + ' ' + path.substr(path.rfind('/') + 1) + (hit ? " <-\n" : "\n");
        syscall(SYS_write, plan().log, line.data(), line.size());
    }
    if (hit && plan().what == What::KillBefore)
        die();
    errno = before;
    return hit ? plan().what : What::Nothing;
}

/// A call that answers 0 or more, or -1 with errno.
template <typename Call>
auto meddle(const char *kind, const std::string &path, Call &&call)
{
    const What what = enter(kind, path);
    if (what == What::Fail) {
        errno = plan().error;
        return static_cast<decltype(call())>(-1);
    }
    const auto result = call();
    if (what == What::KillAfter || what == What::KillInside)
        die();
    return result;
}

template <typename Call>
ssize_t meddleWithWrite(int descriptor, std::size_t size, Call &&call)
{
    const What what = enter("write", linkText(descriptor));
    if (what == What::Fail) {
        errno = plan().error;
        return -1;
    }
    const bool half = what == What::Short || what == What::KillInside;
    const ssize_t result = call(half ? (size + 1) / 2 : size);
    if (what == What::KillAfter || what == What::KillInside)
        die();
    return result;
}

mode_t modeOf(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

int openAt(int folder, const char *path, int flags, mode_t mode)
{
    return meddle("open", fullPath(folder, path),
                  [&] { return static_cast<int>(syscall(SYS_openat, folder, path, flags, mode)); });
}

} // namespace

extern "C" {

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAt(AT_FDCWD, path, flags, mode);
}

int open64(const char *path, int flags, ...) __attribute__((alias("open")));

int openat(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAt(folder, path, flags, mode);
}

int openat64(int folder, const char *path, int flags, ...) __attribute__((alias("openat")));

ssize_t write(int descriptor, const void *bytes, size_t size)
{
    return meddleWithWrite(descriptor, size,
                           [&](size_t n) { return syscall(SYS_write, descriptor, bytes, n); });
}

ssize_t pwrite(int descriptor, const void *bytes, size_t size, off_t at)
{
    return meddleWithWrite(descriptor, size, [&](size_t n) {
        return syscall(SYS_pwrite64, descriptor, bytes, n, at);
    });
}

ssize_t pwrite64(int descriptor, const void *bytes, size_t size, off_t at)
    __attribute__((alias("pwrite")));

int fsync(int descriptor)
{
    return meddle("fsync", linkText(descriptor), [&] { return next(&fsync, "fsync")(descriptor); });
}

int fdatasync(int descriptor)
{
    return meddle("fsync", linkText(descriptor),
                  [&] { return next(&fdatasync, "fdatasync")(descriptor); });
}

int ftruncate(int descriptor, off_t size)
{
    return meddle("truncate", linkText(descriptor),
                  [&] { return next(&ftruncate, "ftruncate")(descriptor, size); });
}

int ftruncate64(int descriptor, off_t size) __attribute__((alias("ftruncate")));

/// Answers the error itself instead of setting errno.
int posix_fallocate(int descriptor, off_t at, off_t size)
{
    const int result = meddle("allocate", linkText(descriptor), [&] {
        errno = next(&posix_fallocate, "posix_fallocate")(descriptor, at, size);
        return errno == 0 ? 0 : -1;
    });
    return result == 0 ? 0 : errno;
}

int posix_fallocate64(int descriptor, off_t at, off_t size)
    __attribute__((alias("posix_fallocate")));

int statfs(const char *path, struct statfs *status)
{
    const int result = static_cast<int>(syscall(SYS_statfs, path, status));
    if (result == 0 && plan().isPlain)
        status->f_type = FUSE_SUPER_MAGIC;
    return result;
}

int statfs64(const char *path, struct statfs64 *status)
{
    return statfs(path, reinterpret_cast<struct statfs *>(status));
}

int mkdir(const char *path, mode_t mode)
{
    return meddle("mkdir", path, [&] { return next(&mkdir, "mkdir")(path, mode); });
}

int renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned flags)
{
    return meddle("rename", fullPath(fromFolder, from), [&] {
        if (flags != 0 && plan().isPlain) {
            errno = EINVAL;
            return -1;
        }
        return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
    });
}

int renameat(int fromFolder, const char *from, int toFolder, const char *to)
{
    return renameat2(fromFolder, from, toFolder, to, 0);
}

int rename(const char *from, const char *to)
{
    return renameat2(AT_FDCWD, from, AT_FDCWD, to, 0);
}

int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags)
{
    return meddle("link", fullPath(fromFolder, from), [&] {
        if (!plan().hasLinks) {
            errno = EPERM;
            return -1;
        }
        return static_cast<int>(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
    });
}

int unlinkat(int folder, const char *name, int flags)
{
    return meddle("unlink", fullPath(folder, name),
                  [&] { return static_cast<int>(syscall(SYS_unlinkat, folder, name, flags)); });
}

int unlink(const char *name)
{
    return unlinkat(AT_FDCWD, name, 0);
}

} // extern "C"
