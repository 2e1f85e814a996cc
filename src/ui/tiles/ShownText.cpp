// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/ShownText.h"

#include "commonprocs/ByteNames.h"

namespace {

/// More than any tile is wide.
constexpr qsizetype kLongestName = 200;

} // namespace

QString ShownText::tileName(const QString &name)
{
    QString text = ByteNames::forDisplay(name.left(kLongestName));
    if (name.size() > kLongestName)
        text += u'\u2026';
    const bool hasHiddenEnds = text.isEmpty() || text.front().isSpace() || text.back().isSpace();
    return hasHiddenEnds ? u'\u201c' + text + u'\u201d' : text;
}
