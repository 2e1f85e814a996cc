// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

/// Shift+F10 opens the context menu of what has the keyboard, as the Menu key does, which many
/// keyboards lack and which is the only one that Qt knows here. Belongs to the application.
class ContextMenuKey : public QObject
{
public:
    explicit ContextMenuKey(QObject *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
