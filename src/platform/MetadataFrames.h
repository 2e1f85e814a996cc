// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <optional>

/// Takes the bytes that come from the other side of the metadata protocol apart into frames.
class MetadataFrames
{
public:
    /// Longer frames are refused when their length comes in, before there is memory for them.
    explicit MetadataFrames(qsizetype maxContent)
        : m_maxContent(maxContent)
    {
    }

    void append(QByteArrayView bytes) { m_bytes.append(bytes); }
    /// The content of the next frame that is there as a whole.
    std::optional<QByteArray> next();
    /// A frame is too long; no further ones will come.
    bool isBroken() const { return m_broken; }

private:
    qsizetype m_maxContent;
    QByteArray m_bytes;
    qsizetype m_start = 0; ///< of what next() has not returned yet
    bool m_broken = false;
};
