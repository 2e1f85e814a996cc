// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/WindowKeys.h"

#include <QShortcut>
#include <QWidget>

void WindowKeys::add(QWidget &window, const std::function<void()> &quit)
{
    auto *close = new QShortcut(Qt::CTRL | Qt::Key_W, &window);
    QObject::connect(close, &QShortcut::activated, &window, &QWidget::close);
    auto *end = new QShortcut(Qt::CTRL | Qt::Key_Q, &window);
    QObject::connect(end, &QShortcut::activated, &window, quit);
}
