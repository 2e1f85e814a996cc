// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TAttributedString.h"

#include <QByteArray>

/// The final name as terminals show it: the stretches that came from the shown name on the colours
/// of their rules, a changed extension in red, everything else plain. Safe for display.
QByteArray colouredName(const QString &finalName, const TAttributedString &shownName,
                        const QString &shownExtension);
