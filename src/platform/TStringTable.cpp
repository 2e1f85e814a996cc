// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TStringTable.h"

#include <QByteArray>
#include <QThreadPool>

#include <algorithm>

namespace {

constexpr std::size_t kManyRows = 10'000;  ///< fewer are gone in a moment
constexpr qsizetype kLargeBlock = 100'000; ///< bytes

/// The C library joins all pieces that were freed as soon as anybody wants a large block. That
/// would be the main thread, and take it half a second; so it is wanted here, after a few each.
void clear(TStringTable &table)
{
    while (!table.empty()) {
        table.resize(table.size() - std::min(table.size(), kManyRows));
        static_cast<void>(QByteArray(kLargeBlock, Qt::Uninitialized));
    }
}

void dispose(TStringTable *table)
{
    std::shared_ptr<TStringTable> last(table);
    QThreadPool *const pool = QThreadPool::globalInstance(); // null when the program ends
    if (table->size() >= kManyRows && pool != nullptr)
        pool->start([last = std::move(last)] { clear(*last); });
}

} // namespace

std::shared_ptr<TStringTable> newStringTable(TStringTable rows)
{
    return {std::make_unique<TStringTable>(std::move(rows)).release(), dispose};
}
