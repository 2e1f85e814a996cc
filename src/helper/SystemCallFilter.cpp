// SPDX-License-Identifier: GPL-3.0-or-later
#include "helper/SystemCallFilter.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <initializer_list>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <vector>

namespace {

#if defined(__x86_64__)
constexpr unsigned kArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr unsigned kArchitecture = AUDIT_ARCH_AARCH64;
#else
constexpr unsigned kArchitecture = 0;
#endif
constexpr unsigned kX32Bit = 0x40000000U; ///< marks calls of another kind on x86

constexpr std::initializer_list<int> kDenied{
    SYS_socket,
    SYS_socketpair,
    SYS_connect,
    SYS_bind,
    SYS_listen,
    SYS_accept,
    SYS_accept4,
    SYS_execve,
    SYS_execveat,
    SYS_ptrace,
    SYS_kill,
    SYS_tkill,
    SYS_unlinkat,
    SYS_renameat2,
    SYS_linkat,
    SYS_symlinkat,
    SYS_mkdirat,
    SYS_mknodat,
    SYS_fchmod,
    SYS_fchmodat,
    SYS_fchown,
    SYS_fchownat,
    SYS_truncate,
    SYS_ftruncate,
    SYS_utimensat,
    SYS_setxattr,
    SYS_lsetxattr,
    SYS_fsetxattr,
    SYS_removexattr,
    SYS_mount,
    SYS_umount2,
    SYS_chroot,
    SYS_pivot_root,
    SYS_bpf,
    SYS_keyctl,
    SYS_add_key,
    SYS_io_uring_setup,
    SYS_process_vm_readv,
    SYS_process_vm_writev,
    SYS_userfaultfd,
    SYS_perf_event_open,
    SYS_openat2,
    SYS_open_by_handle_at,
    SYS_memfd_create,
#ifdef SYS_fork
    SYS_fork,
    SYS_vfork,
    SYS_creat,
    SYS_unlink,
    SYS_rename,
    SYS_link,
    SYS_symlink,
    SYS_mkdir,
    SYS_rmdir,
    SYS_mknod,
    SYS_chmod,
    SYS_chown,
    SYS_lchown,
    SYS_utime,
    SYS_utimes,
    SYS_futimesat,
#endif
    SYS_renameat,
};

/// Flags with which a file is opened for more than reading.
constexpr unsigned kWriting = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_APPEND;

class Program
{
public:
    void load(std::size_t offset)
    {
        m_code.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned>(offset)));
    }
    void answer(unsigned result) { m_code.push_back(BPF_STMT(BPF_RET | BPF_K, result)); }
    /// Goes on when what was loaded is the value, and answers otherwise.
    void demand(unsigned value, unsigned otherwise)
    {
        m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 1, 0));
        answer(otherwise);
    }
    /// Answers when what was loaded has any of the bits.
    void refuseBits(unsigned bits, unsigned result)
    {
        m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, bits, 0, 1));
        answer(result);
    }
    /// Answers a call of that number, and goes on for others.
    void answerCall(int number, unsigned result)
    {
        m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 1));
        answer(result);
    }
    /// Decides a call by bits of one of its arguments: when any of them is set, and when none is.
    void answerByBits(int number, int argument, unsigned bits, unsigned whenAny, unsigned whenNone)
    {
        // Arguments are wider than the filter's words; all of these flags are in the lower half.
        const std::size_t low =
            offsetof(seccomp_data, args) + static_cast<std::size_t>(argument) * sizeof(__u64);
        m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 4));
        load(low);
        m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, bits, 0, 1));
        answer(whenAny);
        answer(whenNone);
    }
    bool install()
    {
        const sock_fprog program{static_cast<unsigned short>(m_code.size()), m_code.data()};
        return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
    }

private:
    std::vector<sock_filter> m_code;
};

} // namespace

bool filterSystemCalls()
{
    if (kArchitecture == 0)
        return true;
    constexpr unsigned kRefuse = SECCOMP_RET_ERRNO | EPERM;
    Program program;
    program.load(offsetof(seccomp_data, arch));
    program.demand(kArchitecture, SECCOMP_RET_KILL_PROCESS);
    program.load(offsetof(seccomp_data, nr));
    program.refuseBits(kX32Bit, kRefuse);
    for (const int call : kDenied)
        program.answerCall(call, kRefuse);
    // Its flags are where a filter cannot look; the C library then takes the older call.
    program.answerCall(SYS_clone3, SECCOMP_RET_ERRNO | ENOSYS);
    program.answerByBits(SYS_clone, 0, CLONE_THREAD, SECCOMP_RET_ALLOW, kRefuse);
    program.answerByBits(SYS_openat, 2, kWriting, kRefuse, SECCOMP_RET_ALLOW);
#ifdef SYS_open
    program.answerByBits(SYS_open, 1, kWriting, kRefuse, SECCOMP_RET_ALLOW);
#endif
    program.answer(SECCOMP_RET_ALLOW);
    return program.install();
}
