// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MetadataProtocol.h"

/// Answers one request after another over a socket, which is not owned.
class RequestServer
{
public:
    explicit RequestServer(int socket)
        : m_socket(socket)
    {
    }

    /// Serves until the other side closes the socket (true), or breaks the protocol (false).
    bool serve();

private:
    bool answerAll(class MetadataFrames &frames);
    bool send(const QByteArray &bytes) const;

    int m_socket;
};

/// What the readers find in the file of a request. Only regular files are opened, so that a pipe or
/// a device of that name is not waited for.
MetadataReply answer(const MetadataRequest &request);
