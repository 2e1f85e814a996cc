// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/InsertionMark.h"

#include "ui/controls/Theme.h"

#include <QPainter>

InsertionMark::InsertionMark(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void InsertionMark::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ThemeColors::of(palette()).accent);
    painter.drawRoundedRect(QRectF(rect()), width() / 2.0, width() / 2.0);
}
