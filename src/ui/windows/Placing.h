// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QWidget;

/// Where windows stand. Some window systems place windows themselves and say nothing about it.
namespace Placing {

/// Moves a window that is not shown yet over the middle of another one, within its screen.
void centre(QWidget &window, const QWidget &over);
/// Calls back once the window is on the screen, where the window manager has put it; at once when
/// it is already, never when it goes away before.
void onceOnScreen(QWidget &window, std::function<void()> work);

} // namespace Placing
