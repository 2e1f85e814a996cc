// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/TableLook.h"

#include "ui/controls/Icons.h"

using namespace Qt::StringLiterals;

namespace {

/// Size of a note beside the size of a name.
constexpr qreal kNoteScale = 0.88;
constexpr double kReadable = 4.5;

} // namespace

void TableLook::follow(const QWidget &widget)
{
    palette = widget.palette();
    colors = ThemeColors::of(palette);
    mutedOnSelection =
        Theme::contrast(colors.muted, colors.selection) < kReadable ? colors.ink : colors.muted;
    font = widget.font();
    iconSide = Icons::extent(widget.fontMetrics());
    noteFont = font;
    noteFont.setItalic(true);
    if (font.pointSizeF() > 0)
        noteFont.setPointSizeF(font.pointSizeF() * kNoteScale);
    else
        noteFont.setPixelSize(qRound(font.pixelSize() * kNoteScale));
    for (std::size_t level = 0; level < levels.size(); ++level)
        levels[level] = Icons::forLevel(static_cast<int>(level));
    done = Icons::icon("done"_L1);
}
