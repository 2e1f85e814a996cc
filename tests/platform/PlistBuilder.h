// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QtEndian>

/// Builds keyed archives from bytes, also such as no writer would write. References take two bytes.
class PlistBuilder
{
public:
    using Fields = QList<std::pair<const char *, int>>;

    /// Adds any object; gives its reference.
    int add(const QByteArray &bytes)
    {
        m_objects.append(bytes);
        return static_cast<int>(m_objects.size() - 1);
    }
    int text(const QByteArray &ascii) { return add(counted(0x50, ascii.size()) + ascii); }
    int uid(int number) { return add('\x81' + bigEndian(number, 2)); }
    int array(const QList<int> &refs) { return add(counted(0xA0, refs.size()) + joined(refs)); }
    int dictionary(const Fields &fields)
    {
        QList<int> refs;
        for (const auto &field : fields)
            refs.append(text(field.first));
        for (const auto &field : fields)
            refs.append(field.second);
        return add(counted(0xD0, fields.size()) + joined(refs));
    }

    /// Makes the plist object a member of the archive; gives a reference to its UID.
    int member(int ref)
    {
        m_members.append(ref);
        return uid(static_cast<int>(m_members.size()));
    }
    /// The UID that the next member will have, for cycles.
    int nextUid() { return uid(static_cast<int>(m_members.size() + 1)); }
    int classNamed(const QByteArray &name)
    {
        return member(dictionary({{"$classname", text(name)}}));
    }
    int object(const QByteArray &className, Fields fields)
    {
        const int type = classNamed(className);
        fields.append({"$class", type});
        return member(dictionary(fields));
    }
    int list(const QList<int> &uids) { return object("NSArray", {{"NS.objects", array(uids)}}); }

    QByteArray archive(int rootUid)
    {
        QList<int> members{text("$null")};
        members.append(m_members);
        return file(dictionary({{"$archiver", text("NSKeyedArchiver")},
                                {"$version", add(QByteArray("\x12\x00\x01\x86\xA0", 5))},
                                {"$top", dictionary({{"root", rootUid}})},
                                {"$objects", array(members)}}));
    }
    QByteArray file(int top) const
    {
        QByteArray bytes("bplist00");
        QByteArray offsets;
        for (const QByteArray &object : m_objects) {
            offsets += bigEndian(bytes.size(), 4);
            bytes += object;
        }
        const qsizetype table = bytes.size();
        return bytes + offsets + QByteArray(6, '\0') + QByteArray("\x04\x02", 2) +
               bigEndian(m_objects.size(), 8) + bigEndian(top, 8) + bigEndian(table, 8);
    }

    static QByteArray bigEndian(qsizetype value, qsizetype size)
    {
        QByteArray bytes(8, '\0');
        qToBigEndian<quint64>(static_cast<quint64>(value), bytes.data());
        return bytes.last(size);
    }
    static QByteArray counted(int marker, qsizetype count)
    {
        const auto byte = [](int value) { return QByteArray(1, static_cast<char>(value)); };
        return count < 15 ? byte(marker | static_cast<int>(count))
                          : byte(marker | 15) + '\x13' + bigEndian(count, 8);
    }

private:
    static QByteArray joined(const QList<int> &refs)
    {
        QByteArray bytes;
        for (const int ref : refs)
            bytes += bigEndian(ref, 2);
        return bytes;
    }

    QList<QByteArray> m_objects;
    QList<int> m_members;
};
