// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TDate.h"
#include "platform/TStringTable.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <span>

/// Class names of an archived object, its own first, then its bases, "NSObject" last. Points at a
/// constant array; its address serves as identity.
using TArchiveClass = std::span<const char *const>;

/// Writes one object's fields under keys. Every persisted class has one encodeWithCoder(TEncoder &)
/// that serves files (KeyedArchiver) and deep copies in memory (TreeEncoder) alike.
///
/// Objects that are unset (a null QString, an unset TDate, a null table, an invalid QVariant) are
/// left out, so that they read back as unset.
class TEncoder
{
public:
    using Encode = std::function<void(TEncoder &)>;
    using EncodeElement = std::function<void(qsizetype, TEncoder &)>;

    TEncoder() = default;
    TEncoder(const TEncoder &) = delete;
    TEncoder &operator=(const TEncoder &) = delete;
    virtual ~TEncoder() = default;

    virtual void encodeBool(QLatin1StringView key, bool value) = 0;
    virtual void encodeInteger(QLatin1StringView key, qint64 value) = 0;
    virtual void encodeString(QLatin1StringView key, const QString &value) = 0;
    virtual void encodeData(QLatin1StringView key, const QByteArray &value) = 0;
    virtual void encodeDate(QLatin1StringView key, TDate value) = 0;
    /// Both percent-encoded; the base (a folder, ending in "/") may be empty, and is stored once
    /// however many URLs share it.
    virtual void encodeUrl(QLatin1StringView key, const QString &base, const QString &relative) = 0;
    virtual void encodeTable(QLatin1StringView key, const TStringTablePtr &table) = 0;
    /// Texts, numbers, booleans, QByteArray, TDate (as QVariant::fromValue), QVariantList and
    /// QVariantMap of these.
    virtual void encodeVariant(QLatin1StringView key, const QVariant &value) = 0;
    /// An object of a class of its own.
    virtual void encodeObject(QLatin1StringView key, TArchiveClass type, const Encode &encode) = 0;
    /// A dictionary object with string keys whose values are encoded as objects.
    virtual void encodeDictionary(QLatin1StringView key, const Encode &encode) = 0;
    /// An array of objects; each element is of the class that typeAt gives for its index.
    virtual void encodeArray(QLatin1StringView key, qsizetype count,
                             const std::function<TArchiveClass(qsizetype)> &typeAt,
                             const EncodeElement &encode) = 0;
};

/// Reads one object's fields. A key that is absent or holds a value of another type reads as 0,
/// false or unset.
class TDecoder
{
public:
    using Decode = std::function<void(const TDecoder &)>;

    TDecoder() = default;
    TDecoder(const TDecoder &) = delete;
    TDecoder &operator=(const TDecoder &) = delete;
    virtual ~TDecoder() = default;

    /// The object's own class name; empty for a dictionary.
    virtual QString className() const = 0;
    virtual bool containsValueForKey(QLatin1StringView key) const = 0;
    virtual bool decodeBool(QLatin1StringView key) const = 0;
    virtual qint64 decodeInteger(QLatin1StringView key) const = 0;
    virtual QString decodeString(QLatin1StringView key) const = 0;
    virtual QByteArray decodeData(QLatin1StringView key) const = 0;
    virtual TDate decodeDate(QLatin1StringView key) const = 0;
    /// The whole percent-encoded URL; null when absent.
    virtual QString decodeUrl(QLatin1StringView key) const = 0;
    virtual TStringTablePtr decodeTable(QLatin1StringView key) const = 0;
    virtual QVariant decodeVariant(QLatin1StringView key) const = 0;
    /// Calls decode once and returns true when the key holds an object (of any class).
    virtual bool decodeObject(QLatin1StringView key, const Decode &decode) const = 0;
    /// Calls decode once and returns true when the key holds a dictionary.
    virtual bool decodeDictionary(QLatin1StringView key, const Decode &decode) const = 0;
    /// Calls decode for each object of the array, in order, and returns true when the key holds an
    /// array. Elements that are not objects are passed over.
    virtual bool decodeArray(QLatin1StringView key, const Decode &decode) const = 0;
};
