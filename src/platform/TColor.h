// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"

#include <QString>

/// A display colour without any drawing library: three channels of 0 to 255, or no colour at all.
/// Four bytes, because the shown name of every file has some.
class TColor
{
public:
    constexpr TColor() = default;
    constexpr TColor(quint8 red, quint8 green, quint8 blue)
        : m_rgb(kSet | (quint32{red} << 16U) | (quint32{green} << 8U) | blue)
    {
    }
    /// From six hexadecimal digits such as "9C988A"; unset when the text is anything else.
    static TColor fromHex(QStringView hex);

    constexpr bool isSet() const { return m_rgb != 0; }
    constexpr quint8 red() const { return static_cast<quint8>(m_rgb >> 16U); }
    constexpr quint8 green() const { return static_cast<quint8>(m_rgb >> 8U); }
    constexpr quint8 blue() const { return static_cast<quint8>(m_rgb); }
    /// Six upper-case hexadecimal digits; "" when unset.
    QString hex() const;

    static TArchiveClass archiveClass();
    void encodeWithCoder(TEncoder &coder) const;
    void initWithCoder(const TDecoder &coder);

    friend constexpr bool operator==(const TColor &, const TColor &) = default;

private:
    static constexpr quint32 kSet = 0xFF000000;

    quint32 m_rgb = 0; ///< with kSet; 0 when unset
};

Q_DECLARE_METATYPE(TColor)
