// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// Turns ISO-2022-KR into the eight-bit form of the same character set (KS X 1001), block by block.
/// ICU's own converter for it maps some signs (the middle dot, the dash) to Japanese ones; its
/// converter for the eight-bit form maps them as the standard does.
class Iso2022Kr
{
public:
    /// The eight-bit form of the next bytes; last says that no more will come.
    QByteArray toEightBit(QByteArrayView bytes, bool last);
    /// The bytes of the last call were no ISO-2022-KR; what it returned stood before the bad ones.
    bool isInvalid() const { return m_invalid; }

private:
    QByteArray m_carried; ///< the begin of something that the block's end cut off
    bool m_shifted = false;
    bool m_invalid = false;
};
