// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/HelperPool.h"

#include "commonprocs/ByteNames.h"
#include "metadata/HelperProcess.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using std::chrono::steady_clock;

namespace {

/// Requests that a helper has at a time, so that it never waits for the next one. Few enough for
/// the socket to hold them all.
constexpr std::size_t kAhead = 4;
constexpr std::size_t kMostHelpers = 4;
constexpr int kMaxFailedStarts = 3;
/// Loading a program from a busy disk may take long.
constexpr std::chrono::seconds kTimeToStart{20};
constexpr std::chrono::seconds kTimeToIdle{10};

std::size_t mostHelpers(int wanted)
{
    if (wanted > 0)
        return static_cast<std::size_t>(wanted);
    return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostHelpers);
}

} // namespace

HelperPool::HelperPool(Settings settings, Client &client)
    : m_settings(std::move(settings))
    , m_most(mostHelpers(m_settings.helpers))
    , m_client(client)
    , m_wakes(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_thread([this] { work(); })
{
}

HelperPool::~HelperPool()
{
    m_stopping = true;
    wake();
    m_thread.join();
    ::close(m_wakes);
}

void HelperPool::wake()
{
    [[maybe_unused]] const int full = ::eventfd_write(m_wakes, 1);
}

QString HelperPool::problem() const
{
    const std::lock_guard lock(m_mutex);
    return m_problem;
}

void HelperPool::work()
{
    while (!m_stopping) {
        wait();
        for (std::size_t i = 0; i < m_slots.size();) {
            if (!listen(m_slots[i]))
                m_slots.erase(m_slots.begin() + static_cast<std::ptrdiff_t>(i));
            else
                ++i;
        }
        feed();
    }
    m_slots.clear();
}

void HelperPool::feed()
{
    while (!m_stopping) {
        Slot *slot = slotWithRoom();
        if (slot == nullptr && m_slots.size() >= m_most)
            return;
        std::optional<MetadataRequest> request = take();
        if (!request)
            return;
        if (slot == nullptr && !m_unavailable)
            slot = startHelper();
        if (slot != nullptr)
            ask(*slot, std::move(*request));
        else if (m_unavailable)
            m_client.finished(*request, Outcome::Unavailable, {});
        else
            m_again.push_front(std::move(*request));
    }
}

std::optional<MetadataRequest> HelperPool::take()
{
    if (m_again.empty())
        return m_client.nextRequest();
    MetadataRequest request = std::move(m_again.front());
    m_again.pop_front();
    return request;
}

HelperPool::Slot *HelperPool::slotWithRoom()
{
    const auto least =
        std::min_element(m_slots.begin(), m_slots.end(), [](const Slot &a, const Slot &b) {
            return a.asked.size() < b.asked.size();
        });
    return least != m_slots.end() && least->asked.size() < kAhead ? &*least : nullptr;
}

HelperPool::Slot *HelperPool::startHelper()
{
    auto process = HelperProcess::start(m_settings.program, m_settings.niceness);
    if (!process) {
        startFailed(process.message());
        return nullptr;
    }
    return &m_slots.emplace_back(
        Slot{std::move(process).value(), {}, false, steady_clock::now() + kTimeToStart});
}

void HelperPool::startFailed(const QString &reason)
{
    const auto working = static_cast<std::size_t>(std::count_if(
        m_slots.begin(), m_slots.end(), [](const Slot &slot) { return slot.greeted; }));
    if (working > 0) {
        m_most = working; // there is no room for more
        return;
    }
    if (++m_failedStarts < kMaxFailedStarts)
        return;
    m_unavailable = true;
    const std::lock_guard lock(m_mutex);
    m_problem = u"no metadata can be read: the program %1 cannot be used: %2"_s.arg(
        ByteNames::fromBytes(m_settings.program), reason);
}

void HelperPool::ask(Slot &slot, MetadataRequest request)
{
    // When the helper does not take it, it is gone, which the next look at its socket shows.
    slot.process->send(MetadataProtocol::frame(request));
    if (slot.asked.empty() && slot.greeted)
        slot.deadline = steady_clock::now() + m_settings.timePerFile;
    slot.asked.push_back(std::move(request));
}

int HelperPool::millisecondsToWait() const
{
    if (m_slots.empty())
        return -1;
    Time first = Time::max();
    bool busy = false;
    for (const Slot &slot : m_slots) {
        if (slot.asked.empty())
            continue;
        busy = true;
        first = std::min(first, slot.deadline);
    }
    if (!busy)
        return static_cast<int>(std::chrono::milliseconds(kTimeToIdle).count());
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(first - steady_clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

void HelperPool::wait()
{
    std::vector<pollfd> sources{{m_wakes, POLLIN, 0}};
    for (const Slot &slot : m_slots)
        sources.push_back({slot.process->socket(), POLLIN, 0});
    const int milliseconds = millisecondsToWait();
    const int ready = ::poll(sources.data(), sources.size(), milliseconds);
    drainWakes();
    const auto isIdle = [](const Slot &slot) { return slot.asked.empty(); };
    if (ready == 0 && std::all_of(m_slots.begin(), m_slots.end(), isIdle))
        m_slots.clear();
}

void HelperPool::drainWakes() const
{
    eventfd_t count = 0;
    [[maybe_unused]] const int none = ::eventfd_read(m_wakes, &count);
}

bool HelperPool::listen(Slot &slot)
{
    const bool alive = slot.process->receive();
    while (const std::optional<QByteArray> content = slot.process->frames().next()) {
        if (hear(slot, *content))
            continue;
        drop(slot, Outcome::Crashed);
        return false;
    }
    if (!alive || slot.process->frames().isBroken()) {
        drop(slot, Outcome::Crashed);
        return false;
    }
    const bool late = !slot.asked.empty() && steady_clock::now() >= slot.deadline;
    if (late)
        drop(slot, Outcome::TimedOut);
    return !late;
}

bool HelperPool::hear(Slot &slot, const QByteArray &content)
{
    if (!slot.greeted) {
        slot.greeted = MetadataProtocol::isGreeting(content);
        slot.deadline = steady_clock::now() + m_settings.timePerFile;
        if (slot.greeted)
            m_failedStarts = 0;
        return slot.greeted;
    }
    std::optional<MetadataReply> reply = MetadataProtocol::readReply(content);
    if (!reply || slot.asked.empty() || reply->id != slot.asked.front().id)
        return false;
    const MetadataRequest request = std::move(slot.asked.front());
    slot.asked.pop_front();
    slot.deadline = steady_clock::now() + m_settings.timePerFile;
    m_client.finished(request, Outcome::Answered, std::move(*reply));
    return true;
}

/// The first request is what the helper was at, unless it never got so far as to greet.
void HelperPool::drop(Slot &slot, Outcome outcome)
{
    if (!slot.greeted) {
        startFailed(u"it does not run, or belongs to another version of this program"_s);
    } else if (!slot.asked.empty()) {
        m_client.finished(slot.asked.front(), outcome, {});
        slot.asked.pop_front();
    }
    m_again.insert(m_again.begin(), std::make_move_iterator(slot.asked.begin()),
                   std::make_move_iterator(slot.asked.end()));
    slot.asked.clear();
    slot.process.reset();
}
