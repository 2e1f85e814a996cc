// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace AccessibleLabel {

/// For a pop-up list that has no label beside it: assistive tools take what is chosen in it for its
/// name and ask a label what it is about. Gives it a hidden one with its accessible name; to be
/// called when the control is among its siblings.
void add(QWidget &control);

} // namespace AccessibleLabel
