// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/Iso2022Kr.h"

#include <QIODevice>
#include <QString>

#include <memory>
#include <string>

struct UConverter;

/// The text of a CSV file as 16-bit units, decoded block by block, so that memory does not depend
/// on the size of the file. The encoding is settled by the first 512 bytes; a unit of value 0 ends
/// the text. Belongs to one thread; the device is not owned.
class TCSVStream
{
public:
    enum class Encoding : quint8 { Utf8, Utf16LE, Utf16BE, Utf32LE, Utf32BE, Iso2022Kr, MacRoman };

    /// Larger files are refused, with this text.
    static constexpr qint64 kMaxBytes = (qint64{1} << 31) - 1;
    static QString tooLargeText();

    /// Reads the first block of an open device.
    explicit TCSVStream(QIODevice &device);
    ~TCSVStream();
    TCSVStream(const TCSVStream &) = delete;
    TCSVStream &operator=(const TCSVStream &) = delete;

    Encoding encoding() const { return m_encoding; }
    /// The name of an encoding for people.
    static QString nameOf(Encoding encoding);
    /// Decoded text that was not consumed yet; empty only at the end. Valid until the next call
    /// that finds everything consumed.
    QStringView available();
    void consume(qsizetype units) { m_position += static_cast<size_t>(units); }
    /// Once the text is at its end: why it could not be read further; empty when it was read whole.
    const QString &problem() const { return m_problem; }
    /// Whether a NUL ended the text before the end of the device.
    bool endedAtNul() const { return m_endedAtNul; }

private:
    struct ConverterCloser
    {
        void operator()(UConverter *converter) const;
    };

    QByteArray readBlock(qint64 size);
    void fill();
    void decode(QByteArrayView bytes);
    void decodeUtf16(QByteArrayView bytes);
    void decodeByConverter(QByteArrayView bytes);
    void endAtNul();
    void endUndecodable(qint64 offset);
    void endWithProblem(const QString &problem);

    QIODevice &m_device;
    std::unique_ptr<UConverter, ConverterCloser> m_converter; ///< none for UTF-16
    Iso2022Kr m_korean;                                       ///< in front of the converter
    QByteArray m_block;                                       ///< read, not decoded
    std::u16string m_units;                                   ///< decoded
    size_t m_position = 0;                                    ///< of the next unit to consume
    qint64 m_bytesRead = 0;
    qint64 m_bytesDecoded = 0;
    QString m_problem;
    Encoding m_encoding = Encoding::Utf8;
    bool m_deviceEnded = false;
    bool m_endedAtNul = false;
    bool m_ended = false; ///< nothing more will be decoded
};
