// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocument.h"
#include "document/TDocumentUndo.h"

#include <algorithm>

namespace {

constexpr const char *kMoveFiles = QT_TRANSLATE_NOOP("TDocument", "Move Files");
constexpr const char *kRemoveFiles = QT_TRANSLATE_NOOP("TDocument", "Remove Files");
/// More separate ranges of rows than this are removed as a whole, since each costs a move of all
/// that follows.
constexpr std::size_t kMostRanges = 64;

struct Range
{
    qsizetype first;
    qsizetype last;
};

std::vector<Range> rangesOf(const std::vector<qsizetype> &rows)
{
    std::vector<Range> ranges;
    for (const qsizetype row : rows) {
        if (!ranges.empty() && ranges.back().last + 1 == row)
            ranges.back().last = row;
        else
            ranges.push_back({row, row});
    }
    return ranges;
}

/// Rows that exist, ascending and each once.
std::vector<qsizetype> existing(std::vector<qsizetype> rows, std::size_t count)
{
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    std::erase_if(
        rows, [count](qsizetype row) { return row < 0 || row >= static_cast<qsizetype>(count); });
    return rows;
}

/// The order of a list whose marked rows were taken out and put in again before a row.
std::vector<qsizetype> movedOrder(std::size_t count, const std::vector<qsizetype> &rows,
                                  qsizetype beforeRow)
{
    const auto earlier = std::lower_bound(rows.begin(), rows.end(), beforeRow) - rows.begin();
    const auto target =
        std::clamp<qsizetype>(beforeRow - earlier, 0, static_cast<qsizetype>(count - rows.size()));
    std::vector<qsizetype> order;
    order.reserve(count);
    auto moved = rows.begin();
    for (qsizetype row = 0; row < static_cast<qsizetype>(count); ++row) {
        if (moved != rows.end() && *moved == row)
            ++moved;
        else
            order.push_back(row);
    }
    order.insert(order.begin() + target, rows.begin(), rows.end());
    return order;
}

} // namespace

void TDocument::listChanged()
{
    ++m_listVersion;
    m_facts.listChanged();
    batchChanged();
}

void TDocument::redisplay()
{
    Q_EMIT filesChanged(0, static_cast<qsizetype>(m_sourceObjectArray.size()) - 1);
}

void TDocument::recordFileChange(const char *name, TFileList before, bool analyse)
{
    m_undoStack.push(std::make_unique<TDocumentUndo<TFileList>>(text(name), std::move(before),
                                                                [this, analyse](TFileList &files) {
                                                                    undoFileArrayChange(files);
                                                                    if (analyse)
                                                                        doBackgroundRunIfUpdate();
                                                                    else
                                                                        orderChanged();
                                                                })
                         .release()); // the stack owns it
}

void TDocument::undoFileArrayChange(TFileList &files)
{
    cancelDrops();
    TFileList current = m_sourceObjectArray;
    setFiles(std::move(files));
    files = std::move(current);
    redisplay();
    idleStatus();
    if (m_remainingAOps > 0 || m_hasUngathered)
        gatherOnlyListed();
}

void TDocument::setFiles(TFileList files)
{
    if (files.size() == m_sourceObjectArray.size()) {
        QHash<const TFileObject *, qsizetype> places;
        places.reserve(static_cast<qsizetype>(files.size()));
        for (std::size_t i = 0; i < m_sourceObjectArray.size(); ++i)
            places.insert(m_sourceObjectArray[i].get(), static_cast<qsizetype>(i));
        std::vector<qsizetype> order;
        for (const auto &file : files)
            order.push_back(places.value(file.get(), -1));
        if (std::find(order.begin(), order.end(), -1) == order.end())
            return reorderFiles(order);
    }
    Q_EMIT filesAboutToBeReplaced();
    m_sourceObjectArray = std::move(files);
    listChanged();
    Q_EMIT filesReplaced();
}

void TDocument::reorderFiles(const std::vector<qsizetype> &order)
{
    Q_EMIT filesAboutToBeReordered();
    TFileList reordered;
    reordered.reserve(order.size());
    std::vector<qsizetype> newRows(order.size());
    for (std::size_t row = 0; row < order.size(); ++row) {
        const auto old = static_cast<std::size_t>(order[row]);
        reordered.push_back(std::move(m_sourceObjectArray[old]));
        newRows[old] = static_cast<qsizetype>(row);
    }
    m_sourceObjectArray = std::move(reordered);
    listChanged();
    Q_EMIT filesReordered(newRows);
}

void TDocument::moveRows(const std::vector<qsizetype> &rows, qsizetype beforeRow)
{
    const std::vector<qsizetype> moved = existing(rows, m_sourceObjectArray.size());
    if (moved.empty())
        return;
    TFileList before = m_sourceObjectArray;
    reorderFiles(movedOrder(m_sourceObjectArray.size(), moved, beforeRow));
    recordFileChange(kMoveFiles, std::move(before));
    redisplay();
    doBackgroundRunIfUpdate();
}

void TDocument::removeFiles(const std::vector<qsizetype> &rows)
{
    const std::vector<qsizetype> removed = existing(rows, m_sourceObjectArray.size());
    if (removed.empty())
        return;
    recordFileChange(kRemoveFiles, m_sourceObjectArray);
    removeRows(removed);
    tell(&TDocumentHost::selectFiles, std::vector<qsizetype>());
    redisplay();
    doBackgroundRunIfUpdate();
    idleStatus();
    if (m_remainingAOps > 0)
        gatherOnlyListed();
}

void TDocument::removeRows(const std::vector<qsizetype> &rows)
{
    const std::vector<Range> ranges = rangesOf(rows);
    if (ranges.size() > kMostRanges) {
        TFileList left;
        auto removed = rows.begin();
        for (std::size_t row = 0; row < m_sourceObjectArray.size(); ++row) {
            if (removed != rows.end() && *removed == static_cast<qsizetype>(row))
                ++removed;
            else
                left.push_back(m_sourceObjectArray[row]);
        }
        return setFiles(std::move(left));
    }
    for (auto range = ranges.rbegin(); range != ranges.rend(); ++range) {
        Q_EMIT filesAboutToBeRemoved(range->first, range->last);
        m_sourceObjectArray.erase(m_sourceObjectArray.begin() + range->first,
                                  m_sourceObjectArray.begin() + range->last + 1);
        listChanged();
        Q_EMIT filesRemoved();
    }
}
