// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

/// The tags of a choice list, and beside each the text of the value that one file has for it. A tag
/// that is chosen though it is not on offer stands at the end. Main thread only.
class TagListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { kTag, kValue, kColumnCount };
    /// True for tags that the file has.
    static constexpr int kHasValueRole = Qt::UserRole;
    /// The text of the file's value for a tag; nothing when it has none.
    using ValueOf = std::function<std::optional<QString>(const QString &tag)>;

    explicit TagListModel(QObject *parent);

    /// Without tags, the list holds the placeholder as its one disabled row.
    void setTags(const QStringList &offered, const QString &placeholder);
    /// Adds the tag when it is not on offer, in place of the one that was added before.
    void setChosenTag(const QString &tag);
    void setValues(const ValueOf &valueOf);
    /// -1 when the tag is not in the list.
    int rowOf(const QString &tag) const;
    QString tagAt(int row) const;
    /// How many of the tags the file has.
    int valueCount() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    struct Row
    {
        QString tag;
        std::optional<QString> value;
    };

    Row rowFor(const QString &tag) const;
    QString textOf(const Row &row, int column) const;

    std::vector<Row> m_rows;
    int m_offered = 0; ///< rows that are on offer; the one behind them is the chosen tag
    QString m_placeholder;
    ValueOf m_valueOf;
};
