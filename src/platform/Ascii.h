// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

/// Looks at every unit, without stopping early, because nearly all texts are ASCII.
inline bool isAscii(QStringView text)
{
    char16_t all = 0;
    for (const QChar unit : text)
        all = static_cast<char16_t>(all | unit.unicode());
    return all < 0x80;
}
