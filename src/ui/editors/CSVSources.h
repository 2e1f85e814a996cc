// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TCSVStream.h"
#include "platform/TStringTable.h"

#include <optional>

/// Which file a table was read from. Rules keep only the table, so this is known for tables that
/// were loaded since the program began, and as long as some rule has them. Main thread only.
namespace CSVSources {

struct Source
{
    QString path;
    TCSVStream::Encoding encoding = TCSVStream::Encoding::Utf8;
    int columns = 0; ///< of the longest row, which takes a while to find
};

void remember(const TStringTablePtr &table, const Source &source);
std::optional<Source> sourceOf(const TStringTablePtr &table);

} // namespace CSVSources
