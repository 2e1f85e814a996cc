// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/Card.h"

#include "ui/controls/Theme.h"

#include <QPainter>

Card::Card(QWidget *parent)
    : QWidget(parent)
{
}

void Card::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors.border, 1));
    painter.setBrush(colors.card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kCardRadius,
                            Theme::kCardRadius);
}
