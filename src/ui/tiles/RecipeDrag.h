// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/tiles/TileDrawing.h"

#include <QMimeData>
#include <QPixmap>
#include <QPoint>

#include <memory>
#include <vector>

class QWidget;

/// Carries tiles away from a recipe.
namespace RecipeDrag {

struct Picture
{
    QPixmap pixmap;
    QPoint hotSpot; ///< from its upper left corner, may be above it
};

/// Tiles as they are carried: seen through, and hanging below the pointer, which is at x of them,
/// so that they do not hide where they would come.
Picture hung(const QPixmap &tiles, int x);

/// The first tiles as they interlock, and how many more there are. pressed is the one that the
/// pointer carries, x of its left side.
Picture picture(const std::vector<TileDrawing> &tiles, std::size_t pressed, int x,
                const QWidget &recipe);

enum class Purpose { Move, Copy };

/// Returns when it is over; the recipe may have gone meanwhile. True when rules that were to be
/// moved have been dropped where there is no recipe, rather than that the drag was given up.
bool run(std::unique_ptr<QMimeData> data, const Picture &picture, Purpose purpose, QWidget &recipe);

} // namespace RecipeDrag
