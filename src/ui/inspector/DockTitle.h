// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QDockWidget;

/// The title of a dock as quiet as the rest of its window: its name and a button that closes it.
/// Dragging it moves the dock.
class DockTitle : public QWidget
{
    Q_OBJECT

public:
    explicit DockTitle(QDockWidget &dock);
};
