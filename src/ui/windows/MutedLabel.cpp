// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/MutedLabel.h"

#include "ui/controls/Theme.h"

#include <QApplication>
#include <QEvent>

MutedLabel::MutedLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    takeColor();
}

void MutedLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange && !m_isTaking)
        takeColor();
    QLabel::changeEvent(event);
}

void MutedLabel::takeColor()
{
    m_isTaking = true;
    QPalette own;
    own.setColor(QPalette::WindowText, ThemeColors::of(QApplication::palette()).muted);
    setPalette(own);
    m_isTaking = false;
}
