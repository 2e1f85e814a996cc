// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/TileButton.h"

#include <QEvent>
#include <QPainter>

QSize TileButton::sizeHint() const
{
    return drawing().size(font());
}

void TileButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawing().paint(painter, rect(), font(), layoutDirection());
}

void TileButton::focusInEvent(QFocusEvent *event)
{
    QAbstractButton::focusInEvent(event);
    Q_EMIT focused();
}

void TileButton::changeEvent(QEvent *event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGeometry();
    update();
}
