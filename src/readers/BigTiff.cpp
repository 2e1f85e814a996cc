// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"
#include "readers/TiffWriter.h"

#include <algorithm>
#include <vector>

namespace {

constexpr quint64 kMostEntries = 1000;
constexpr quint64 kLargestValue = quint64{64} * 1024;
constexpr quint64 kLargestBlock = quint64{16} * 1024 * 1024;
constexpr qsizetype kMostCopied = qsizetype{8} * 1024 * 1024;
constexpr qint64 kEntrySize = 20;
constexpr quint64 kWideNumber = 16; ///< the first of three types of eight bytes
constexpr quint64 kLong = 4;
/// Bytes of one number, by type.
constexpr quint64 kSizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};

enum Tag : quint64 { Xmp = 700, Profile = 34675, ExifFolder = 0x8769, GpsFolder = 0x8825 };

struct Entry
{
    quint64 tag = 0;
    quint64 type = 0;
    quint64 count = 0;
    QByteArray value;
};

/// Writes the folders of the first picture anew, as a TIFF structure of the usual kind, whose
/// places have four bytes instead of eight.
class Copy
{
public:
    Copy(ByteSource &source, ImageFacts &facts)
        : m_source(source)
        , m_facts(facts)
        , m_isBig(source.startsWith(0, "MM"))
        , m_copy(m_isBig)
    {
        m_copy.putHeader(8);
    }

    QByteArray take()
    {
        copyFolder(numberAt(8, 8), true);
        return m_copy.bytes();
    }

private:
    /// Where the folder stands in the copy.
    quint64 copyFolder(quint64 from, bool isFirst)
    {
        const std::vector<Entry> entries = entriesOf(from, isFirst);
        const qsizetype start = m_copy.size();
        m_copy.fillTo(start + static_cast<qsizetype>(2 + 12 * entries.size() + 4));
        TiffWriter table(m_isBig);
        table.put(entries.size(), 2);
        for (const Entry &entry : entries) {
            const bool isFolder = entry.tag == ExifFolder || entry.tag == GpsFolder;
            table.put(entry.tag, 2);
            table.put(isFolder ? kLong : entry.type, 2);
            table.put(entry.count, 4);
            if (isFolder)
                table.put(copyFolder(wideNumber(entry.value), false), 4);
            else if (entry.value.size() <= 4)
                table.append(entry.value.leftJustified(4, '\0'));
            else
                table.put(append(entry.value), 4);
        }
        m_copy.replace(start, table.bytes());
        return static_cast<quint64>(start);
    }

    quint64 append(const QByteArray &value)
    {
        const auto place = static_cast<quint64>(m_copy.size());
        m_copy.append(value);
        m_copy.fillTo((m_copy.size() + 1) & ~qsizetype{1});
        return place;
    }

    std::vector<Entry> entriesOf(quint64 folder, bool isFirst)
    {
        std::vector<Entry> entries;
        const quint64 count = std::min(numberAt(folder, 8), kMostEntries);
        for (quint64 i = 0; i < count && m_left > 0; ++i) {
            Entry entry = entryAt(folder + 8 + i * kEntrySize);
            const bool isFolder = entry.tag == ExifFolder || entry.tag == GpsFolder;
            if (entry.value.isEmpty() || (isFolder && (!isFirst || entry.value.size() < 4)))
                continue;
            m_left -= entry.value.size();
            entries.push_back(std::move(entry));
        }
        return entries;
    }

    /// Without a value when it is one of the blocks, which are kept apart, or cannot be had.
    Entry entryAt(quint64 at)
    {
        Entry entry{numberAt(at, 2), numberAt(at + 2, 2), numberAt(at + 4, 8), {}};
        const quint64 unit = entry.type < std::size(kSizes) ? kSizes[entry.type] : 0;
        QByteArray *const block = blockFor(entry.tag);
        const quint64 largest = block != nullptr ? kLargestBlock : kLargestValue;
        if (unit == 0 || entry.count == 0 || entry.count > largest / unit)
            return entry;
        const quint64 size = entry.count * unit;
        const quint64 place = size <= 8 ? at + 12 : numberAt(at + 12, 8);
        if (block != nullptr) {
            if (block->isEmpty())
                *block = bytesAt(place, size);
            return entry;
        }
        entry.value = bytesAt(place, size);
        if (entry.type >= kWideNumber) {
            entry.value = narrowed(entry.value);
            entry.type = kLong;
        }
        return entry;
    }

    QByteArray *blockFor(quint64 tag) const
    {
        return tag == Xmp ? &m_facts.xmp : tag == Profile ? &m_facts.profile : nullptr;
    }

    /// Numbers of eight bytes as such of four.
    QByteArray narrowed(const QByteArray &value) const
    {
        QByteArray result;
        for (qsizetype at = m_isBig ? 4 : 0; at < value.size(); at += 8)
            result += value.mid(at, 4);
        return result;
    }

    quint64 wideNumber(const QByteArray &value) const
    {
        quint64 result = 0;
        for (qsizetype i = 0; i < 4; ++i) {
            const auto byte = static_cast<uchar>(value[m_isBig ? i : 3 - i]);
            result = result << 8 | byte;
        }
        return result;
    }

    quint64 numberAt(quint64 at, int bytes)
    {
        const auto place = static_cast<qint64>(at);
        return (m_isBig ? m_source.big(place, bytes) : m_source.little(place, bytes)).value_or(0);
    }
    QByteArray bytesAt(quint64 at, quint64 size)
    {
        return m_source.bytes(static_cast<qint64>(at), static_cast<qint64>(size));
    }

    ByteSource &m_source;
    ImageFacts &m_facts;
    bool m_isBig;
    TiffWriter m_copy;
    qsizetype m_left = kMostCopied;
};

} // namespace

ImageFacts readBigTiff(ByteSource &source)
{
    ImageFacts facts;
    facts.exif = Copy(source, facts).take();
    return facts;
}
