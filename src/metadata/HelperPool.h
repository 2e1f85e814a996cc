// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MetadataProtocol.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class HelperProcess;

/// Keeps a few helper programs busy, on a thread of its own that waits for all of them at once.
/// They are started when there are requests, and ended when there have been none for a while. One
/// that dies, stalls or talks nonsense is replaced; only the request that it was at is lost.
class HelperPool
{
public:
    enum class Outcome {
        Answered,
        Crashed,     ///< the helper died of it, or what it said made no sense
        TimedOut,    ///< the helper was killed because it took too long
        Unavailable, ///< there is no helper that works
    };

    /// Who has requests. Both operations are called on the pool's thread, never by two at once, and
    /// may not wait.
    class Client
    {
    public:
        /// The next request; nothing when there is none for now. Asked for when a helper has room.
        virtual std::optional<MetadataRequest> nextRequest() = 0;
        /// Once for each request, not in their order.
        virtual void finished(const MetadataRequest &request, Outcome outcome,
                              MetadataReply reply) = 0;

    protected:
        ~Client() = default;
    };

    struct Settings
    {
        QByteArray program;
        int helpers = 0; ///< at most; 0: as this machine has processors, up to 4
        int niceness = 0;
        std::chrono::milliseconds timePerFile{2000};
    };

    /// The client is not owned. Nothing is asked of it before the first wake().
    HelperPool(Settings settings, Client &client);
    ~HelperPool();
    HelperPool(const HelperPool &) = delete;
    HelperPool &operator=(const HelperPool &) = delete;

    /// The client has requests again. Any thread.
    void wake();
    bool isStopping() const { return m_stopping; }
    /// Why no helper can be started; empty while all is well. Any thread.
    QString problem() const;

private:
    using Time = std::chrono::steady_clock::time_point;
    /// A helper, and what it was asked and has not answered yet, the oldest first.
    struct Slot
    {
        std::shared_ptr<HelperProcess> process;
        std::deque<MetadataRequest> asked;
        bool greeted = false;
        Time deadline; ///< for the greeting, then for each answer
    };

    void work();
    void feed();
    std::optional<MetadataRequest> take();
    Slot *slotWithRoom();
    Slot *startHelper();
    void ask(Slot &slot, MetadataRequest request);
    int millisecondsToWait() const;
    void wait();
    void drainWakes() const;
    /// False when the helper has to go.
    bool listen(Slot &slot);
    bool hear(Slot &slot, const QByteArray &content);
    void drop(Slot &slot, Outcome outcome);
    void startFailed(const QString &reason);

    const Settings m_settings;
    std::size_t m_most; ///< helpers at a time
    Client &m_client;
    std::vector<Slot> m_slots;
    std::deque<MetadataRequest> m_again; ///< were waiting in a helper that had to go
    int m_failedStarts = 0;              ///< since a helper last greeted
    bool m_unavailable = false;
    mutable std::mutex m_mutex;
    QString m_problem; ///< guarded
    std::atomic<bool> m_stopping = false;
    int m_wakes; ///< an event descriptor
    std::thread m_thread;
};
