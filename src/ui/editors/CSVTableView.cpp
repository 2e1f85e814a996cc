// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/CSVTableView.h"

#include "ui/editors/ListFrame.h"

#include <QHeaderView>
#include <QStyleOptionHeader>

#include <algorithm>

namespace {

constexpr int kColumnCharacters = 20; ///< at most
constexpr int kFittedColumns = 100;   ///< those behind them have the usual width
constexpr int kFittedRows = 30;
constexpr int kAroundText = 16;
constexpr int kWidth = 58; ///< in average characters
constexpr int kLeastRows = 3;

/// Titles that are cut say so, which Qt leaves out. The chosen one is strong; as a selection it
/// would cost time for every row of the table, whenever the titles are painted.
class ColumnTitles : public QHeaderView
{
public:
    explicit ColumnTitles(CSVTableView *table)
        : QHeaderView(Qt::Horizontal, table)
        , m_table(*table)
    {
    }

protected:
    void initStyleOptionForIndex(QStyleOptionHeader *option, int column) const override
    {
        QHeaderView::initStyleOptionForIndex(option, column);
        option->state.setFlag(QStyle::State_On, column == m_table.chosenColumn());
        QFont drawn = font();
        drawn.setBold(option->state.testFlag(QStyle::State_On));
        const int margin = style()->pixelMetric(QStyle::PM_HeaderMargin, option, this);
        option->text = QFontMetrics(drawn).elidedText(option->text, Qt::ElideRight,
                                                      sectionSize(column) - 2 * margin);
    }

private:
    const CSVTableView &m_table;
};

} // namespace

CSVTableView::CSVTableView(CSVTableModel *model, QWidget *parent)
    : QTableView(parent)
{
    setHorizontalHeader(new ColumnTitles(this));
    setModel(model);
    setAccessibleName(tr("Rows of the CSV file"));
    // What is marked is the chosen column, which a click changes and moving about does not.
    setSelectionMode(QAbstractItemView::NoSelection);
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    addHeaders();
    const int character = fontMetrics().averageCharWidth();
    setMinimumSize(kWidth * character, kLeastRows * ListFrame::rowHeight(*this));
    connect(this, &QAbstractItemView::clicked, this,
            [this](const QModelIndex &cell) { Q_EMIT columnChosen(cell.column()); });
    connect(this, &QAbstractItemView::activated, this,
            [this](const QModelIndex &cell) { Q_EMIT columnChosen(cell.column()); });
    connect(model, &QAbstractItemModel::modelReset, this, [this] {
        fitColumns();
        scrollToChosen();
        describeChosen();
    });
    connect(model, &QAbstractItemModel::headerDataChanged, this, [this] {
        fitColumns();
        describeChosen();
    });
}

void CSVTableView::addHeaders()
{
    QHeaderView *columns = horizontalHeader();
    columns->setSectionsClickable(true);
    columns->setHighlightSections(false);
    columns->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    columns->setDefaultSectionSize(kColumnCharacters * fontMetrics().averageCharWidth());
    columns->setStretchLastSection(true);
    columns->setMinimumHeight(ListFrame::rowHeight(*this));
    connect(columns, &QHeaderView::sectionClicked, this, &CSVTableView::columnChosen);
    QHeaderView *rows = verticalHeader();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(ListFrame::rowHeight(*this));
    rows->setHighlightSections(false);
    rows->setSectionsClickable(false);
}

/// By the first rows, so that it costs the same for every table.
void CSVTableView::fitColumns()
{
    const QFontMetrics metrics = fontMetrics();
    const int widest = kColumnCharacters * metrics.averageCharWidth();
    const int columns = std::min(model()->columnCount(), kFittedColumns);
    const int rows = std::min(model()->rowCount(), kFittedRows);
    for (int column = 0; column < columns; ++column) {
        int wanted = horizontalHeader()->sectionSizeHint(column) + kAroundText;
        for (int row = 0; row < rows; ++row) {
            const QString text = model()->index(row, column).data().toString();
            wanted = std::max(wanted, metrics.horizontalAdvance(text) + kAroundText);
        }
        setColumnWidth(column, std::min(wanted, widest));
    }
}

void CSVTableView::setChosenColumn(qint64 column)
{
    if (column == m_chosen)
        return;
    m_chosen = column;
    viewport()->update();
    horizontalHeader()->viewport()->update();
    scrollToChosen();
    describeChosen();
}

/// What strong letters tell the eye.
void CSVTableView::describeChosen()
{
    setAccessibleDescription(
        hasChosen()
            ? tr("Uses column %1")
                  .arg(model()->headerData(static_cast<int>(m_chosen), Qt::Horizontal).toString())
            : QString());
}

bool CSVTableView::hasChosen() const
{
    return m_chosen >= 0 && m_chosen < model()->columnCount();
}

void CSVTableView::scrollToChosen()
{
    if (!hasChosen() || model()->rowCount() == 0)
        return;
    const auto column = static_cast<int>(m_chosen);
    if (columnViewportPosition(column) < 0 ||
        columnViewportPosition(column) + columnWidth(column) > viewport()->width())
        scrollTo(model()->index(std::max(rowAt(0), 0), column));
}
