// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/TileDrawing.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/tiles/ShownText.h"

#include <QPainter>
#include <QtMath>

#include <cmath>

namespace {

constexpr int kIconGap = 6;
constexpr int kLeftPadding = 13;
constexpr int kRightPadding = 12;
constexpr int kInset = 2;       ///< around the body, for its outline
constexpr int kOverhang = 9;    ///< at the end of an interlocking body, for its knob
constexpr qreal kRadius = 6;    ///< of the corners
constexpr qreal kKnob = 5.5;    ///< radius
constexpr qreal kNotch = 7.5;   ///< radius: the knob and a seam around it
constexpr qreal kKnobOut = 1.5; ///< how far the middle of a knob is from the body
constexpr int kTextCharacters = 30;
constexpr int kSlack = 1; ///< what a text that just fits is elided without
constexpr qreal kFaded = 0.4;

/// From one side of a circle to the other, past its middle at the given distance from a straight.
qreal halfAngle(qreal distance, qreal radius)
{
    return qRadiansToDegrees(std::acos(distance / radius));
}

QRectF circle(const QPointF &middle, qreal radius)
{
    return {middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius};
}

/// A rounded rectangle, drawn clockwise, with the knob on its right and the notch on its left.
QPainterPath puzzlePiece(const QRectF &body)
{
    const qreal middle = body.center().y();
    const qreal knobAngle = halfAngle(-kKnobOut, kKnob);
    const qreal notchAngle = halfAngle(kKnobOut, kNotch);
    const qreal corner = 2 * kRadius;
    QPainterPath path;
    path.moveTo(body.left() + kRadius, body.top());
    path.arcTo(QRectF(body.right() - corner, body.top(), corner, corner), 90, -90);
    path.arcTo(circle({body.right() + kKnobOut, middle}, kKnob), knobAngle, -2 * knobAngle);
    path.arcTo(QRectF(body.right() - corner, body.bottom() - corner, corner, corner), 0, -90);
    path.arcTo(QRectF(body.left(), body.bottom() - corner, corner, corner), 270, -90);
    path.arcTo(circle({body.left() - kKnobOut, middle}, kNotch), -notchAngle, 2 * notchAngle);
    path.arcTo(QRectF(body.left(), body.top(), corner, corner), 180, -90);
    path.closeSubpath();
    return path;
}

} // namespace

TileDrawing TileDrawing::of(const TRuleModel &rule, const QPalette &palette)
{
    TileDrawing tile;
    tile.icon = Icons::forRule(rule);
    tile.text = ShownText::tileName(rule.name());
    tile.fill = Theme::tileColor(rule.theColor(), palette);
    tile.ink = Theme::inkOn(tile.fill);
    tile.interlocks = true;
    return tile;
}

int TileDrawing::height(const QFontMetrics &metrics, bool interlocks)
{
    return metrics.height() + (interlocks ? 20 : 14) + 2 * kInset;
}

QSize TileDrawing::size(const QFont &font) const
{
    const QFontMetricsF metrics(font);
    const qreal widest = metrics.averageCharWidth() * kTextCharacters;
    const int textWidth = qCeil(std::min(metrics.horizontalAdvance(text), widest)) + kSlack;
    const int end = interlocks ? kOverhang : kInset;
    return {kInset + kLeftPadding + Icons::extent(QFontMetrics(font)) + kIconGap + textWidth +
                kRightPadding + end,
            height(QFontMetrics(font), interlocks)};
}

QRectF TileDrawing::body(const QRect &place) const
{
    return QRectF(place).adjusted(kInset, kInset, interlocks ? -kOverhang : -kInset, -kInset);
}

QPainterPath TileDrawing::piece(const QRect &place) const
{
    if (interlocks)
        return puzzlePiece(body(place));
    QPainterPath path;
    path.addRoundedRect(body(place).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    return path;
}

void TileDrawing::paint(QPainter &painter, const QRect &place, const QFont &font,
                        Qt::LayoutDirection direction) const
{
    const bool isMirrored = direction == Qt::RightToLeft;
    QTransform mirror;
    if (isMirrored)
        mirror = QTransform(-1, 0, 0, 1, 2.0 * place.left() + place.width(), 0);
    const QPainterPath path = mirror.map(piece(place));
    const QRectF inside = mirror.mapRect(body(place));

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (isFaded)
        painter.setOpacity(kFaded);
    painter.setPen(border.isValid() ? QPen(border, 1) : QPen(Qt::NoPen));
    painter.setBrush(fill);
    painter.drawPath(path);
    if (outline.isValid()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(outline, 2, isOutlineDashed ? Qt::DashLine : Qt::SolidLine));
        painter.drawPath(path);
    }

    const int left = isMirrored ? kRightPadding : kLeftPadding;
    const int right = isMirrored ? kLeftPadding : kRightPadding;
    const QRect content = inside.toRect().adjusted(left, 0, -right, 0);
    const int side = Icons::extent(QFontMetrics(font));
    const int iconX = isMirrored ? content.right() + 1 - side : content.left();
    painter.drawPixmap(QPoint(iconX, content.center().y() + 1 - side / 2),
                       Icons::pixmap(icon, side, ink, painter.device()->devicePixelRatioF()));
    const int taken = side + kIconGap;
    const QRect textPlace = content.adjusted(isMirrored ? 0 : taken, 0, isMirrored ? -taken : 0, 0);
    painter.setFont(font);
    painter.setPen(ink);
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    painter.drawText(textPlace,
                     Qt::AlignAbsolute | Qt::AlignVCenter |
                         (isMirrored ? Qt::AlignRight : Qt::AlignLeft) | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(text, Qt::ElideRight, textPlace.width()));
    painter.restore();
}

QPixmap TileDrawing::pixmap(const QFont &font, Qt::LayoutDirection direction,
                            qreal devicePixelRatio) const
{
    const QSize needed = size(font);
    QPixmap pixmap((QSizeF(needed) * devicePixelRatio).toSize());
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(painter, QRect(QPoint(), needed), font, direction);
    return pixmap;
}
