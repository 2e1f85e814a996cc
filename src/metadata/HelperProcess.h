// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MetadataFrames.h"
#include "platform/TResult.h"

#include <QByteArray>

#include <memory>
#include <sys/types.h>

/// One running helper program and the socket to it. Used by one thread, which must be the one that
/// started it: the helper dies with that thread.
class HelperProcess
{
public:
    /// A failure says why the program cannot be run.
    static TResult<std::shared_ptr<HelperProcess>> start(const QByteArray &program, int niceness);
    /// Ends the program, whatever it is doing.
    ~HelperProcess();
    HelperProcess(const HelperProcess &) = delete;
    HelperProcess &operator=(const HelperProcess &) = delete;

    /// To be polled for input.
    int socket() const { return m_socket; }
    /// Never waits; false when the helper does not take the bytes, which only a broken one does.
    bool send(const QByteArray &frame) const;
    /// Takes in what has come without waiting; false when the helper is gone.
    bool receive();
    MetadataFrames &frames() { return m_frames; }

private:
    HelperProcess(pid_t process, int socket);

    pid_t m_process;
    int m_socket;
    MetadataFrames m_frames;
};

/// Path of the helper program that came with this one: beside it, in a build tree, or where both
/// were installed; $TAVRIN_METADATA_HELPER goes before all.
QString standardMetadataHelper();
