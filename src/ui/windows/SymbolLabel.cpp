// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/SymbolLabel.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"

#include <QPainter>

SymbolLabel::SymbolLabel(QLatin1StringView icon, int size, QWidget *parent)
    : QWidget(parent)
    , m_icon(icon)
    , m_size(size)
{
    setFixedSize(size, size);
}

void SymbolLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawPixmap(
        0, 0,
        Icons::pixmap(m_icon, m_size, ThemeColors::of(palette()).accent, devicePixelRatioF()));
}
