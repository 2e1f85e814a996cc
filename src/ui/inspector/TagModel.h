// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/inspector/TagGroups.h"

#include <QAbstractItemModel>

/// Groups of tags as a tree of two levels: title, or name and value. Tags that a rule can put into
/// a name can be dragged, as such a rule. Main thread only.
class TagModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, ValueColumn, kColumns };

    using QAbstractItemModel::QAbstractItemModel;

    void setGroups(std::vector<TagGroup> groups);
    const std::vector<TagGroup> &groups() const { return m_groups; }
    /// Null for a group.
    const TagEntry *entry(const QModelIndex &index) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

private:
    QVariant groupData(const QModelIndex &index, int role) const;
    QVariant entryData(const TagEntry &entry, int column, int role) const;

    std::vector<TagGroup> m_groups;
};
