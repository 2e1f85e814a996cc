// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FileSelection.h"

namespace {

/// Ranges that Qt is shown.
constexpr std::size_t kMirrored = 64;

RowRanges rangesOf(const QItemSelection &selection)
{
    RowRanges result;
    for (const QItemSelectionRange &range : selection) {
        if (range.isValid())
            result = result.combined(RowRanges::Operation::Unite, {range.top(), range.bottom()});
    }
    return result;
}

} // namespace

FileSelection::FileSelection(FileTableModel &model, QObject *parent)
    : QItemSelectionModel(&model, parent)
    , m_model(model)
{
    connect(&model, &QAbstractItemModel::rowsInserted, this, &FileSelection::inserted);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &FileSelection::removed);
    connect(&model, &FileTableModel::rowsAboutToBeMapped, this, &FileSelection::mappingStarts);
    connect(&model, &FileTableModel::rowsMapped, this, &FileSelection::mapped);
}

void FileSelection::setRows(RowRanges rows)
{
    m_before = {};
    take(std::move(rows));
}

void FileSelection::select(const QModelIndex &index, SelectionFlags command)
{
    select(QItemSelection(index, index), command);
}

void FileSelection::select(const QItemSelection &selection, SelectionFlags command)
{
    if (command == NoUpdate)
        return;
    if (command.testFlag(Clear))
        m_before = {};
    else if (!command.testFlag(Current))
        m_before = m_rows;
    const RowRanges given = rangesOf(selection);
    using Operation = RowRanges::Operation;
    if (command.testFlag(Toggle))
        take(m_before.combined(Operation::Toggle, given));
    else if (command.testFlag(Select))
        take(m_before.combined(Operation::Unite, given));
    else if (command.testFlag(Deselect))
        take(m_before.combined(Operation::Subtract, given));
    else
        take(m_before);
}

void FileSelection::clear()
{
    if (!m_isMapping) // else the rows come back when the model has been reset
        setRows({});
    QItemSelectionModel::clear();
}

void FileSelection::take(RowRanges rows)
{
    if (rows == m_rows)
        return;
    m_rows = std::move(rows);
    mirror();
    Q_EMIT rowsChanged();
}

void FileSelection::mirror()
{
    QItemSelection shown;
    for (std::size_t i = 0; i < std::min(kMirrored, m_rows.ranges().size()); ++i) {
        const RowRanges::Range &range = m_rows.ranges()[i];
        shown.append(QItemSelectionRange(
            m_model.index(static_cast<int>(range.first), 0),
            m_model.index(static_cast<int>(range.last), FileTableModel::ColumnCount - 1)));
    }
    QItemSelectionModel::select(shown, ClearAndSelect);
}

void FileSelection::inserted(const QModelIndex &, int first, int last)
{
    m_before = {};
    m_rows = m_rows.afterInsertion(first, last - first + 1);
}

void FileSelection::removed(const QModelIndex &, int first, int last)
{
    const qsizetype before = m_rows.count();
    m_before = {};
    m_rows = m_rows.afterRemoval(first, last);
    if (m_rows.count() != before)
        Q_EMIT rowsChanged();
}

void FileSelection::mappingStarts()
{
    m_isMapping = true;
    m_current = currentIndex();
    // Qt would remember every selected row one by one.
    const QSignalBlocker quiet(this);
    QItemSelectionModel::select(QItemSelection(), Clear);
}

void FileSelection::mapped(const std::vector<qsizetype> &newRows)
{
    m_isMapping = false;
    const RowRanges before = std::exchange(m_rows, m_rows.mapped(newRows));
    m_before = {};
    mirror();
    if (!currentIndex().isValid() && m_current.isValid()) {
        const qsizetype row = newRows[static_cast<std::size_t>(m_current.row())];
        if (row >= 0)
            setCurrentIndex(m_model.index(static_cast<int>(row), m_current.column()), NoUpdate);
    }
    if (m_rows != before)
        Q_EMIT rowsChanged();
}
