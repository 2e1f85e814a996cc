// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/StringAdditions.h"
#include "document/NameGeneration.h"
#include "document/TDocument.h"
#include "document/TDocumentDrag.h"
#include "document/TDocumentDrop.h"
#include "document/TDocumentUndo.h"

#include <QCoreApplication>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kAddFiles = QT_TRANSLATE_NOOP("TDocument", "Add Files");
constexpr const char *kMoveFiles = QT_TRANSLATE_NOOP("TDocument", "Move Files");
constexpr const char *kRemoveFiles = QT_TRANSLATE_NOOP("TDocument", "Remove Files");
constexpr const char *kSortFiles = QT_TRANSLATE_NOOP("TDocument", "Sort Files");
constexpr const char *kCleaningCount =
    QT_TRANSLATE_NOOP("TDocument", "cleaning up drop... (%ld/%ld)");
constexpr const char *kGathering =
    QT_TRANSLATE_NOOP("TDocument", "gathering secondary file information");
constexpr QLatin1StringView kTargetName{"targetName"};
constexpr QLatin1StringView kParent{"parent"};
constexpr QLatin1StringView kErrLevel{"errLevel"};
constexpr qsizetype kStatusStep = 100;
/// More separate ranges of rows than this are removed as a whole, since each costs a move of all
/// that follows.
constexpr std::size_t kMostRanges = 64;

std::optional<BatchSorting::Key> sortKey(const QString &key)
{
    using Key = BatchSorting::Key;
    static const QHash<QString, Key> keys{{u"fileName"_s, Key::FileName},
                                          {kTargetName, Key::TargetName},
                                          {u"creationDate"_s, Key::CreationDate},
                                          {u"modificationDate"_s, Key::ModificationDate},
                                          {u"size"_s, Key::Size},
                                          {kParent, Key::FileName},
                                          {kErrLevel, Key::Error}};
    const auto found = keys.constFind(key);
    return found == keys.cend() ? std::nullopt : std::optional(*found);
}

QString sortText(const TFileObject &file, const QString &key)
{
    if (key == kTargetName)
        return file.targetName();
    return key == kParent ? file.parent() : file.fileName();
}

BatchSorting::Row sortRow(const TFileObject &file, BatchSorting::Key key, const QString &textKey)
{
    switch (key) {
    case BatchSorting::Key::FileName:
    case BatchSorting::Key::TargetName:
        return {sortText(file, textKey), 0};
    case BatchSorting::Key::CreationDate:
        return {QString(), file.creationDate().nanos};
    case BatchSorting::Key::ModificationDate:
        return {QString(), file.modificationDate().nanos};
    case BatchSorting::Key::Size:
        return {QString(), file.size()};
    case BatchSorting::Key::Error:
        return {QString(), file.errLevel()};
    }
    return {};
}

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

bool TDocument::hasProcessedFiles(const TFileList &files)
{
    return std::any_of(files.begin(), files.end(),
                       [](const auto &file) { return file->hasBeenProcessed(); });
}

TFileList TDocument::stripProcessed(const TFileList &files)
{
    TFileList left;
    std::copy_if(files.begin(), files.end(), std::back_inserter(left),
                 [](const auto &file) { return !file->hasBeenProcessed(); });
    return left;
}

bool TDocument::isPathInArray(const QString &path, const TFileURLs &urls)
{
    return std::any_of(urls.begin(), urls.end(),
                       [&path](const TFileURL &url) { return url.path() == path; });
}

TFileURLs TDocument::removeDupesFromArray(const TFileURLs &urls)
{
    TFileURLs result;
    HashSet128 seen;
    qsizetype done = 0;
    for (const TFileURL &url : urls) {
        if (seen.insert(Hash128::of(url.path())))
            result += url;
        if (++done % kStatusStep == 0)
            setStatus(kCleaningCount, {QString::number(done), QString::number(urls.size())});
    }
    return result;
}

bool TDocument::isURLUniqueIn(const TFileURL &url, const TFileList &files)
{
    return std::none_of(files.begin(), files.end(), [&url](const auto &file) {
        try {
            return isSameFileURL(file->sourceURL(), url);
        } catch (const ResouceUnavailableException &) {
            return false; // one of them has gone, so they are not the same
        }
    });
}

bool TDocument::tableViewAcceptDrop(const QMimeData &data, qsizetype row)
{
    if (data.hasFormat(TDocumentDrag::fileTableType())) {
        if (TDocumentDrag::documentUUID(data) != m_myUUID)
            return false;
        moveRows(TDocumentDrag::rows(data), row);
        return true;
    }
    if (data.hasFormat(TDocumentDrag::fileObjectsType()))
        return false;
    const TFileURLs urls = TDocumentDrag::fileURLs(data);
    if (urls.isEmpty())
        return false;
    addFiles(urls, row);
    return true;
}

void TDocument::addFiles(const TFileURLs &urls, qsizetype row)
{
    if (m_isClosing)
        return;
    m_drops.push_back({urls, row});
    if (m_drops.size() == 1)
        beginNextDrop();
}

void TDocument::beginNextDrop()
{
    const PendingDrop &pending = m_drops.front();
    TFileList before = m_sourceObjectArray;
    m_dropRow = pending.row;
    if (hasProcessedFiles(m_sourceObjectArray)) {
        const auto end =
            m_sourceObjectArray.begin() +
            std::clamp<qsizetype>(m_dropRow, 0, static_cast<qsizetype>(m_sourceObjectArray.size()));
        m_dropRow -= std::count_if(m_sourceObjectArray.begin(), end,
                                   [](const auto &file) { return file->hasBeenProcessed(); });
        setFiles(stripProcessed(m_sourceObjectArray));
    }
    setReadyToGo(false);
    recordFileChange(kAddFiles, std::move(before));
    m_dropAfter.reset();
    m_dropVersion = m_listVersion;
    m_gathering.suspend();
    m_drop = std::make_unique<TDocumentDrop>(
        m_services.fileManager, m_mail,
        TDocumentDrop::Batch{
            [this](const QString &status) { tell(&TDocumentHost::setStatus, status); },
            [this] { return m_sourceObjectArray; },
            [this](const TFolderPtr &folder) {
                m_theFoldersWeUse.addFolder(TFileURL::fileURLWithPath(folder->path()), true);
            },
            [this](const TFileItem &item, qsizetype total) { addDropped(item, total); },
            [this] { showDropped(); }, [this] { dropFinished(); }});
    m_drop->start(pending.urls);
}

void TDocument::addDropped(const TFileItem &item, qsizetype total)
{
    auto file = std::make_shared<TFileObject>(item);
    TRuleDict dict;
    dict.batchSize = total;
    const auto index = static_cast<qsizetype>(m_sourceObjectArray.size() + m_dropped.size()) + 1;
    file->setAttributedTargetName(NameGeneration::applyRuleSet(&m_ruleArray, *file, index, nullptr,
                                                               dict, m_theOptions, m_colorCode));
    file->setTargetName(file->attributedTargetName().string());
    file->setAttributedTargetExtension(NameGeneration::processExtensionForFile(
        *m_theExtensionHandler, *file, m_errorLog ? &*m_errorLog : nullptr, dict));
    m_forecasts.remove(file.get());
    m_theFoldersWeUse.addParentFolderIfNeededForURL(item.url);
    m_dropped.push_back(std::move(file));
}

void TDocument::showDropped()
{
    if (m_dropped.empty())
        return;
    TFileList &list = m_sourceObjectArray;
    if (m_dropVersion != m_listVersion && m_dropAfter) {
        // The list was edited meanwhile; the dropped files stay together.
        const auto found = std::find(list.begin(), list.end(), m_dropAfter);
        if (found != list.end())
            m_dropRow = found - list.begin() + 1;
    }
    m_dropRow = std::clamp<qsizetype>(m_dropRow, 0, static_cast<qsizetype>(list.size()));
    const auto count = static_cast<qsizetype>(m_dropped.size());
    Q_EMIT filesAboutToBeInserted(m_dropRow, m_dropRow + count - 1);
    list.insert(list.begin() + m_dropRow, m_dropped.begin(), m_dropped.end());
    listChanged();
    Q_EMIT filesInserted();
    m_dropRow += count;
    m_dropAfter = m_dropped.back();
    m_dropVersion = m_listVersion;
    for (auto &file : m_dropped)
        m_gathering.add(std::move(file));
    m_remainingAOps += count;
    m_dropped.clear();
}

void TDocument::dropFinished()
{
    m_drop.reset();
    m_dropAfter.reset();
    m_drops.pop_front();
    redisplay();
    Q_EMIT foldersChanged();
    if (!m_drops.empty())
        return beginNextDrop();
    if (m_remainingAOps > 0) {
        setStatus(kGathering);
        tell(&TDocumentHost::setBusy, true);
    } else {
        idleStatus();
    }
    m_gathering.resume();
}

void TDocument::cancelDrops()
{
    if (m_drops.empty())
        return;
    m_drop.reset();
    m_drops.clear();
    m_dropped.clear();
    m_dropAfter.reset();
    m_gathering.resume();
}

void TDocument::listChanged()
{
    ++m_listVersion;
    m_facts.reset();
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

std::vector<qsizetype> TDocument::sorted(const BatchSorting::Order &order,
                                         const QString &textKey) const
{
    std::vector<BatchSorting::Row> rows;
    rows.reserve(m_sourceObjectArray.size());
    for (const auto &file : m_sourceObjectArray)
        rows.push_back(sortRow(*file, order.key, textKey));
    return BatchSorting::sortedOrder(rows, order);
}

void TDocument::sortNow(int item)
{
    tell(&TDocumentHost::resetSortMenu);
    const auto order = BatchSorting::orderForMenuItem(item);
    if (!order)
        return;
    TFileList before = m_sourceObjectArray;
    reorderFiles(sorted(*order, order->key == BatchSorting::Key::TargetName ? QString(kTargetName)
                                                                            : QString()));
    recordFileChange(kSortFiles, std::move(before));
    redisplay();
    doBackgroundRunIfUpdate();
}

void TDocument::sortByColumn(const QString &key, bool ascending)
{
    const auto found = sortKey(key);
    if (!found)
        return;
    const bool analyse = key != kErrLevel;
    TFileList before = m_sourceObjectArray;
    reorderFiles(sorted({*found, ascending, true}, key));
    recordFileChange(kSortFiles, std::move(before), analyse);
    redisplay();
    if (analyse)
        doBackgroundRunIfUpdate();
}

void TDocument::doSearch(const QString &text)
{
    std::vector<qsizetype> rows;
    for (std::size_t row = 0; row < m_sourceObjectArray.size() && !text.isEmpty(); ++row) {
        const TFileObject &file = *m_sourceObjectArray[row];
        if (containsString(file.fileName(), text, false) ||
            containsString(file.targetName(), text, false))
            rows.push_back(static_cast<qsizetype>(row));
    }
    tell(&TDocumentHost::selectFiles, rows);
    if (!text.isEmpty())
        tell(&TDocumentHost::focusFileTable);
}
