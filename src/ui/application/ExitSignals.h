// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/// Turns the signals that end a session (SIGINT, SIGTERM, SIGHUP) into a wish in the event loop, so
/// that a rename finishes the file in hand. One in a program.
class ExitSignals : public QObject
{
    Q_OBJECT

public:
    explicit ExitSignals(QObject *parent = nullptr);
    ~ExitSignals() override;

Q_SIGNALS:
    void requested();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
