// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// Puts a TIFF structure together, or a part of one, with numbers in one byte order.
class TiffWriter
{
public:
    explicit TiffWriter(bool isBig)
        : m_isBig(isBig)
    {
    }

    /// What such a structure begins with; first is where its first folder stands.
    void putHeader(quint32 first)
    {
        append(m_isBig ? "MM" : "II");
        put(42, 2);
        put(first, 4);
    }
    void put(quint64 number, int size)
    {
        for (int i = 0; i < size; ++i)
            m_bytes.append(static_cast<char>(number >> 8 * (m_isBig ? size - 1 - i : i)));
    }
    void append(const QByteArray &bytes) { m_bytes.append(bytes); }
    void fillTo(qsizetype size) { m_bytes.append(size - m_bytes.size(), '\0'); }
    /// Writes over what stands there.
    void replace(qsizetype at, const QByteArray &bytes)
    {
        m_bytes.replace(at, bytes.size(), bytes);
    }
    qsizetype size() const { return m_bytes.size(); }
    const QByteArray &bytes() const { return m_bytes; }

private:
    bool m_isBig;
    QByteArray m_bytes;
};
