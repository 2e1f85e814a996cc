// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMainWindow;
class QWidget;

/// Where and how large the last batch window was, and its docks. Main thread only.
namespace WindowMemory {

/// Puts a new window where the last one was, within the screen that is there now; the first time
/// it gets a good size.
void restore(QMainWindow &window);
void remember(const QMainWindow &window);
/// Gives a window that is not shown yet the size of another one and a place beside it, so that all
/// of it can be seen with its frame.
void openBeside(QWidget &window, const QWidget &other);

} // namespace WindowMemory
