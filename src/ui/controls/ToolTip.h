// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Tool tips for texts that come from files: whatever looks like markup stays text.
namespace ToolTip {

/// A plain text in lines that fit on a screen however long it is.
QString of(const QString &text);

} // namespace ToolTip
