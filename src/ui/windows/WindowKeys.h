// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QObject;
class QWidget;

/// The keys that every window understands, also those without a menu of their own.
namespace WindowKeys {

/// Ctrl+W closes the window, Ctrl+Q calls quit.
void add(QWidget &window, const std::function<void()> &quit);
/// Adds them to every dialog of the program when it is shown, also to questions, sheets and panels,
/// before which the menu of their window is silent. As long as the owner lives.
void addToDialogs(QObject &owner, const std::function<void()> &quit);

} // namespace WindowKeys
