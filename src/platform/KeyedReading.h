// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/KeyedArchiveFile.h"
#include "platform/TDate.h"
#include "platform/TStringTable.h"

#include <QVariant>

#include <optional>
#include <vector>

/// One pass over a keyed archive: turns items into values, and keeps count of the work. Whoever
/// made the file may have put one object in a million places; so a pass may do no more than a small
/// multiple of the file's size, and then everything reads as unset. Used by one thread.
class KeyedReading
{
public:
    /// What an archived object is, by its class.
    enum class Kind : quint8 { None, Array, Dictionary, Date, Url, Text, Data, Object };

    explicit KeyedReading(const KeyedArchiveFile &file);
    KeyedReading(const KeyedReading &) = delete;
    KeyedReading &operator=(const KeyedReading &) = delete;

    const KeyedArchiveFile &file() const { return m_file; }
    /// True once the pass has done all the work it may do.
    bool isSpent() const { return m_spent; }

    /// None for an item that is no object of a class. Counts as work.
    Kind kind(const PlistItem &item);
    QString className(const PlistItem &object);
    /// The object under an instance's key; Invalid when absent.
    PlistItem field(const PlistItem &instance, QLatin1StringView key, quint64 &hint) const;
    PlistItem field(const PlistItem &instance, QLatin1StringView key) const;
    /// The references that an array or dictionary object holds under a key; an empty array when
    /// there are none. Counts as work.
    PlistItem references(const PlistItem &object, QLatin1StringView key);
    PlistItem object(const PlistItem &references, quint64 index) const;

    /// 0 for anything but a number that fits.
    static qint64 integer(const PlistItem &item);
    /// Null when the item is not of that kind.
    QString text(const PlistItem &item);
    QByteArray data(const PlistItem &item);
    QString url(const PlistItem &item);
    /// Unset when the item is no date.
    TDate date(const PlistItem &item);
    TStringTablePtr table(const PlistItem &item);
    /// Invalid for objects of a class of their own; depth is the item's own.
    QVariant variant(const PlistItem &item, int depth);

private:
    struct ClassInfo
    {
        std::optional<quint64> ref; ///< of the UID under which instances name the class
        QString name;
        Kind kind = Kind::None;
    };
    struct SharedText
    {
        std::optional<quint64> ref;
        QString text;
    };

    bool work(quint64 amount);
    QString plainText(const PlistItem &item);
    const ClassInfo &classOf(const PlistItem &instance);
    QString baseUrl(const PlistItem &base);
    QVariantList list(const PlistItem &item, int depth);
    QVariantMap map(const PlistItem &item, int depth);

    const KeyedArchiveFile &m_file;
    quint64 m_workLeft;
    quint64 m_textLeft; ///< UTF-16 units
    bool m_spent = false;
    std::vector<ClassInfo> m_classes; ///< by a part of the reference; the last one stays
    std::vector<SharedText> m_texts;
    SharedText m_base;
};
