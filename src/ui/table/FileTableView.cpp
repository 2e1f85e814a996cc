// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FileTableView.h"

#include "document/TDocumentDrag.h"
#include "ui/table/FileCells.h"
#include "ui/table/FileTableHeader.h"
#include "ui/table/NewNameDelegate.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

namespace {

constexpr int kLeastRows = 4;

bool isPlain(Qt::KeyboardModifiers modifiers)
{
    return (modifiers & (Qt::ShiftModifier | Qt::ControlModifier)) == 0;
}

} // namespace

FileTableView::FileTableView(TDocument &document, FileTableModel &model, QWidget *parent)
    : QTableView(parent)
    , m_document(document)
    , m_model(model)
    , m_selection(new FileSelection(model, this))
    , m_header(new FileTableHeader(this))
{
    setModel(&model);
    delete selectionModel(); // the one that came with the model
    setSelectionModel(m_selection);
    setHorizontalHeader(m_header);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(false);
    setShowGrid(false);
    setFrameShape(NoFrame);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    setAccessibleName(tr("Files"));
    setUpColumns();
    followLook();

    connect(m_selection, &FileSelection::rowsChanged, viewport(), qOverload<>(&QWidget::update));
    connect(m_selection, &QItemSelectionModel::currentRowChanged, viewport(),
            qOverload<>(&QWidget::update));
    connect(m_header, &FileTableHeader::sortRequested, this, &FileTableView::requestSort);
    connect(m_header, &FileTableHeader::columnReached, this, &FileTableView::scrollToColumn);
    connect(m_header, &FileTableHeader::left, this, [this] { setFocus(Qt::OtherFocusReason); });
    setTabOrder(m_header, this);
    connect(&document, &TDocument::filesReordered, this, &FileTableView::orderIsAnother);
    connect(&document, &TDocument::filesInserted, this, &FileTableView::orderIsAnother);
    connect(&document, &TDocument::filesReplaced, this, &FileTableView::orderIsAnother);
    connect(&model, &FileTableModel::rowsAboutToBeMapped, this, &FileTableView::keepPlace);
    connect(&model, &QAbstractItemModel::modelReset, this, [this] { m_wasReset = true; });
    connect(&model, &FileTableModel::rowsMapped, this, &FileTableView::restorePlace);
}

void FileTableView::setUpColumns()
{
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(Theme::kRowHeight);
    verticalHeader()->setDefaultSectionSize(Theme::kRowHeight);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_header->setStretchLastSection(true);
    auto *cells = new FileCellDelegate(m_look, *m_selection, this);
    setItemDelegate(cells);
    setItemDelegateForColumn(FileTableModel::NewName,
                             new NewNameDelegate(m_look, *m_selection, this));
}

void FileTableView::followLook()
{
    m_look.follow(*this);
    const int height = std::max(Theme::kRowHeight, QFontMetrics(m_look.font).height() + 6);
    verticalHeader()->setDefaultSectionSize(height);
    viewport()->update();
}

void FileTableView::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::StyleChange)
        followLook();
}

std::vector<qsizetype> FileTableView::selectedRows() const
{
    std::vector<qsizetype> rows = m_selection->rows().rows();
    for (qsizetype &row : rows)
        row = m_model.documentRow(static_cast<int>(row));
    return rows;
}

void FileTableView::selectDocumentRows(const std::vector<qsizetype> &rows)
{
    RowRanges shown;
    for (const qsizetype documentRow : rows) {
        const int row = m_model.rowOf(documentRow);
        if (row >= 0)
            shown.append(row, row);
    }
    m_selection->setRows(shown);
    if (shown.isEmpty() || shown.contains(currentIndex().row()))
        return;
    m_selection->setCurrentIndex(
        m_model.index(static_cast<int>(shown.ranges().front().first), FileTableModel::Name),
        QItemSelectionModel::NoUpdate);
}

void FileTableView::selectAll()
{
    m_selection->setRows({0, m_model.rowCount() - 1});
}

void FileTableView::removeSelected()
{
    m_document.removeFiles(selectedRows());
}

void FileTableView::goToNextSelected()
{
    const auto &ranges = m_selection->rows().ranges();
    if (ranges.empty())
        return;
    const qsizetype current = currentIndex().row();
    qsizetype next = ranges.front().first;
    for (const RowRanges::Range &range : ranges) {
        if (range.last <= current)
            continue;
        next = std::max(range.first, current + 1);
        break;
    }
    m_selection->setCurrentIndex(m_model.index(static_cast<int>(next), FileTableModel::Name),
                                 QItemSelectionModel::NoUpdate);
}

void FileTableView::keyboardSearch(const QString &search)
{
    // Names are looked for, whichever cell was clicked last.
    if (currentIndex().isValid() && currentIndex().column() != FileTableModel::Name)
        m_selection->setCurrentIndex(currentIndex().siblingAtColumn(FileTableModel::Name),
                                     QItemSelectionModel::NoUpdate);
    QTableView::keyboardSearch(search);
}

QRect FileTableView::problemRect(int row) const
{
    return visualRect(m_model.index(row, FileTableModel::Status));
}

QSize FileTableView::minimumSizeHint() const
{
    return {QTableView::minimumSizeHint().width(),
            m_header->sizeHint().height() + kLeastRows * verticalHeader()->defaultSectionSize()};
}

void FileTableView::setHint(const QString &hint)
{
    m_hint = hint;
    viewport()->update();
}

void FileTableView::scrollToColumn(int column)
{
    const int start = m_header->sectionPosition(column);
    const int end = start + m_header->sectionSize(column) - viewport()->width();
    QScrollBar &bar = *horizontalScrollBar();
    bar.setValue(std::min(std::max(bar.value(), end), start));
}

void FileTableView::requestSort(int column, bool ascending)
{
    // The worst problems first.
    if (column == FileTableModel::Status && m_header->sortedColumn() != column)
        ascending = false;
    m_isSorting = true;
    m_document.sortByColumn(FileTableModel::sortKey(column), ascending);
    m_isSorting = false;
    m_header->markSort(column, ascending);
}

void FileTableView::orderIsAnother()
{
    if (!m_isSorting)
        m_header->removeMark();
}

void FileTableView::keepPlace()
{
    m_topRow = rowAt(0);
    m_wasReset = false;
    m_isCursorInSight =
        currentIndex().isValid() && visualRect(currentIndex()).intersects(viewport()->rect());
}

void FileTableView::restorePlace(const std::vector<qsizetype> &newRows)
{
    if (!m_wasReset)
        return; // another order leaves the view where it is
    // The cursor's row stays in sight where it was, else the topmost row that is left.
    if (m_isCursorInSight && currentIndex().isValid())
        return scrollTo(currentIndex());
    for (auto row = static_cast<std::size_t>(std::max(m_topRow, 0)); row < newRows.size(); ++row) {
        if (newRows[row] >= 0)
            return scrollTo(m_model.index(static_cast<int>(newRows[row]), FileTableModel::Name),
                            PositionAtTop);
    }
}

QItemSelectionModel::SelectionFlags FileTableView::selectionCommand(const QModelIndex &index,
                                                                    const QEvent *event) const
{
    // Qt's selection does not know all selected rows, so what depends on them is decided here.
    using Selection = QItemSelectionModel;
    if (event == nullptr || !index.isValid())
        return QTableView::selectionCommand(index, event);
    const bool isSelected = m_selection->contains(index.row());
    if (event->type() == QEvent::MouseButtonPress) {
        const auto &press = static_cast<const QMouseEvent &>(*event);
        const bool isPlainPress = isPlain(press.modifiers());
        if (isSelected && (isPlainPress || press.button() == Qt::RightButton))
            return Selection::NoUpdate; // a drag or a menu may follow
        if (press.modifiers().testFlag(Qt::ControlModifier) &&
            !press.modifiers().testFlag(Qt::ShiftModifier))
            return (isSelected ? Selection::Deselect : Selection::Select) | Selection::Rows;
    } else if (event->type() == QEvent::MouseButtonRelease) {
        const auto &release = static_cast<const QMouseEvent &>(*event);
        if (isSelected && isPlain(release.modifiers()) && release.button() == Qt::LeftButton &&
            state() != DragSelectingState)
            return Selection::ClearAndSelect | Selection::Rows;
        return Selection::NoUpdate;
    }
    return QTableView::selectionCommand(index, event);
}

void FileTableView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                const QList<int> &)
{
    // Thousands of portions come while 100,000 names are worked out; few of them can be seen.
    const int bottom = rowViewportPosition(bottomRight.row()) + rowHeight(bottomRight.row());
    const int top = rowViewportPosition(topLeft.row());
    const QRect changed(0, top, viewport()->width(), bottom - top);
    if (changed.intersects(viewport()->rect()))
        viewport()->update(changed);
}

void FileTableView::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    QPainter painter(viewport());
    if (m_model.rowCount() == 0) {
        painter.setPen(m_look.colors.muted);
        painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, m_hint);
    }
    if (m_dropRow < 0)
        return;
    const int rows = m_model.rowCount();
    const int y = m_dropRow < rows ? rowViewportPosition(m_dropRow)
                  : rows > 0       ? rowViewportPosition(rows - 1) + rowHeight(rows - 1)
                                   : 0;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_look.colors.accent, 2));
    painter.setBrush(m_look.colors.card);
    const int line = std::clamp(y, 1, viewport()->height() - 1);
    painter.drawLine(QPointF(6, line), QPointF(viewport()->width() - 2, line));
    painter.drawEllipse(QPointF(4, line), 3, 3);
}

/// Past the next row that is shown, as a drag would.
void FileTableView::moveSelected(bool up)
{
    const auto &ranges = m_selection->rows().ranges();
    if (ranges.empty())
        return;
    const auto past = static_cast<int>(up ? ranges.front().first - 1 : ranges.back().last + 1);
    if (past < 0 || past >= m_model.rowCount())
        return;
    m_document.tableViewAcceptDrop(
        *TDocumentDrag::dataForFileRows(selectedRows(), m_document.myUUID()),
        m_model.documentRow(past) + (up ? 0 : 1));
    scrollTo(currentIndex());
}

void FileTableView::keyPressEvent(QKeyEvent *event)
{
    const bool isUp = event->key() == Qt::Key_Up;
    if ((event->modifiers() & ~Qt::KeypadModifier) == Qt::AltModifier &&
        (isUp || event->key() == Qt::Key_Down)) {
        moveSelected(isUp);
        event->accept();
        return;
    }
    if (event->matches(QKeySequence::Delete)) {
        removeSelected();
        event->accept();
        return;
    }
    if (event->matches(QKeySequence::Copy)) {
        Q_EMIT copyRequested();
        event->accept();
        return;
    }
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier &&
        m_selection->contains(currentIndex().row())) { // else it selects the row
        Q_EMIT problemsRequested();
        event->accept();
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        event->modifiers() == Qt::NoModifier) {
        goToNextSelected();
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void FileTableView::contextMenuEvent(QContextMenuEvent *event)
{
    QPoint position = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid()) {
        scrollTo(currentIndex());
        position = viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
    }
    Q_EMIT contextMenuRequested(position);
}
