// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCborStreamReader>
#include <QVariantMap>

class QCborStreamWriter;

namespace CborValues {

/// Texts, numbers, booleans, bytes, TDate, lists and maps of such; anything else as null.
void write(QCborStreamWriter &writer, const QVariant &value);

} // namespace CborValues

/// Reads a CBOR item from someone who may be hostile. Every operation takes the next item when it
/// is of the kind and size that is wanted; otherwise the reader fails for good, and what it returns
/// from then on is empty. Memory stays within a small multiple of the bytes.
class CborReader
{
public:
    static constexpr int kMaxDepth = 8;
    static constexpr int kMaxValues = 200'000;

    explicit CborReader(const QByteArray &bytes);

    void fail() { m_good = false; }
    bool isGood() const { return m_good; }
    /// All is well, and nothing follows.
    bool isAtEnd() const;

    /// Steps into an array; returns how many elements it says it has.
    quint64 enterArray();
    /// Steps into an array of so many elements.
    void enterArray(quint64 size);
    /// Steps out of an array that has been read to its end.
    void leave();
    /// True when there was a null, which has been skipped.
    bool skipNull();
    quint64 number(quint64 max = ~quint64{0});
    double real();
    QString text();
    QByteArray bytes();
    /// As CborValues writes them; integers come back as 64-bit ones.
    QVariantMap map();
    QVariant value();

private:
    bool want(bool condition);
    bool countValue();
    void next();
    template <class Text>
    Text string(QCborStreamReader::StringResult<Text> (QCborStreamReader::*read)());
    QVariant negative();
    QVariant list();
    QVariant date();

    qsizetype m_size;
    QCborStreamReader m_reader;
    int m_depth = 0;
    int m_values = 0;
    bool m_good = true;
};
