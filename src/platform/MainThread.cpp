// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MainThread.h"

#include <condition_variable>
#include <memory>
#include <utility>

namespace {

/// Decides between a caller that waits and the main thread: work that was not begun can be given
/// up, work that was begun is waited for.
class Ticket
{
public:
    bool begin() { return change(State::Waiting, State::Begun); }
    void finish() { change(State::Begun, State::Done); }
    void giveUp() { change(State::Waiting, State::GivenUp); }

    bool wait(std::stop_token stop)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, std::move(stop), [this] { return m_state != State::Waiting; });
        if (m_state == State::Waiting)
            m_state = State::GivenUp;
        m_changed.wait(lock, [this] { return m_state != State::Begun; });
        return m_state == State::Done;
    }

private:
    enum class State { Waiting, Begun, Done, GivenUp };

    bool change(State from, State to)
    {
        const std::scoped_lock lock(m_mutex);
        if (m_state != from)
            return false;
        m_state = to;
        m_changed.notify_all();
        return true;
    }

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    State m_state = State::Waiting;
};

/// Gives the ticket up when the posted work is dropped without having run.
class TicketHolder
{
public:
    explicit TicketHolder(std::shared_ptr<Ticket> ticket)
        : m_ticket(std::move(ticket))
    {
    }
    TicketHolder(const TicketHolder &) = delete;
    TicketHolder &operator=(const TicketHolder &) = delete;
    ~TicketHolder() { m_ticket->giveUp(); }

    Ticket &ticket() const { return *m_ticket; }

private:
    std::shared_ptr<Ticket> m_ticket;
};

} // namespace

MainThread::MainThread() = default;

MainThread::~MainThread()
{
    dropPosted();
}

void MainThread::post(Work work)
{
    bool first = false;
    {
        const std::scoped_lock lock(m_mutex);
        first = m_posted.empty();
        m_posted.push_back(std::move(work));
    }
    if (first)
        wake();
}

bool MainThread::wait(std::stop_token stop, const Work &work)
{
    if (stop.stop_requested())
        return false;
    if (isMainThread()) {
        work();
        return true;
    }
    const auto ticket = std::make_shared<Ticket>();
    post([holder = std::make_shared<TicketHolder>(ticket), &work] {
        if (!holder->ticket().begin())
            return;
        work();
        holder->ticket().finish();
    });
    return ticket->wait(std::move(stop));
}

bool MainThread::runPosted(std::chrono::milliseconds slice)
{
    const auto deadline = std::chrono::steady_clock::now() + slice;
    size_t count = 0;
    {
        const std::scoped_lock lock(m_mutex);
        count = m_posted.size();
    }
    for (; count > 0; --count) {
        if (const Work work = takeFirst())
            work();
        if (std::chrono::steady_clock::now() >= deadline)
            break;
    }
    const std::scoped_lock lock(m_mutex);
    return !m_posted.empty();
}

MainThread::Work MainThread::takeFirst()
{
    const std::scoped_lock lock(m_mutex);
    if (m_posted.empty())
        return {};
    Work work = std::move(m_posted.front());
    m_posted.pop_front();
    return work;
}

void MainThread::dropPosted()
{
    std::deque<Work> dropped;
    const std::scoped_lock lock(m_mutex);
    dropped.swap(m_posted);
}
