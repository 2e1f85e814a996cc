// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/KeyedReading.h"
#include "platform/TCoder.h"

#include <limits>

/// Reads the fields of one object or dictionary of a keyed archive, during a KeyedReading. Lives on
/// the stack.
class KeyedDecoder : public TDecoder
{
public:
    /// Depth is that of the object: 1 for the root.
    KeyedDecoder(KeyedReading &reading, const PlistItem &object, KeyedReading::Kind kind,
                 int depth);

    /// Calls decode for each object of a class in an array object, whose depth is given, or in a
    /// part of it.
    static void forEachObject(KeyedReading &reading, const PlistItem &array, int depth,
                              const Decode &decode, quint64 first = 0,
                              quint64 end = std::numeric_limits<quint64>::max());

    QString className() const override;
    bool containsValueForKey(QLatin1StringView key) const override;
    bool decodeBool(QLatin1StringView key) const override;
    qint64 decodeInteger(QLatin1StringView key) const override;
    QString decodeString(QLatin1StringView key) const override;
    QByteArray decodeData(QLatin1StringView key) const override;
    TDate decodeDate(QLatin1StringView key) const override;
    QString decodeUrl(QLatin1StringView key) const override;
    TStringTablePtr decodeTable(QLatin1StringView key) const override;
    QVariant decodeVariant(QLatin1StringView key) const override;
    bool decodeObject(QLatin1StringView key, const Decode &decode) const override;
    bool decodeDictionary(QLatin1StringView key, const Decode &decode) const override;
    bool decodeArray(QLatin1StringView key, const Decode &decode) const override;

private:
    PlistItem value(QLatin1StringView key) const;
    /// Calls decode for a value of that kind that is not too deep.
    bool decodeKind(QLatin1StringView key, KeyedReading::Kind kind, const Decode &decode) const;

    KeyedReading &m_reading;
    PlistItem m_object;
    KeyedReading::Kind m_kind;
    int m_depth;
    PlistItem m_keys; ///< of a dictionary
    PlistItem m_values;
    mutable quint64 m_hint = 0; ///< fields are mostly read in the order written
};
