// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"

namespace ProblemRow {

/// The row of the file that an entry of a batch's log is about. A log names no files; but a file
/// has its own problems in words that are the same, and the files that have one come in the order
/// of the log. -1 when no file has the problem.
qsizetype find(const TErrorLog &log, qsizetype entry, const TFileList &files);

} // namespace ProblemRow
