// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QWidget;

/// The keys that every window understands, also those without a menu of their own.
namespace WindowKeys {

/// Ctrl+W closes the window, Ctrl+Q calls quit.
void add(QWidget &window, const std::function<void()> &quit);

} // namespace WindowKeys
