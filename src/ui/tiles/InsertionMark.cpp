// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/InsertionMark.h"

#include "ui/controls/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr qreal kLine = 3;
constexpr qreal kCap = 4; ///< height of the bars at its ends
constexpr qreal kSeam = 1;

} // namespace

InsertionMark::InsertionMark(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void InsertionMark::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    const QRectF all = QRectF(rect()).adjusted(kSeam, kSeam, -kSeam, -kSeam);
    QRectF line(0, all.top(), kLine, all.height());
    line.moveCenter(all.center());
    QRectF cap(all.topLeft(), QSizeF(all.width(), kCap));
    QPainterPath mark;
    mark.setFillRule(Qt::WindingFill);
    mark.addRect(line);
    mark.addRoundedRect(cap, kCap / 2, kCap / 2);
    cap.moveBottom(all.bottom());
    mark.addRoundedRect(cap, kCap / 2, kCap / 2);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(mark, QPen(colors.card, 2 * kSeam)); // apart from tiles of any colour
    painter.fillPath(mark, colors.accent);
}
