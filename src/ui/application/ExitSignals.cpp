// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/application/ExitSignals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};
volatile std::sig_atomic_t wakeUp = -1; ///< the descriptor that the handler writes to

extern "C" void noteSignal(int)
{
    const int before = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakeUp, &one, sizeof one);
    errno = before;
}

void setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : kSignals) {
        struct sigaction current = {};
        // What a parent told us to ignore (nohup) stays ignored.
        if (sigaction(signal, nullptr, &current) == 0 && current.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

} // namespace

ExitSignals::ExitSignals(QObject *parent)
    : QObject(parent)
{
    const int descriptor = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0)
        return;
    wakeUp = descriptor;
    m_notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this, descriptor] {
        std::uint64_t count = 0;
        if (::read(descriptor, &count, sizeof count) > 0)
            Q_EMIT requested();
    });
    setHandler(noteSignal);
}

ExitSignals::~ExitSignals()
{
    if (!m_notifier)
        return;
    setHandler(SIG_DFL);
    m_notifier.reset();
    ::close(wakeUp);
    wakeUp = -1;
}
