// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMainWindow;

/// Where and how large the last batch window was, and its docks. Main thread only.
namespace WindowMemory {

/// Puts a new window where the last one was, within the screens that are there; the first time it
/// gets a good size.
void restore(QMainWindow &window);
void remember(const QMainWindow &window);

} // namespace WindowMemory
