// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"

class QDropEvent;

/// What may be dropped where the files of a batch are shown.
namespace FileDrops {

/// Files of the desktop, or rows of this document's own table.
bool isWelcome(const QMimeData &data, const TDocument &document);
/// Accepts a welcome drag with the action that leaves dragged files where they are; rows are moved.
/// False, and the event ignored, when there is no such action.
bool accept(QDropEvent &event, const TDocument &document);

} // namespace FileDrops
