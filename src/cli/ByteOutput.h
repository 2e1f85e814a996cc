// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <atomic>
#include <chrono>

/// A buffered stream of bytes to the user. A full buffer, or one that has waited for a twentieth of
/// a second when something is written, goes out, so that slow work shows line by line and fast work
/// costs few system calls. After the first failed write everything else is dropped. One thread.
class ByteOutput
{
public:
    ByteOutput() = default;
    ByteOutput(const ByteOutput &) = delete;
    ByteOutput &operator=(const ByteOutput &) = delete;
    virtual ~ByteOutput() = default;

    void write(QByteArrayView bytes);
    void flush();
    /// The errno of the first failed write; 0 while all is well.
    int error() const { return m_error; }

protected:
    /// Writes all of it; 0 or an errno.
    virtual int writeAll(QByteArrayView bytes) = 0;

private:
    QByteArray m_buffer;
    std::chrono::steady_clock::time_point m_lastFlush{};
    int m_error = 0;
};

/// Writes to a file descriptor, which is not owned. A reader who takes nothing (a pager that waits)
/// holds the writer up, but only as long as nobody wants to stop: half a second after that, writing
/// fails with ECANCELED.
class DescriptorOutput : public ByteOutput
{
public:
    /// The flag is the wish to stop, which a signal may set at any moment; not owned.
    DescriptorOutput(int descriptor, const std::atomic<bool> &interrupted);

protected:
    int writeAll(QByteArrayView bytes) override;

private:
    /// 0, or ECANCELED when there is no room and somebody wants to stop.
    int waitForRoom();

    int m_descriptor;
    bool m_mayBlock; ///< a pipe, a terminal or a socket; files never keep a writer waiting
    const std::atomic<bool> &m_interrupted;
};
