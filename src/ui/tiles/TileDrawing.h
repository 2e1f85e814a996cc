// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TRuleModel.h"

#include <QColor>
#include <QFontMetrics>
#include <QPainterPath>
#include <QPalette>
#include <QString>

class QPainter;

/// How a tile looks, wherever it is: in the palette, in the recipe or under the pointer. One of a
/// recipe has a knob at its end that reaches into the notch at the start of the next one.
class TileDrawing
{
public:
    /// What widgets of interlocking tiles overlap by.
    static constexpr int kOverlap = 8;

    QLatin1StringView icon;
    QString text;
    QColor fill;
    QColor border; ///< invalid: none
    QColor ink;
    bool interlocks = false;
    QColor outline{}; ///< invalid: none
    bool isOutlineDashed = false;
    bool isFaded = false;

    /// The tile of a rule in a recipe.
    static TileDrawing of(const TRuleModel &rule, const QPalette &palette);

    /// Height of a recipe's and of a palette's tile.
    static int height(const QFontMetrics &metrics, bool interlocks);
    /// Of the whole text, but not wider than a tile gets.
    QSize size(const QFont &font) const;
    void paint(QPainter &painter, const QRect &place, const QFont &font,
               Qt::LayoutDirection direction) const;
    QPixmap pixmap(const QFont &font, Qt::LayoutDirection direction, qreal devicePixelRatio) const;

private:
    QRectF body(const QRect &place) const;
    QPainterPath piece(const QRect &place) const;
};
