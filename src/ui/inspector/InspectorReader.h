// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/HelperPool.h"
#include "platform/WorkerQueue.h"
#include "ui/images/ThumbnailCache.h"
#include "ui/inspector/FileReading.h"

#include <QObject>

#include <atomic>
#include <mutex>
#include <optional>

/// Finds out about one file at a time, away from the main thread: its kind and the desktop's
/// picture of it from the disk, the rest from a helper process, which alone opens the file. Only
/// the newest question counts: those that were not begun are forgotten, so that a held arrow key
/// leaves nothing behind. Main thread only.
class InspectorReader : public QObject, private HelperPool::Client
{
    Q_OBJECT

public:
    /// helper is the path of the helper program.
    InspectorReader(const QString &helper, ThumbnailCache cache, QObject *parent = nullptr);
    ~InspectorReader() override;

    void ask(const FileQuestion &question);
    /// Nobody wants an answer any more.
    void forget();

Q_SIGNALS:
    /// At first what is known at once, and the whole of it when the helper has answered.
    void answered(const FileReading &reading);

private:
    /// What the helper has to be asked for a question.
    struct Request
    {
        quint64 number = 0; ///< of the question
        FileQuestion question;
        FileReading reading; ///< what is known already
        MetadataRequest::Parts parts;
        qint64 modified = 0; ///< of the file, in seconds since 1970
    };

    void lookUp();
    std::optional<Request> takeQuestion();
    void look(Request &request) const;
    void deliver(quint64 number, FileReading reading);
    bool isNewest(quint64 number) const { return number == m_newest; }
    void complete(Request &request, HelperPool::Outcome outcome, MetadataReply reply);
    QString problem(HelperPool::Outcome outcome) const;
    void keep(const Request &request);

    std::optional<MetadataRequest> nextRequest() override;
    void finished(const MetadataRequest &request, HelperPool::Outcome outcome,
                  MetadataReply reply) override;

    const ThumbnailCache m_cache;
    std::atomic<quint64> m_newest = 0; ///< number of the question that counts
    std::mutex m_mutex;
    std::optional<Request> m_question; ///< guarded: waits for the worker
    std::optional<Request> m_waiting;  ///< guarded: waits for the helper
    std::optional<Request> m_inHand;   ///< the helper is at it; the pool's thread only
    WorkerQueue m_worker;
    HelperPool m_pool; ///< last, so that its thread ends before what it uses
};
