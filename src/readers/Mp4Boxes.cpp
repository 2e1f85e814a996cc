// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/Mp4Boxes.h"

#include <algorithm>

namespace {

constexpr qint64 kHeader = 8;
constexpr qint64 kLongHeader = 16;

} // namespace

Mp4Boxes::Mp4Boxes(ByteSource &source, qint64 start, qint64 end)
    : m_source(source)
    , m_at(start)
    , m_end(std::min(end, source.size()))
{
}

std::optional<Mp4Box> Mp4Boxes::next()
{
    const std::optional<quint64> head =
        m_end - m_at >= kHeader ? m_source.big(m_at, 8) : std::nullopt;
    if (!head)
        return std::nullopt;
    quint64 size = *head >> 32;
    qint64 header = kHeader;
    if (size == 1) {
        size = m_source.big(m_at + kHeader, 8).value_or(0);
        header = kLongHeader;
    } else if (size == 0) { // the last box reaches to the end
        size = static_cast<quint64>(m_end - m_at);
    }
    if (size < static_cast<quint64>(header))
        return std::nullopt;
    const qint64 length = static_cast<qint64>(std::min(size, static_cast<quint64>(m_end - m_at)));
    const Mp4Box box = {static_cast<quint32>(*head), std::min(m_at + header, m_end), m_at + length};
    m_at = box.end;
    return box;
}

std::optional<Mp4Box> findBox(ByteSource &source, qint64 start, qint64 end, quint32 type)
{
    Mp4Boxes boxes(source, start, end);
    std::optional<Mp4Box> box = boxes.next();
    while (box && box->type != type)
        box = boxes.next();
    return box;
}
