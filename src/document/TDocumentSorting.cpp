// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/StringAdditions.h"
#include "document/TDocument.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kSortFiles = QT_TRANSLATE_NOOP("TDocument", "Sort Files");
constexpr QLatin1StringView kTargetName{"targetName"};
constexpr QLatin1StringView kParent{"parent"};
constexpr QLatin1StringView kErrLevel{"errLevel"};

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

} // namespace

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
    else
        orderChanged();
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
