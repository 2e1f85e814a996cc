// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/controls/Theme.h"

#include <QFont>
#include <QIcon>
#include <QWidget>

#include <array>

/// Colours, fonts and pictures of the file table, made once for a palette and a font rather than
/// for every cell.
struct TableLook
{
    static constexpr int kPadding = 8;
    static constexpr int kMostWidth = 4000; ///< of a column

    ThemeColors colors;
    QColor mutedOnSelection; ///< text of lesser weight in selected rows
    QPalette palette;
    QFont font;
    QFont noteFont;
    int iconSide = 0;
    std::array<QIcon, 3> levels;
    QIcon done; ///< for files that a run has been through

    /// For the palette and the font that the widget has now.
    void follow(const QWidget &widget);
};
