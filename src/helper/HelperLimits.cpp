// SPDX-License-Identifier: GPL-3.0-or-later
#include "helper/HelperLimits.h"

#include "helper/SystemCallFilter.h"

#include <csignal>
#include <initializer_list>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

void limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit limits{most, most};
    ::setrlimit(resource, &limits);
}

} // namespace

void limitHelper(int lastDescriptor, int niceness)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    ::close_range(static_cast<unsigned>(lastDescriptor) + 1, ~0U, 0);
    for (const int signal : {SIGINT, SIGQUIT, SIGHUP, SIGPIPE})
        std::signal(signal, SIG_IGN);
    [[maybe_unused]] const int nice = ::nice(niceness);
    limit(RLIMIT_CORE, 0);
#ifndef TAVRIN_SANITIZED
    constexpr rlim_t kMemory = rlim_t{1024} * 1024 * 1024;
    constexpr rlim_t kDescriptors = 64;
    // Sanitizers reserve terabytes of addresses, and write their reports to files.
    limit(RLIMIT_AS, kMemory);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_NOFILE, kDescriptors);
    // Leak checks look at the process from another one. Without the filter the limits still hold.
    [[maybe_unused]] const bool isFiltered = filterSystemCalls();
#endif
}
