// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <atomic>
#include <optional>

/// The person at the terminal, from whom answers come even when standard input is a list of files.
class Terminal
{
public:
    Terminal() = default;
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;
    virtual ~Terminal() = default;

    /// False when nobody is there to be asked.
    virtual bool isThere() = 0;
    /// The next line without its line break; nothing at the end, or when a signal came in.
    virtual std::optional<QByteArray> readLine() = 0;
};

/// The terminal that controls this process.
class ControllingTerminal : public Terminal
{
public:
    /// Waiting for a line ends when the flag is set, which a signal may do at any moment. Not
    /// owned.
    explicit ControllingTerminal(const std::atomic<bool> &interrupted)
        : m_interrupted(interrupted)
    {
    }
    ~ControllingTerminal() override;
    bool isThere() override;
    std::optional<QByteArray> readLine() override;

private:
    const std::atomic<bool> &m_interrupted;
    int m_descriptor = -1;
};
