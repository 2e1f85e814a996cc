// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Texts of users as they can be shown on one line. Main thread only.
namespace ShownText {

/// A rule's name on its tile: in quotation marks when blanks at its ends, or nothing at all, would
/// otherwise be seen; cut where no tile could show more.
QString tileName(const QString &name);

} // namespace ShownText
