// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/BinaryPlistFormat.h"

#include <QByteArrayView>
#include <QIODevice>
#include <QStringView>

#include <deque>
#include <optional>
#include <span>
#include <vector>

/// Writes a binary property list object by object, children before the collections that hold them.
/// Every write gives the object's reference. In memory stays one or two bytes for each object, its
/// length, from which the offset table is made at the end. The device is not owned.
class BinaryPlistWriter
{
public:
    using Ref = quint32;
    struct Entry
    {
        Ref key;
        Ref value;
    };
    /// What an object is to the layer above, so that objects can be collected again at the end
    /// without a list of them.
    enum class Mark : quint8 { None, ArchiveObject, RootElement };

    explicit BinaryPlistWriter(QIODevice &device);
    BinaryPlistWriter(const BinaryPlistWriter &) = delete;
    BinaryPlistWriter &operator=(const BinaryPlistWriter &) = delete;

    Ref writeBool(bool value);
    Ref writeInteger(qint64 value);
    Ref writeUnsigned(quint64 value);
    Ref writeReal(double value);
    Ref writeData(QByteArrayView value);
    /// ASCII where it can be, else big-endian UTF-16, unit by unit.
    Ref writeString(QStringView value);
    Ref writeAscii(QLatin1StringView value);
    Ref writeUid(quint32 value);
    Ref writeArray(std::span<const Ref> elements);
    /// last is one entry more, for callers that would have to copy the others to add it.
    Ref writeDictionary(std::span<const Entry> entries, std::optional<Entry> last = {});
    /// An array of all objects with the mark, in the order in which they were written.
    Ref writeArrayOfMarked(Mark mark);
    /// Marks the object written last.
    void markLast(Mark mark) { m_lastMark = mark; }

    /// Writes offset table and trailer. False when any write failed or there were more objects than
    /// references can tell apart.
    [[nodiscard]] bool finish(Ref top);

private:
    class Numbers;

    Ref begin();
    void closeLast();
    /// Place for at most a buffer's worth of bytes, which count as written.
    char *room(qsizetype size);
    void putByte(quint8 byte);
    void putRef(Ref ref);
    void putBytes(const void *bytes, qsizetype size);
    void putNumber(quint64 value, int size);
    void putCount(BinaryPlistFormat::Marker marker, quint64 count);
    void flush();
    /// Calls with the offset and mark of each object, in order.
    template <class Call>
    void forEachObject(Call call) const;

    QIODevice &m_device;
    std::vector<char> m_buffer;
    qsizetype m_used = 0;
    quint64 m_position = 0;
    std::deque<quint8> m_lengths; ///< length and mark of each object, seven bits a byte
    quint64 m_count = 0;
    quint64 m_marked[3] = {0, 0, 0};
    quint64 m_lastStart = 0;
    Mark m_lastMark = Mark::None;
    bool m_open = false; ///< the last object's length is not in the table yet
    bool m_failed = false;
};
