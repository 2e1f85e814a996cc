// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"

#include <QVariantMap>

#include <cmath>
#include <span>
#include <variant>

/// One archived setting of a rule kind: its key, and the member that holds it. A kind keeps one
/// table of these, so that properties and archive cannot drift apart.
template <class Rule>
struct TRuleField
{
    QLatin1StringView key;
    std::variant<qint64 Rule::*, bool Rule::*, QString Rule::*> member;
};

/// Reading and writing the fields of such tables. Texts that are null count as unset.
namespace TRuleFields {

/// A number's integer value: fractions are cut off, as everywhere that settings are read.
inline qint64 integerValue(const QVariant &value)
{
    if (value.typeId() != QMetaType::Double)
        return value.toLongLong();
    const double number = std::trunc(value.toDouble());
    return std::abs(number) < 0x1p63 ? static_cast<qint64>(number) : 0;
}

inline void assign(qint64 &field, const QVariant &value)
{
    field = integerValue(value);
}
inline void assign(bool &field, const QVariant &value)
{
    field = value.toBool();
}
inline void assign(QString &field, const QVariant &value)
{
    field = value.toString();
}

inline void insert(QVariantMap &map, QLatin1StringView key, const QString &value)
{
    if (!value.isNull())
        map.insert(key, value);
}
template <class Number>
void insert(QVariantMap &map, QLatin1StringView key, Number value)
{
    map.insert(key, value);
}

inline void encode(TEncoder &coder, QLatin1StringView key, qint64 value)
{
    coder.encodeInteger(key, value);
}
inline void encode(TEncoder &coder, QLatin1StringView key, bool value)
{
    coder.encodeBool(key, value);
}
inline void encode(TEncoder &coder, QLatin1StringView key, const QString &value)
{
    coder.encodeString(key, value);
}

inline void decode(const TDecoder &coder, QLatin1StringView key, qint64 &field)
{
    field = coder.decodeInteger(key);
}
inline void decode(const TDecoder &coder, QLatin1StringView key, bool &field)
{
    field = coder.decodeBool(key);
}
inline void decode(const TDecoder &coder, QLatin1StringView key, QString &field)
{
    field = coder.decodeString(key);
}

/// Sets the field when its key is present.
template <class Value>
void setFromProperties(const QVariantMap &properties, QLatin1StringView key, Value &field)
{
    const auto found = properties.constFind(key);
    if (found != properties.cend())
        assign(field, *found);
}

/// Calls visit(key, member) for every field of a table.
template <class Rule, class Visit>
void forEach(std::span<const TRuleField<std::remove_const_t<Rule>>> fields, Rule &rule, Visit visit)
{
    for (const auto &field : fields)
        std::visit([&](auto member) { visit(field.key, rule.*member); }, field.member);
}

template <class Rule>
void addProperties(std::span<const TRuleField<Rule>> fields, const Rule &rule, QVariantMap &map)
{
    forEach(fields, rule, [&](auto key, const auto &value) { insert(map, key, value); });
}

template <class Rule>
void setProperties(std::span<const TRuleField<Rule>> fields, Rule &rule, const QVariantMap &map)
{
    forEach(fields, rule, [&](auto key, auto &value) { setFromProperties(map, key, value); });
}

template <class Rule>
void encodeFields(std::span<const TRuleField<Rule>> fields, const Rule &rule, TEncoder &coder)
{
    forEach(fields, rule, [&](auto key, const auto &value) { encode(coder, key, value); });
}

template <class Rule>
void decodeFields(std::span<const TRuleField<Rule>> fields, Rule &rule, const TDecoder &coder)
{
    forEach(fields, rule, [&](auto key, auto &value) { decode(coder, key, value); });
}

} // namespace TRuleFields
