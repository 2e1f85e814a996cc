// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TResult.h"

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

/// One object of a binary property list, seen in place: nothing is copied and no reference is
/// followed. Whatever is not well-formed within the file is Invalid.
struct PlistItem
{
    enum class Type : quint8 {
        Invalid,
        Null,
        Bool,
        Integer,
        Unsigned, ///< above the largest qint64
        Real,
        Date,
        Data,
        Ascii,
        Utf16,
        Uid,
        Array,
        Dictionary,
    };

    Type type = Type::Invalid;
    quint64 ref = 0;
    quint64 count = 0; ///< bytes, UTF-16 units, elements or entries; the number of a UID
    const uchar *body = nullptr;
    union {
        qint64 integer = 0; ///< of Bool and Integer; the bits of Unsigned
        double real;        ///< of Real, and seconds since 2001 of Date
    };

    bool isText() const { return type == Type::Ascii || type == Type::Utf16; }
};

/// Random access to the objects of a binary property list that anyone may have written. Holds the
/// file and nothing else: offsets and references are read where they stand, each time against the
/// file's bounds. May be read from any thread.
class BinaryPlistReader
{
public:
    /// Checks that trailer, offset table and every object lie within the file.
    static TResult<BinaryPlistReader> fromData(const QByteArray &data);

    PlistItem item(quint64 ref) const;
    PlistItem top() const { return item(m_top); }
    /// Reference of an array's element, of a dictionary's key or value; index below count.
    quint64 element(const PlistItem &array, quint64 index) const;
    quint64 key(const PlistItem &dictionary, quint64 index) const;
    quint64 value(const PlistItem &dictionary, quint64 index) const;
    /// The value under a key of ASCII letters, or Invalid. The search starts at the entry hint,
    /// which becomes the one after the found.
    PlistItem find(const PlistItem &dictionary, QLatin1StringView key, quint64 &hint) const;
    /// Never null; "" for an item that is no text.
    static QString text(const PlistItem &item);
    /// Bytes that the item takes in the file.
    quint64 bodySize(const PlistItem &item) const;
    quint64 fileSize() const { return static_cast<quint64>(m_data.size()); }

private:
    BinaryPlistReader() = default;
    const uchar *bytes() const { return reinterpret_cast<const uchar *>(m_data.constData()); }
    bool readTrailer();
    /// Fills count and body; false when the object reaches past the objects' end.
    bool readExtent(PlistItem &item, const uchar *start, quint8 low) const;
    bool readNumber(PlistItem &item, const uchar *start, quint8 marker) const;
    quint64 unitSize(PlistItem::Type type) const;

    QByteArray m_data;
    const uchar *m_end = nullptr; ///< of the objects, where the offset table starts
    quint64 m_count = 0;
    quint64 m_top = 0;
    quint64 m_offsetSize = 0;
    quint64 m_refSize = 0;
};
