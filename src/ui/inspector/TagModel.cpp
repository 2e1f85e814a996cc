// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/inspector/TagModel.h"

#include "document/TDocumentDrag.h"
#include "ui/controls/Theme.h"

#include <QApplication>
#include <QFont>
#include <QMimeData>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

/// Longer values are cut where they are shown, so that no file can make painting slow.
constexpr qsizetype kMostShown = 400;
constexpr qsizetype kMostInToolTip = 2000;

std::size_t place(int index)
{
    return static_cast<std::size_t>(index);
}

QString line(const QString &text)
{
    return text.left(kMostShown).simplified();
}

QString toolTip(const TagEntry &entry)
{
    const QString text = entry.name + '\n'_L1 + entry.text().left(kMostInToolTip);
    const QString hint = entry.ruleKind.isEmpty()
                             ? TagModel::tr("No rule can put this into a name.")
                             : TagModel::tr("Drag it into the recipe, or press Enter.");
    return Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) + "<p>"_L1 + hint.toHtmlEscaped() +
           "</p>"_L1;
}

QVariant inkOf(const TagEntry &entry)
{
    return entry.ruleKind.isEmpty() ? QVariant(ThemeColors::of(QApplication::palette()).muted)
                                    : QVariant();
}

} // namespace

void TagModel::setGroups(std::vector<TagGroup> groups)
{
    beginResetModel();
    m_groups = std::move(groups);
    endResetModel();
}

const TagEntry *TagModel::entry(const QModelIndex &index) const
{
    if (!index.isValid() || index.internalId() == 0)
        return nullptr;
    return &m_groups[index.internalId() - 1].entries[place(index.row())];
}

QModelIndex TagModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? quintptr(parent.row()) + 1 : 0);
}

QModelIndex TagModel::parent(const QModelIndex &index) const
{
    if (!index.isValid() || index.internalId() == 0)
        return {};
    return createIndex(static_cast<int>(index.internalId()) - 1, 0, quintptr{0});
}

int TagModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return static_cast<int>(m_groups.size());
    const bool hasEntries = parent.internalId() == 0 && parent.column() == 0;
    return hasEntries ? static_cast<int>(m_groups[place(parent.row())].entries.size()) : 0;
}

int TagModel::columnCount(const QModelIndex &) const
{
    return kColumns;
}

QVariant TagModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const TagEntry *const tag = entry(index);
    return tag != nullptr ? entryData(*tag, index.column(), role) : groupData(index, role);
}

QVariant TagModel::groupData(const QModelIndex &index, int role) const
{
    if (index.column() != NameColumn)
        return {};
    if (role == Qt::DisplayRole)
        return m_groups[place(index.row())].title;
    if (role == Qt::FontRole) {
        QFont font = QApplication::font();
        font.setWeight(QFont::DemiBold);
        return font;
    }
    return {};
}

QVariant TagModel::entryData(const TagEntry &entry, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return column == NameColumn ? line(entry.name) : line(entry.text());
    case Qt::ToolTipRole:
        return toolTip(entry);
    case Qt::ForegroundRole:
        return inkOf(entry);
    default:
        return {};
    }
}

QVariant TagModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == NameColumn ? tr("Tag") : tr("Value");
}

Qt::ItemFlags TagModel::flags(const QModelIndex &index) const
{
    const TagEntry *const tag = entry(index);
    Qt::ItemFlags flags = QAbstractItemModel::flags(index);
    if (tag != nullptr)
        flags |= Qt::ItemNeverHasChildren;
    if (tag != nullptr && !tag->ruleKind.isEmpty())
        flags |= Qt::ItemIsDragEnabled;
    return flags;
}

QMimeData *TagModel::mimeData(const QModelIndexList &indexes) const
{
    for (const QModelIndex &index : indexes) {
        const TagEntry *const tag = entry(index);
        if (const TRulePtr rule = tag != nullptr ? tag->rule() : nullptr)
            return TDocumentDrag::dataForRules({rule}).release(); // the drag's now
    }
    return nullptr;
}
