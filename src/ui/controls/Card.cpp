// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/Card.h"

#include "ui/controls/Theme.h"

#include <QEvent>
#include <QPainter>

Card::Card(QWidget *parent)
    : QWidget(parent)
{
}

void Card::showFocusOf(QWidget *view)
{
    m_view = view;
    view->installEventFilter(this);
}

bool Card::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    return QWidget::eventFilter(watched, event);
}

void Card::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isLit = m_view != nullptr && m_view->hasFocus();
    painter.setPen(isLit ? QPen(colors.accent, 1.5) : QPen(colors.border, 1));
    painter.setBrush(colors.card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kCardRadius,
                            Theme::kCardRadius);
}
