// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/ProblemRow.h"

#include <algorithm>

qsizetype ProblemRow::find(const TErrorLog &log, qsizetype entry, const TFileList &files)
{
    const auto wanted = log.begin() + entry;
    auto before = std::count(log.begin(), wanted, *wanted);
    qsizetype last = -1;
    for (std::size_t row = 0; row < files.size(); ++row) {
        const TErrorLog &own = files[row]->errLog();
        const auto count = std::count(own.begin(), own.end(), *wanted);
        if (count == 0)
            continue;
        last = static_cast<qsizetype>(row);
        if (count > before)
            return last;
        before -= count;
    }
    return last; // fewer have it by now
}
