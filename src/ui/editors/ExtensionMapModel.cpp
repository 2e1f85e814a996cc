// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/ExtensionMapModel.h"

#include <algorithm>

ExtensionMapModel::ExtensionMapModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void ExtensionMapModel::setPairs(const std::vector<TExtensionMap> &pairs)
{
    if (pairs == m_pairs)
        return;
    beginResetModel();
    m_pairs = pairs;
    endResetModel();
}

int ExtensionMapModel::addBelow(int row)
{
    const int place = std::clamp(row + 1, 0, rowCount());
    beginInsertRows({}, place, place);
    m_pairs.insert(m_pairs.begin() + place, TExtensionMap());
    endInsertRows();
    Q_EMIT edited();
    return place;
}

void ExtensionMapModel::remove(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    beginRemoveRows({}, row, row);
    m_pairs.erase(m_pairs.begin() + row);
    endRemoveRows();
    Q_EMIT edited();
}

bool ExtensionMapModel::move(int row, bool up)
{
    const int other = up ? row - 1 : row + 1;
    if (row < 0 || row >= rowCount() || other < 0 || other >= rowCount())
        return false;
    beginMoveRows({}, row, row, {}, up ? other : other + 1);
    std::swap(m_pairs[static_cast<std::size_t>(row)], m_pairs[static_cast<std::size_t>(other)]);
    endMoveRows();
    Q_EMIT edited();
    return true;
}

int ExtensionMapModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_pairs.size());
}

int ExtensionMapModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : kColumnCount;
}

QVariant ExtensionMapModel::data(const QModelIndex &index, int role) const
{
    const TExtensionMap &pair = m_pairs[static_cast<std::size_t>(index.row())];
    const QString &text = index.column() == kOriginal ? pair.original : pair.target;
    switch (role) {
    case Qt::DisplayRole:
        return text.isEmpty() ? tr("(none)") : text;
    case Qt::EditRole:
        return text;
    default:
        return {};
    }
}

QVariant ExtensionMapModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return section == kOriginal ? tr("Extension") : tr("Becomes");
    case Qt::TextAlignmentRole:
        return QVariant(Qt::AlignLeading | Qt::AlignVCenter);
    default:
        return {};
    }
}

bool ExtensionMapModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid())
        return false;
    TExtensionMap &pair = m_pairs[static_cast<std::size_t>(index.row())];
    QString &text = index.column() == kOriginal ? pair.original : pair.target;
    if (text == value.toString())
        return true;
    text = value.toString();
    Q_EMIT dataChanged(index, index);
    Q_EMIT edited();
    return true;
}

Qt::ItemFlags ExtensionMapModel::flags(const QModelIndex &index) const
{
    return QAbstractTableModel::flags(index) | Qt::ItemIsEditable | Qt::ItemNeverHasChildren;
}
