// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/ToolTip.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLineLength = 90;
constexpr qsizetype kMostLines = 24;

/// Cuts between whole characters.
qsizetype endOfLine(const QString &text, qsizetype from)
{
    const qsizetype end = from + kLineLength;
    return end < text.size() && text.at(end).isLowSurrogate() ? end - 1 : end;
}

} // namespace

QString ToolTip::of(const QString &text)
{
    if (text.isEmpty())
        return {};
    QStringList lines;
    for (const QString &paragraph : text.split(u'\n')) {
        qsizetype from = 0;
        do {
            const qsizetype end = endOfLine(paragraph, from);
            lines += paragraph.mid(from, end - from).toHtmlEscaped();
            from = end;
        } while (from < paragraph.size() && lines.size() <= kMostLines);
        if (lines.size() > kMostLines)
            break;
    }
    if (lines.size() > kMostLines) {
        lines.resize(kMostLines);
        lines.last() = u"\u2026"_s;
    }
    return u"<p style='white-space:pre'>"_s + lines.join(u"<br>"_s) + u"</p>"_s;
}
