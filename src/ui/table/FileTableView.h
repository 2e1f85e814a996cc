// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/table/FileCellDelegate.h"

#include <QTableView>

class FileTableHeader;

/// The table of a batch's files: paints only the rows that can be seen, selects whole rows, moves
/// them by dragging, takes files dropped between rows and sorts by its titles.
class FileTableView : public QTableView
{
    Q_OBJECT

public:
    /// Both outlive the view.
    FileTableView(TDocument &document, FileTableModel &model, QWidget *parent = nullptr);

    FileSelection &selection() const { return *m_selection; }
    FileTableHeader &header() const { return *m_header; }
    /// Document rows, ascending.
    std::vector<qsizetype> selectedRows() const;
    void selectDocumentRows(const std::vector<qsizetype> &rows);
    void selectAll() override;
    void removeSelected();
    /// Moves the cursor to the next selected row, and from the last one to the first.
    void goToNextSelected();
    void moveSelected(bool up);
    void keyboardSearch(const QString &search) override;
    /// Where the row's problem icon is, in the viewport.
    QRect problemRect(int row) const;
    /// Room for some rows; what else there is, it takes.
    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override;
    /// A text in the middle while there are no rows.
    void setHint(const QString &hint);

Q_SIGNALS:
    void copyRequested();
    /// Of the row that the keyboard is at.
    void problemsRequested();
    void contextMenuRequested(QPoint globalPosition);

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;

private:
    void setUpColumns();
    void followLook();
    void scrollToColumn(int column);
    void requestSort(int column, bool ascending);
    void orderIsAnother();
    void keepPlace();
    void restorePlace(const std::vector<qsizetype> &newRows);
    void setDropRow(int row);
    int dropRowAt(QPoint position) const;
    QPixmap dragPicture(qsizetype count) const;

    TDocument &m_document;
    FileTableModel &m_model;
    FileSelection *m_selection;
    FileTableHeader *m_header;
    TableLook m_look;
    QString m_hint;
    int m_dropRow = -1; ///< the row before which a drop would go
    int m_topRow = -1;  ///< while rows are being mapped
    bool m_isCursorInSight = false;
    bool m_wasReset = false; ///< since then
    bool m_isSorting = false;
    bool m_isWelcome = false; ///< what is being dragged over the table
};
