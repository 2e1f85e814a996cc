// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaType>
#include <QVariantMap>

#include <memory>

class TMetadata;
/// Absent (null): not read yet; empty: read, and nothing was there.
using TMetadataPtr = std::shared_ptr<const TMetadata>;

/// The metadata of one file: keys to texts, numbers, booleans, arrays, dates, data, and one level
/// of named dictionaries ("{Exif}"). Immutable and compact: keys and repeated texts are interned
/// for the whole process, so a photo of 60 tags takes at most 3 KiB. May be read from any thread.
class TMetadata
{
public:
    static TMetadataPtr fromVariantMap(const QVariantMap &map);

    virtual ~TMetadata() = default;
    virtual bool isEmpty() const = 0;
    /// The value under a top-level key; invalid when absent. Dictionaries come as QVariantMap.
    virtual QVariant value(const QString &key) const = 0;
    virtual bool hasDictionary(const QString &name) const = 0;
    /// The value under a key of a named dictionary; invalid when absent.
    virtual QVariant value(const QString &dictionary, const QString &key) const = 0;
    virtual QVariantMap toVariantMap() const = 0;

protected:
    TMetadata() = default;
};

Q_DECLARE_METATYPE(TMetadataPtr)
