// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/CSVSources.h"

#include <vector>

namespace {

struct Known
{
    std::weak_ptr<const TStringTable> table;
    CSVSources::Source source;
};

std::vector<Known> &known()
{
    static std::vector<Known> all;
    return all;
}

} // namespace

void CSVSources::remember(const TStringTablePtr &table, const Source &source)
{
    std::erase_if(known(), [](const Known &each) { return each.table.expired(); });
    known().push_back({table, source});
}

std::optional<CSVSources::Source> CSVSources::sourceOf(const TStringTablePtr &table)
{
    for (const Known &each : known())
        if (table && each.table.lock() == table)
            return each.source;
    return std::nullopt;
}
