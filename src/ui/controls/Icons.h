// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TRuleModel.h"

#include <QFontMetrics>
#include <QIcon>
#include <QPixmap>

/// The drawings under resources/icons, in any colour and sharp at any size. Main thread only.
namespace Icons {

/// name is a file's name without ".svg". The icon follows the palette: text colour, greyed when
/// disabled.
QIcon icon(QLatin1StringView name);
/// One drawing in one colour; size in device-independent pixels, pixels by the ratio.
QPixmap pixmap(QLatin1StringView name, int size, const QColor &ink, qreal devicePixelRatio);
/// Side of a small icon beside a text: as usual on desktops, larger with a larger font.
int extent(const QFontMetrics &metrics);
/// The drawing of a kind of rule, by its drag identifier or by the rule.
QLatin1StringView forIdentifier(const QString &identifier);
QLatin1StringView forRule(const TRuleModel &rule);
/// The word for a kind of rule as the palette shows it: "Text", "Counter" ... translated.
QString kindName(const QString &identifier);
/// Drawing and colour of a problem level 0 to 2.
QIcon forLevel(int errLevel);

} // namespace Icons
