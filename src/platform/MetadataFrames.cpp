// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MetadataFrames.h"

#include "platform/MetadataProtocol.h"

#include <QtEndian>

std::optional<QByteArray> MetadataFrames::next()
{
    const qsizetype there = m_bytes.size() - m_start - MetadataProtocol::kHeaderBytes;
    if (there >= 0 && !m_broken) {
        const auto length = qsizetype{qFromLittleEndian<quint32>(m_bytes.constData() + m_start)};
        m_broken = length > m_maxContent;
        if (!m_broken && length <= there) {
            const QByteArray content =
                m_bytes.mid(m_start + MetadataProtocol::kHeaderBytes, length);
            m_start += MetadataProtocol::kHeaderBytes + length;
            return content;
        }
    }
    m_bytes.remove(0, m_start);
    m_start = 0;
    return {};
}
