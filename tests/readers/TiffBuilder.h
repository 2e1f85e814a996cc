// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>

#include <utility>

/// Builds little-endian TIFF structures of any tags, for real files in tests.
class TiffBuilder
{
public:
    enum Type : quint16 {
        Byte = 1,
        Ascii = 2,
        Short = 3,
        Long = 4,
        Rational = 5,
        Undefined = 7,
        SRational = 10
    };
    enum Folder { Main, Exif, Gps, Thumbnail };

    /// The value as it is stored.
    void add(Folder folder, quint16 tag, Type type, const QByteArray &value)
    {
        m_folders[folder].append({tag, type, value});
    }

    QByteArray build() const
    {
        TiffBuilder all = *this;
        for (const auto &[folder, tag] : {std::pair(Exif, 0x8769), std::pair(Gps, 0x8825)}) {
            if (!m_folders[folder].isEmpty())
                all.add(Main, static_cast<quint16>(tag), Long, number(0, 4));
        }
        QByteArray tiff("II*\0\x08\0\0\0", 8);
        qsizetype offsets[4] = {8};
        for (int folder = Exif; folder <= Thumbnail; ++folder)
            offsets[folder] = offsets[folder - 1] + sizeOf(all.m_folders[folder - 1]);
        for (int folder = Main; folder <= Thumbnail; ++folder)
            tiff += all.bytesOf(folder, offsets);
        return tiff;
    }

    static QByteArray number(quint64 number, int bytes)
    {
        QByteArray result;
        for (int i = 0; i < bytes; ++i, number >>= 8)
            result.append(static_cast<char>(number));
        return result;
    }
    static QByteArray shorts(const QList<int> &numbers) { return list(numbers, 2); }
    static QByteArray longs(const QList<int> &numbers) { return list(numbers, 4); }

private:
    struct Entry
    {
        quint16 tag;
        Type type;
        QByteArray value;
    };

    static QByteArray list(const QList<int> &numbers, int bytes)
    {
        QByteArray result;
        for (const int each : numbers)
            result += number(static_cast<quint64>(each), bytes);
        return result;
    }
    static qsizetype padded(const QByteArray &value)
    {
        return value.size() > 4 ? (value.size() + 1) & ~1 : 0;
    }
    static qsizetype sizeOf(const QList<Entry> &entries)
    {
        qsizetype size = 2 + 12 * entries.size() + 4;
        for (const Entry &entry : entries)
            size += padded(entry.value);
        return size;
    }
    static qsizetype unit(Type type)
    {
        return type == Short ? 2 : type == Long ? 4 : type == Rational || type == SRational ? 8 : 1;
    }

    QByteArray bytesOf(int folder, const qsizetype (&offsets)[4]) const
    {
        const QList<Entry> &entries = m_folders[folder];
        qsizetype end = offsets[folder] + 2 + 12 * entries.size() + 4;
        QByteArray table = number(static_cast<quint64>(entries.size()), 2);
        QByteArray values;
        for (Entry entry : entries) {
            if (entry.tag == 0x8769 || entry.tag == 0x8825)
                entry.value =
                    number(static_cast<quint64>(offsets[entry.tag == 0x8769 ? Exif : Gps]), 4);
            table += number(entry.tag, 2) + number(entry.type, 2) +
                     number(static_cast<quint64>(entry.value.size() / unit(entry.type)), 4);
            if (entry.value.size() <= 4) {
                table += entry.value.leftJustified(4, '\0');
                continue;
            }
            table += number(static_cast<quint64>(end), 4);
            values += entry.value.leftJustified(padded(entry.value), '\0');
            end += padded(entry.value);
        }
        const bool hasNext = folder == Main && !m_folders[Thumbnail].isEmpty();
        return table + number(hasNext ? static_cast<quint64>(offsets[Thumbnail]) : 0, 4) + values;
    }

    QList<Entry> m_folders[4];
};
