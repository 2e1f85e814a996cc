// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <chrono>
#include <memory>

class QLocalServer;
class QLocalSocket;

/// Sees to it that one program runs for a user, display and data folder, and that later starts hand
/// their paths to it. Who holds the lock is the first, whatever sockets lie about: so nothing stale
/// is in the way, and of two starts in the same instant exactly one is first. Only programs of this
/// user are listened to.
class SingleStart : public QObject
{
    Q_OBJECT

public:
    enum class Outcome {
        First,
        HandedOver, ///< the first one has the paths
        Alone       ///< there can be no first one, or it does not answer
    };
    static constexpr std::chrono::milliseconds kPatience{5'000};

    /// Lock and socket lie in the folder, which is this user's alone.
    SingleStart(const QString &folder, const QString &display, QObject *parent = nullptr);
    ~SingleStart() override;

    /// Needs no event loop. The paths are absolute.
    Outcome start(const QStringList &paths, std::chrono::milliseconds patience = kPatience);
    /// The first one calls this once it can take paths.
    void listen();
    /// The next start is the first one again.
    void retire();

    /// The folder for sockets of this user; empty when there is none that is safe.
    static QString privateFolder();
    /// What stands for this user's display and data.
    static QString display();

Q_SIGNALS:
    /// Of a later start; none means that it had none.
    void pathsReceived(const QStringList &paths);

private:
    class Client;

    bool lock();
    bool handOver(const QStringList &paths) const;
    void accept();
    void closeLock();

    QByteArray m_lockPath;
    QString m_socketPath;
    int m_lock = -1;
    std::unique_ptr<QLocalServer> m_server;
};
