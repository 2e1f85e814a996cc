// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

#include <optional>

/// One box ("atom") of an MP4 or QuickTime file: its type and where its contents stand.
struct Mp4Box
{
    quint32 type = 0;
    qint64 start = 0;
    qint64 end = 0;

    qint64 size() const { return end - start; }
};

constexpr quint32 boxType(const char (&name)[5])
{
    quint32 type = 0;
    for (int i = 0; i < 4; ++i)
        type = type << 8 | static_cast<unsigned char>(name[i]);
    return type;
}

/// Walks the boxes that follow one another in a stretch of the file. Sizes are the file's own
/// words: a box that claims to leave its parent is cut at the parent's end, and the walk always
/// ends.
class Mp4Boxes
{
public:
    Mp4Boxes(ByteSource &source, qint64 start, qint64 end);

    /// The next box; nothing at the end or at bytes that are no box.
    std::optional<Mp4Box> next();

private:
    ByteSource &m_source;
    qint64 m_at;
    qint64 m_end;
};

/// The first box of that type directly inside the stretch.
std::optional<Mp4Box> findBox(ByteSource &source, qint64 start, qint64 end, quint32 type);
