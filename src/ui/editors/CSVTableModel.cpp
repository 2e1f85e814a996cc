// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/CSVTableModel.h"

#include "ui/controls/ToolTip.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestShown = 120;

} // namespace

CSVTableModel::CSVTableModel(QObject *parent)
    : QAbstractTableModel(parent)
{
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
    endResetModel();
}

void CSVTableModel::setHasHeader(bool hasHeader)
{
    if (hasHeader == m_hasHeader)
        return;
    const bool hasRow = m_rows && !m_rows->empty();
    if (hasRow && hasHeader)
        beginRemoveRows({}, 0, 0);
    else if (hasRow)
        beginInsertRows({}, 0, 0);
    m_hasHeader = hasHeader;
    if (hasRow && hasHeader)
        endRemoveRows();
    else if (hasRow)
        endInsertRows();
    if (m_columns > 0)
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, m_columns - 1);
}

void CSVTableModel::setTrimsQuotes(bool trims)
{
    if (trims == m_trimsQuotes)
        return;
    m_trimsQuotes = trims;
    if (m_columns > 0)
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, m_columns - 1);
    if (m_columns > 0 && rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, m_columns - 1));
}

int CSVTableModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid() || !m_rows || m_rows->empty())
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
