// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TColor.h"

#include <QColor>
#include <QPalette>

/// The colours that a palette has no name for, taken from the palette that the desktop gives, so
/// that every scheme is followed. Text colours reach a contrast of 4.5 to 1 on window and card.
struct ThemeColors
{
    bool isDark = false;
    QColor window;    ///< behind everything
    QColor card;      ///< surface of lists, fields' surroundings and popovers
    QColor border;    ///< around cards and buttons
    QColor field;     ///< of text fields and pop-ups on a card
    QColor stripe;    ///< every other row of a list
    QColor selection; ///< behind selected rows; text keeps its colour on it
    QColor ink;       ///< text
    QColor muted;     ///< text of lesser weight
    QColor accent;    ///< the one colour that calls for attention
    QColor accentInk; ///< text on it
    QColor good;
    QColor warning;
    QColor critical;
    QColor extension; ///< text of file name extensions

    /// Main thread only.
    static ThemeColors of(const QPalette &palette);
};

namespace Theme {

enum class Scheme { Desktop, Light, Dark };

/// Radius of the corners of cards, and of the smaller things on them; in device-independent pixels.
inline constexpr qreal kCardRadius = 9;
inline constexpr qreal kFieldRadius = 6;
/// Height of a row of a list.
inline constexpr int kRowHeight = 24;

/// Gives the application the scheme and, where the desktop has no widget style of its own,
/// Tavrin's.
void apply(Scheme scheme);
Scheme scheme();
/// A desktop's palette with what could not be read on its ground made legible: some schemes leave
/// the colours of disabled things, or of windows around lists, to chance.
QPalette legible(QPalette palette);

/// As WCAG 2 defines it: 1 to 21.
double contrast(const QColor &first, const QColor &second);
/// Black or white (not quite), whichever is easier to read on the background.
QColor inkOn(const QColor &background);
/// An invalid colour for an unset one.
QColor color(const TColor &color);
/// The colour of a rule's tile and of what it gave; a neutral one for rules without a colour.
QColor tileColor(const TColor &color, const QPalette &palette);

} // namespace Theme
