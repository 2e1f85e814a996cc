// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rollback/JournalFormat.h"

#include <vector>

/// Gathers records into frames and writes the frames to a file, one write(2) each. The first
/// failure stays: nothing is written after it, since a reader would stop at the gap. The descriptor
/// is not owned.
class FrameWriter
{
public:
    explicit FrameWriter(int file, quint32 nextSequence = 0);

    /// Writes the preamble; only at the start of a file.
    void writePreamble();
    /// Starts a record whose fields take at most that many bytes.
    void begin(JournalFormat::Record kind, qsizetype atMost);
    void putByte(quint8 value) { *m_at++ = static_cast<char>(value); }
    void putFixed(quint64 value);
    void putVarint(quint64 value);
    /// Small for values near zero on either side.
    void putSigned(qint64 value);
    /// Length and bytes.
    void putBytes(QByteArrayView bytes);

    /// Writes what has been gathered. False once anything has failed.
    bool flush();
    /// 0, or the errno of the first failure.
    int error() const { return m_error; }
    /// Bytes handed to the file so far, by this writer.
    qint64 written() const { return m_written; }

private:
    void write(const char *at, qsizetype size);
    char *payload() { return m_buffer.data() + JournalFormat::kFrameHeaderSize; }

    std::vector<char> m_buffer;
    char *m_at;
    int m_file;
    int m_error = 0;
    quint32 m_sequence;
    qint64 m_written = 0;
};
