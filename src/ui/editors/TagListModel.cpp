// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TagListModel.h"

#include "ui/controls/ToolTip.h"

#include <algorithm>

namespace {

constexpr qsizetype kLongestShown = 200; ///< longer values are cut in the list

} // namespace

TagListModel::TagListModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

TagListModel::Row TagListModel::rowFor(const QString &tag) const
{
    return {tag, m_valueOf ? m_valueOf(tag) : std::nullopt};
}

void TagListModel::setTags(const QStringList &offered, const QString &placeholder)
{
    beginResetModel();
    m_rows.clear();
    for (const QString &tag : offered)
        m_rows.push_back(rowFor(tag));
    m_offered = static_cast<int>(m_rows.size());
    m_placeholder = placeholder;
    endResetModel();
}

void TagListModel::setChosenTag(const QString &tag)
{
    if (m_offered == 0 || rowOf(tag) >= 0)
        return;
    if (rowCount() > m_offered) {
        beginRemoveRows({}, m_offered, m_offered);
        m_rows.pop_back();
        endRemoveRows();
    }
    beginInsertRows({}, m_offered, m_offered);
    m_rows.push_back(rowFor(tag));
    endInsertRows();
}

void TagListModel::setValues(const ValueOf &valueOf)
{
    m_valueOf = valueOf;
    for (Row &row : m_rows)
        row = rowFor(row.tag);
    if (!m_rows.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kColumnCount - 1));
}

int TagListModel::rowOf(const QString &tag) const
{
    const auto row = std::ranges::find(m_rows, tag, &Row::tag);
    return row == m_rows.end() ? -1 : static_cast<int>(row - m_rows.begin());
}

QString TagListModel::tagAt(int row) const
{
    return row >= 0 && row < std::ssize(m_rows) ? m_rows[static_cast<std::size_t>(row)].tag
                                                : QString();
}

int TagListModel::valueCount() const
{
    return static_cast<int>(
        std::ranges::count_if(m_rows, [](const Row &row) { return row.value.has_value(); }));
}

int TagListModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return m_rows.empty() ? 1 : static_cast<int>(m_rows.size());
}

int TagListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : kColumnCount;
}

QString TagListModel::textOf(const Row &row, int column) const
{
    return column == kTag ? row.tag
                          : row.value.value_or(QString()).left(kLongestShown).simplified();
}

QVariant TagListModel::data(const QModelIndex &index, int role) const
{
    if (m_rows.empty())
        return role == Qt::DisplayRole && index.column() == kTag ? m_placeholder : QVariant();
    const Row &row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return textOf(row, index.column());
    case Qt::ToolTipRole:
        return row.value ? ToolTip::of(*row.value) : tr("The file has no value for this tag.");
    case Qt::AccessibleTextRole:
        return row.value ? tr("%1: %2").arg(row.tag, textOf(row, kValue))
                         : tr("%1: no value").arg(row.tag);
    case kHasValueRole:
        return row.value.has_value();
    default:
        return {};
    }
}

QVariant TagListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == kTag ? tr("Tag") : tr("Value");
}

Qt::ItemFlags TagListModel::flags(const QModelIndex &index) const
{
    if (m_rows.empty() || !index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}
