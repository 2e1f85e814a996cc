// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FileTableModel.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/SizeText.h"
#include "ui/controls/ToolTip.h"
#include "ui/table/FileCells.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

/// Milliseconds until changes are counted; many of them come together.
constexpr int kKindsDelay = 30;

struct ColumnText
{
    QLatin1StringView sortKey;
    const char *title;
    const char *toolTip;
};
constexpr std::array<ColumnText, FileTableModel::ColumnCount> kColumns{{
    {"errLevel"_L1, "", QT_TRANSLATE_NOOP("FileTableModel", "Problems")},
    {"fileName"_L1, QT_TRANSLATE_NOOP("FileTableModel", "Name"), ""},
    {"targetName"_L1, QT_TRANSLATE_NOOP("FileTableModel", "New name"), ""},
    {"size"_L1, QT_TRANSLATE_NOOP("FileTableModel", "Size"), ""},
    {"modificationDate"_L1, QT_TRANSLATE_NOOP("FileTableModel", "Modified"), ""},
    {"creationDate"_L1, QT_TRANSLATE_NOOP("FileTableModel", "Created"), ""},
    {"parent"_L1, QT_TRANSLATE_NOOP("FileTableModel", "Folder"), ""},
}};

const ColumnText &columnText(int column)
{
    return kColumns[static_cast<std::size_t>(column)];
}

} // namespace

FileTableModel::FileTableModel(TDocument &document, QObject *parent)
    : QAbstractTableModel(parent)
    , m_document(document)
    , m_kinds(document)
{
    using D = TDocument;
    using M = FileTableModel;
    connect(&document, &D::filesAboutToBeInserted, this, &M::insertStarts);
    connect(&document, &D::filesInserted, this, &M::insertEnds);
    connect(&document, &D::filesAboutToBeRemoved, this, &M::removeStarts);
    connect(&document, &D::filesRemoved, this, &M::removeEnds);
    connect(&document, &D::filesAboutToBeReordered, this, &M::reorderStarts);
    connect(&document, &D::filesReordered, this, &M::reorderEnds);
    connect(&document, &D::filesAboutToBeReplaced, this, &M::replaceStarts);
    connect(&document, &D::filesReplaced, this, &M::replaceEnds);
    connect(&document, &D::filesChanged, this, &M::changed);
    m_kindsTimer.setSingleShot(true);
    connect(&m_kindsTimer, &QTimer::timeout, this, &M::updateKinds);
    touchKinds();
}

const TFileObject &FileTableModel::file(int row) const
{
    return *m_document.sourceObjectArray()[static_cast<std::size_t>(documentRow(row))];
}

std::optional<ForecastStepper::Forecast> FileTableModel::forecast(int row) const
{
    return m_document.forecastFor(file(row));
}

NameGeneration::Extension FileTableModel::extension(int row) const
{
    return FileCells::shownExtension(m_document, file(row));
}

qsizetype FileTableModel::documentRow(int row) const
{
    return isFiltered() ? m_rows[static_cast<std::size_t>(row)] : row;
}

int FileTableModel::rowAtOrAfter(qsizetype documentRow) const
{
    if (!isFiltered())
        return static_cast<int>(std::clamp<qsizetype>(documentRow, 0, rowCount()));
    const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), documentRow);
    return static_cast<int>(found - m_rows.begin());
}

int FileTableModel::rowOf(qsizetype documentRow) const
{
    const int row = rowAtOrAfter(documentRow);
    return row < rowCount() && this->documentRow(row) == documentRow ? row : -1;
}

QLatin1StringView FileTableModel::sortKey(int column)
{
    return columnText(column).sortKey;
}

int FileTableModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    // While files come or go, views are told first.
    return static_cast<int>(isFiltered() ? static_cast<qsizetype>(m_rows.size())
                                         : m_kinds.count(Filter::All));
}

int FileTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

Qt::ItemFlags FileTableModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled |
           Qt::ItemNeverHasChildren;
}

QVariant FileTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    const ColumnText &column = columnText(section);
    const bool hasTitle = *column.title != '\0';
    if (role == Qt::TextAlignmentRole && section == Size)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::DisplayRole)
        return hasTitle ? tr(column.title) : QString();
    if (role == Qt::AccessibleTextRole || (role == Qt::ToolTipRole && !hasTitle))
        return tr(hasTitle ? column.title : column.toolTip);
    return {};
}

QVariant FileTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::ToolTipRole:
        return toolTip(row, index.column());
    case Qt::AccessibleTextRole:
        if (index.column() == Status)
            return FileCells::stateText(file(row), forecast(row));
        if (index.column() == NewName)
            return newNameInWords(row);
        return text(row, index.column());
    case Qt::TextAlignmentRole:
        return headerData(index.column(), Qt::Horizontal, role);
    default:
        return {};
    }
}

QString FileTableModel::text(int row, int column) const
{
    const TFileObject &entry = file(row);
    switch (column) {
    case Name:
        return ByteNames::forDisplay(FileCells::currentName(entry));
    case NewName:
        return ByteNames::forDisplay(FileCells::shownName(entry) + extension(row).text);
    case Size:
        return SizeText::of(entry.size());
    case Modified:
        return FileCells::dateText(entry.modificationDate());
    case Created:
        return FileCells::dateText(entry.creationDate());
    case Folder:
        return ByteNames::forDisplay(entry.parent());
    default:
        return {};
    }
}

/// For those who cannot see how it is painted.
QString FileTableModel::newNameInWords(int row) const
{
    QStringList words{text(row, NewName)};
    words += FileCells::note(file(row), forecast(row), extension(row)).text;
    if (m_document.areNamesOld())
        words += tr("(out of date)");
    words.removeAll(QString());
    return words.join(u' ');
}

QString FileTableModel::newNameToolTip(int row) const
{
    QString tip = FileCells::newNameInFull(file(row), forecast(row), extension(row));
    if (m_document.areNamesOld())
        tip += u'\n' + tr("Out of date: Test Run (F5) shows the new name");
    return ToolTip::of(tip);
}

QString FileTableModel::shortText(const QModelIndex &index) const
{
    switch (index.column()) {
    case Modified:
        return FileCells::dayText(file(index.row()).modificationDate());
    case Created:
        return FileCells::dayText(file(index.row()).creationDate());
    default:
        return {};
    }
}

QString FileTableModel::toolTip(int row, int column) const
{
    const TFileObject &entry = file(row);
    switch (column) {
    case Status:
        return FileCells::stateToolTip(entry, forecast(row));
    case Name:
        return ToolTip::of(ByteNames::forDisplay(entry.thePath()));
    case NewName:
        return newNameToolTip(row);
    case Modified:
    case Created:
        return text(row, column);
    case Folder:
        return ToolTip::of(ByteNames::forDisplay(entry.item().url.folder()->path()));
    default:
        return {};
    }
}

void FileTableModel::touchKinds()
{
    if (!m_kindsTimer.isActive())
        m_kindsTimer.start(kKindsDelay);
}

void FileTableModel::updateKinds()
{
    if (!m_kinds.update())
        m_kindsTimer.start(0);
    else if (isFiltered())
        showPassing();
    Q_EMIT countsChanged();
}

void FileTableModel::insertStarts(qsizetype first, qsizetype last)
{
    m_first = first;
    m_last = last;
    if (!isFiltered())
        beginInsertRows({}, static_cast<int>(first), static_cast<int>(last));
}

void FileTableModel::insertEnds()
{
    m_kinds.inserted(m_first, m_last);
    touchKinds();
    if (!isFiltered())
        return endInsertRows();
    const int at = rowAtOrAfter(m_first);
    for (auto row = m_rows.begin() + at; row != m_rows.end(); ++row)
        *row += static_cast<qint32>(m_last - m_first + 1);
    std::vector<qint32> shown;
    for (qsizetype row = m_first; row <= m_last; ++row) {
        if (m_kinds.passes(row, m_filter))
            shown.push_back(static_cast<qint32>(row));
    }
    if (shown.empty())
        return;
    beginInsertRows({}, at, at + static_cast<int>(shown.size()) - 1);
    m_rows.insert(m_rows.begin() + at, shown.begin(), shown.end());
    endInsertRows();
}

void FileTableModel::removeStarts(qsizetype first, qsizetype last)
{
    m_first = first;
    m_last = last;
    const int from = rowAtOrAfter(first);
    const int to = rowAtOrAfter(last + 1);
    m_isRemoving = from < to;
    if (m_isRemoving)
        beginRemoveRows({}, from, to - 1);
}

void FileTableModel::removeEnds()
{
    m_kinds.removed(m_first, m_last);
    touchKinds();
    if (isFiltered()) {
        const auto from = std::lower_bound(m_rows.begin(), m_rows.end(), m_first);
        auto rest = m_rows.erase(from, std::upper_bound(from, m_rows.end(), m_last));
        for (; rest != m_rows.end(); ++rest)
            *rest -= static_cast<qint32>(m_last - m_first + 1);
    }
    if (m_isRemoving)
        endRemoveRows();
}

void FileTableModel::reorderStarts()
{
    Q_EMIT rowsAboutToBeMapped();
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
}

void FileTableModel::reorderEnds(const std::vector<qsizetype> &newRows)
{
    m_kinds.reordered(newRows);
    touchKinds();
    std::vector<qsizetype> mapping = newRows;
    if (isFiltered()) {
        const std::vector<qint32> before = m_rows;
        std::transform(m_rows.begin(), m_rows.end(), m_rows.begin(), [&newRows](qint32 row) {
            return static_cast<qint32>(newRows[static_cast<std::size_t>(row)]);
        });
        std::sort(m_rows.begin(), m_rows.end());
        mapping.resize(before.size());
        std::transform(before.begin(), before.end(), mapping.begin(),
                       [&](qint32 row) { return rowOf(newRows[static_cast<std::size_t>(row)]); });
    }
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    for (const QModelIndex &old : from)
        to += index(static_cast<int>(mapping[static_cast<std::size_t>(old.row())]), old.column());
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged({}, VerticalSortHint);
    Q_EMIT rowsMapped(mapping);
}

void FileTableModel::replaceStarts()
{
    m_before = m_document.sourceObjectArray();
    Q_EMIT rowsAboutToBeMapped();
    beginResetModel();
}

void FileTableModel::replaceEnds()
{
    QHash<const TFileObject *, qsizetype> oldRows;
    const int count = rowCount();
    oldRows.reserve(count);
    for (int row = 0; row < count; ++row)
        oldRows.insert(m_before[static_cast<std::size_t>(documentRow(row))].get(), row);
    m_before.clear();
    m_kinds.replaced();
    touchKinds();
    if (isFiltered()) { // files show again once it is known whether they pass
        m_rows.resize(m_document.sourceObjectArray().size());
        std::iota(m_rows.begin(), m_rows.end(), 0);
    }
    std::vector<qsizetype> mapping(static_cast<std::size_t>(count), -1);
    for (int row = 0; row < rowCount(); ++row) {
        const auto found = oldRows.constFind(&file(row));
        if (found != oldRows.cend())
            mapping[static_cast<std::size_t>(*found)] = row;
    }
    endResetModel();
    Q_EMIT rowsMapped(mapping);
}

void FileTableModel::changed(qsizetype first, qsizetype last)
{
    if (first > last)
        return;
    m_kinds.changed(first, last);
    touchKinds();
    const int from = rowAtOrAfter(first);
    const int to = rowAtOrAfter(last + 1);
    if (from < to)
        Q_EMIT dataChanged(index(from, 0), index(to - 1, ColumnCount - 1));
}

std::vector<qint32> FileTableModel::passing(Filter filter) const
{
    std::vector<qint32> rows;
    for (qsizetype row = 0; row < m_kinds.count(Filter::All); ++row) {
        if (m_kinds.passes(row, filter))
            rows.push_back(static_cast<qint32>(row));
    }
    return rows;
}

void FileTableModel::setFilter(Filter filter)
{
    if (filter != m_filter)
        show(filter, passing(filter));
}

void FileTableModel::showPassing()
{
    std::vector<qint32> rows = passing(m_filter);
    if (rows != m_rows)
        show(m_filter, std::move(rows));
}

void FileTableModel::show(Filter filter, std::vector<qint32> rows)
{
    const std::vector<qint32> before = isFiltered() ? m_rows : passing(Filter::All);
    Q_EMIT rowsAboutToBeMapped();
    beginResetModel();
    std::vector<qsizetype> mapping;
    mapping.reserve(before.size());
    auto place = rows.begin();
    for (const qint32 row : before) {
        while (place != rows.end() && *place < row)
            ++place;
        mapping.push_back(place != rows.end() && *place == row ? place - rows.begin() : -1);
    }
    m_filter = filter;
    if (isFiltered())
        m_rows = std::move(rows);
    else
        m_rows = {};
    endResetModel();
    Q_EMIT rowsMapped(mapping);
}
