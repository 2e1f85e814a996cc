// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rollback/JournalFormat.h"

#include <QByteArray>
#include <QIODevice>

/// Reads the frames of a journal one by one, never more than one at a time, up to the first that is
/// not whole. The device is not owned.
class FrameReader
{
public:
    explicit FrameReader(QIODevice &device);

    /// False when the file does not start as a journal.
    bool readPreamble();
    /// The next payload, valid until the next call; false at the end.
    bool next(QByteArrayView &payload);
    /// Where the whole frames end, and the number of the frame that would come there.
    qint64 end() const { return m_end; }
    quint32 nextSequence() const { return m_sequence; }

private:
    QIODevice &m_device;
    QByteArray m_payload;
    qint64 m_end = 0;
    quint32 m_sequence = 0;
};

/// Takes fields off a payload that may hold anything. After the first field that does not fit,
/// ok() is false and every further field reads as 0 or empty.
class FieldReader
{
public:
    explicit FieldReader(QByteArrayView payload)
        : m_rest(payload)
    {
    }

    bool ok() const { return m_ok; }
    bool atEnd() const { return !m_ok || m_rest.isEmpty(); }
    quint8 byte();
    quint64 fixed();
    quint64 varint();
    qint64 signedValue();
    QByteArrayView bytes();

private:
    QByteArrayView take(quint64 size);

    QByteArrayView m_rest;
    bool m_ok = true;
};
