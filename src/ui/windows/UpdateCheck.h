// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/windows/UpdateFeed.h"

#include <QNetworkAccessManager>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <functional>

class QNetworkReply;

/// Asks an update feed for the newest version: over https alone, a small answer in a short time,
/// nothing about the user or the machine sent along. Destroyed, or started again, it gives no
/// answer to the earlier question.
class UpdateCheck : public QObject
{
    Q_OBJECT

public:
    struct Limits
    {
        qint64 bytes = 65536;
        std::chrono::milliseconds time{15'000};
        bool allowsOwnMachine = false; ///< plain http from 127.0.0.1, for tests
    };
    enum class Outcome { Newer, UpToDate, Failed };
    struct Answer
    {
        Outcome outcome = Outcome::Failed;
        UpdateFeed feed;
        QString problem; ///< why it failed
    };
    using Finished = std::function<void(const Answer &answer)>;

    explicit UpdateCheck(QObject *parent = nullptr);
    UpdateCheck(const Limits &limits, QObject *parent);

    /// Whether a feed at this address may be asked at all.
    bool accepts(const QUrl &feed) const;
    /// finished is called once, later.
    void start(const QUrl &feed, Finished finished);
    bool isUnderWay() const { return static_cast<bool>(m_finished); }
    /// No answer comes any more.
    void cancel();

private:
    void receive();
    void replyFinished();
    void fail(const QString &problem);
    void finish(const Answer &answer);

    const Limits m_limits;
    QNetworkAccessManager m_network;
    QPointer<QNetworkReply> m_reply;
    QTimer m_patience;
    QByteArray m_received;
    Finished m_finished;
};
