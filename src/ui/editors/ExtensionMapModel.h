// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "extensions/TExtensionMap.h"

#include <QAbstractTableModel>

#include <vector>

/// The pairs of an extension table while they are edited. Main thread only.
class ExtensionMapModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { kOriginal, kTarget, kColumnCount };

    explicit ExtensionMapModel(QObject *parent);

    const std::vector<TExtensionMap> &pairs() const { return m_pairs; }
    /// Signals no edit.
    void setPairs(const std::vector<TExtensionMap> &pairs);
    /// Adds an empty pair below the row; returns its row.
    int addBelow(int row);
    void remove(int row);
    /// By one row; false at the ends.
    bool move(int row, bool up);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    /// The user has changed the pairs.
    void edited();

private:
    std::vector<TExtensionMap> m_pairs;
};
