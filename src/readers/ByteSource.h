// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <optional>

/// The bytes of one file (or block) for parsers that look here and there: every offset and count
/// may come from a hostile file and is checked against the size. Not for two threads at a time.
class ByteSource
{
public:
    virtual ~ByteSource() = default;
    ByteSource(const ByteSource &) = delete;
    ByteSource &operator=(const ByteSource &) = delete;

    virtual qint64 size() const = 0;
    /// Copies up to count bytes from offset at; gives how many there were.
    virtual qint64 read(qint64 at, char *to, qint64 count) = 0;
    /// All bytes in memory, valid as long as the source; null when that is not possible.
    virtual const char *map() = 0;

    bool contains(qint64 at, qint64 count) const;
    /// Exactly these bytes; empty when the source does not hold them all.
    QByteArray bytes(qint64 at, qint64 count);
    /// An unsigned number of up to eight bytes, the most significant byte first or last.
    std::optional<quint64> big(qint64 at, int count);
    std::optional<quint64> little(qint64 at, int count);
    bool startsWith(qint64 at, const char *text);

protected:
    ByteSource() = default;
};
