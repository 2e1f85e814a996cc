// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/ShownText.h"

using namespace Qt::StringLiterals;

namespace {

/// More than any tile is wide.
constexpr qsizetype kLongestName = 200;
constexpr QChar kBreak = u'\u21b5';

} // namespace

QString ShownText::onOneLine(QString text)
{
    for (QChar &character : text) {
        switch (character.category()) {
        case QChar::Other_Control:
            character = character == u'\n' || character == u'\r' ? kBreak : u' ';
            break;
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            character = kBreak;
            break;
        default:
            break;
        }
    }
    return text;
}

QString ShownText::tileName(const QString &name)
{
    QString text = onOneLine(name.left(kLongestName));
    if (name.size() > kLongestName)
        text += u'\u2026';
    const bool hasHiddenEnds = text.isEmpty() || text.front().isSpace() || text.back().isSpace();
    return hasHiddenEnds ? u'\u201c' + text + u'\u201d' : text;
}
