// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

#include <QSet>

/// A PNG file as a stream without its picture: the chunks behind the pixels come as if they stood
/// before them, and then an empty pixel chunk, so that libpng finds every text in one go and no
/// pixel is ever read.
class PngChunkFeed
{
public:
    explicit PngChunkFeed(ByteSource &source);

    /// The next count bytes; false when they are not there.
    bool read(char *to, qint64 count);
    /// The types of the chunks handed out so far.
    const QSet<QByteArray> &seen() const { return m_seen; }

private:
    bool openNextPiece();

    ByteSource &m_source;
    qint64 m_nextChunk;
    int m_chunks = 0;
    qint64 m_position = 0; ///< of the piece being handed out
    qint64 m_end;
    QByteArray m_tail; ///< what stands in for the pixels
    QSet<QByteArray> m_seen;
};
