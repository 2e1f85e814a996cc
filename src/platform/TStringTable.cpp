// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TStringTable.h"

#include <QThreadPool>

namespace {

constexpr std::size_t kManyRows = 10'000; ///< fewer are gone in a moment

void dispose(TStringTable *table)
{
    std::shared_ptr<TStringTable> last(table);
    QThreadPool *const pool = QThreadPool::globalInstance(); // null when the program ends
    if (table->size() >= kManyRows && pool != nullptr)
        pool->start([last = std::move(last)]() mutable { last.reset(); });
}

} // namespace

std::shared_ptr<TStringTable> newStringTable(TStringTable rows)
{
    return {std::make_unique<TStringTable>(std::move(rows)).release(), dispose};
}
