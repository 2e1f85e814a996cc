// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/KeyedObjectWriter.h"

#include <QVarLengthArray>

/// Collects the fields of one object while it is encoded for a keyed archive. Lives on the stack of
/// the KeyedObjectWriter that it writes with.
class KeyedEncoder : public TEncoder
{
public:
    /// An instance names its fields by plain texts and keeps numbers inline; a dictionary holds
    /// objects only, keys included.
    enum class Form { Instance, Dictionary };

    KeyedEncoder(KeyedObjectWriter &writer, Form form)
        : m_writer(writer)
        , m_form(form)
    {
    }
    std::span<const BinaryPlistWriter::Entry> fields() const { return {m_fields}; }

    void encodeBool(QLatin1StringView key, bool value) override;
    void encodeInteger(QLatin1StringView key, qint64 value) override;
    void encodeString(QLatin1StringView key, const QString &value) override;
    void encodeData(QLatin1StringView key, const QByteArray &value) override;
    void encodeDate(QLatin1StringView key, TDate value) override;
    void encodeUrl(QLatin1StringView key, const QString &base, const QString &relative) override;
    void encodeTable(QLatin1StringView key, const TStringTablePtr &table) override;
    void encodeVariant(QLatin1StringView key, const QVariant &value) override;
    void encodeObject(QLatin1StringView key, TArchiveClass type, const Encode &encode) override;
    void encodeDictionary(QLatin1StringView key, const Encode &encode) override;
    void encodeArray(QLatin1StringView key, qsizetype count,
                     const std::function<TArchiveClass(qsizetype)> &typeAt,
                     const EncodeElement &encode) override;

private:
    void add(QLatin1StringView key, BinaryPlistWriter::Ref value);

    KeyedObjectWriter &m_writer;
    Form m_form;
    QVarLengthArray<BinaryPlistWriter::Entry, 24> m_fields;
};
