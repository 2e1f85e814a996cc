// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TreeCoder.h"

#include <QByteArray>
#include <QVariant>

#include <memory>
#include <variant>
#include <vector>

/// One object or dictionary of a TreeArchive: its fields in the order written. Never changed once
/// it is encoded.
struct TreeArchive::Node
{
    using Pointer = std::unique_ptr<Node>;
    struct Url
    {
        QString base;
        QString relative;
    };
    using Array = std::vector<Pointer>;
    /// Numbers, texts, data, dates and what was encoded as a variant stand in the first.
    using Value = std::variant<QVariant, Url, TStringTablePtr, Pointer, Array>;
    struct Field
    {
        QByteArray key;
        Value value;
    };

    TArchiveClass type; ///< empty for a dictionary
    std::vector<Field> fields;

    static Pointer encoded(TArchiveClass type, const TEncoder::Encode &encode);
    /// A dictionary with each value in a field of its own; for reading only.
    static Node fromVariantMap(const QVariantMap &map);

    bool isDictionary() const { return type.empty(); }
    /// Null when there is no such field.
    const Value *find(QLatin1StringView key) const;
    QVariantMap toVariantMap() const;
    /// What a file would give for a value; objects of a class of their own have no variant.
    static QVariant toVariant(const Value &value);
};
