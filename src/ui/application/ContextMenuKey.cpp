// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/application/ContextMenuKey.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QWidget>

ContextMenuKey::ContextMenuKey(QObject *parent)
    : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool ContextMenuKey::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto &key = static_cast<const QKeyEvent &>(*event);
    QWidget *const focus = QApplication::focusWidget();
    if (key.key() != Qt::Key_F10 || key.modifiers() != Qt::ShiftModifier || focus == nullptr ||
        watched != focus || QApplication::activePopupWidget() != nullptr)
        return false;
    const QPoint position = focus->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent wish(QContextMenuEvent::Keyboard, position, focus->mapToGlobal(position));
    QCoreApplication::sendEvent(focus, &wish);
    return true;
}
