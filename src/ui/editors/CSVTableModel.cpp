// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/CSVTableModel.h"

#include "ui/controls/ToolTip.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestShown = 120;
constexpr int kPortion = 200'000; ///< rows for which a view needs no more than some milliseconds

} // namespace

CSVTableModel::CSVTableModel(QObject *parent)
    : QAbstractTableModel(parent)
{
    connect(&m_growing, &QTimer::timeout, this,
            [this] { letIn(std::min(tableRows() - m_shown, kPortion)); });
}

int CSVTableModel::columnsOf(const TStringTablePtr &rows)
{
    if (!rows || rows->empty())
        return 0;
    const auto longest = std::ranges::max_element(*rows, {}, &QStringList::size);
    return static_cast<int>(std::min<qsizetype>(longest->size(), std::numeric_limits<int>::max()));
}

void CSVTableModel::setTable(const TStringTablePtr &rows, int columns)
{
    if (rows == m_rows)
        return;
    beginResetModel();
    m_rows = rows;
    m_columns = columns;
    m_shown =
        std::min(tableRows(), std::max(m_shown, kPortion)); // views have room for the old ones
    endResetModel();
    m_growing.start(0);
}

void CSVTableModel::letIn(int rows)
{
    if (rows > 0) {
        beginInsertRows({}, m_shown, m_shown + rows - 1);
        m_shown += rows;
        endInsertRows();
    }
    if (m_shown == tableRows())
        m_growing.stop();
}

/// All rows move by one. For views one comes or goes at the end, where that costs nothing.
void CSVTableModel::setHasHeader(bool hasHeader)
{
    if (hasHeader == m_hasHeader)
        return;
    const bool isWhole = m_shown == tableRows();
    if (hasHeader && isWhole && m_shown > 0) {
        beginRemoveRows({}, m_shown - 1, m_shown - 1);
        --m_shown;
        endRemoveRows();
    }
    m_hasHeader = hasHeader;
    if (isWhole)
        letIn(tableRows() - m_shown);
    cellsChanged();
}

void CSVTableModel::setTrimsQuotes(bool trims)
{
    if (trims == m_trimsQuotes)
        return;
    m_trimsQuotes = trims;
    cellsChanged();
}

void CSVTableModel::cellsChanged()
{
    if (m_columns > 0)
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, m_columns - 1);
    if (m_columns > 0 && m_shown > 0)
        Q_EMIT dataChanged(index(0, 0), index(m_shown - 1, m_columns - 1));
}

int CSVTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_shown;
}

int CSVTableModel::tableRows() const
{
    if (!m_rows || m_rows->empty())
        return 0;
    const std::size_t rows = m_rows->size() - (m_hasHeader ? 1 : 0);
    return static_cast<int>(std::min<std::size_t>(rows, std::numeric_limits<int>::max()));
}

int CSVTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns;
}

QString CSVTableModel::cell(std::size_t row, int column) const
{
    const QStringList &cells = (*m_rows)[row];
    if (column >= cells.size())
        return {};
    return m_trimsQuotes ? TCSVRule::withoutOuterQuotes(cells[column]) : cells[column];
}

QVariant CSVTableModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const auto row = static_cast<std::size_t>(index.row()) + (m_hasHeader ? 1 : 0);
    const QString text = cell(row, index.column());
    return role == Qt::ToolTipRole ? ToolTip::of(text) : text.left(kLongestShown).simplified();
}

QString CSVTableModel::columnTitle(int column) const
{
    const QString number = QString::number(column + 1);
    const QString title = m_hasHeader && m_rows && !m_rows->empty()
                              ? cell(0, column).left(kLongestShown).simplified()
                              : QString();
    return title.isEmpty() ? number : u"%1 \u00b7 %2"_s.arg(number, title);
}

QVariant CSVTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal) {
        if (role == Qt::ToolTipRole)
            return tr("Use this column");
        return role == Qt::DisplayRole ? columnTitle(section) : QVariant();
    }
    switch (role) {
    case Qt::DisplayRole:
        return QString::number(section + 1);
    case Qt::TextAlignmentRole:
        return QVariant(Qt::AlignCenter);
    default:
        return {};
    }
}
