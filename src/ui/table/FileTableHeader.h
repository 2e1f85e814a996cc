// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHeaderView>

/// The titles over the file table: a quiet line of text with a mark behind the title that the files
/// were last sorted by. A click asks for a sort, and the opposite one when repeated; the mark
/// itself is set by whoever knows the order.
///
/// With the keyboard, Left and Right choose a title, Enter does what a click does, with Alt the
/// arrows move the column, with Ctrl its edge; Escape or Down lead back to the rows.
class FileTableHeader : public QHeaderView
{
    Q_OBJECT

public:
    explicit FileTableHeader(QWidget *parent = nullptr);

    /// -1 while no title has the mark.
    int sortedColumn() const { return m_sorted; }
    bool isAscending() const { return m_isAscending; }
    void markSort(int column, bool ascending);
    void removeMark();
    QSize sectionSizeFromContents(int section) const override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

Q_SIGNALS:
    void sortRequested(int column, bool ascending);
    /// The keyboard is at the column, wherever that stands now.
    void columnReached(int column);
    /// Back to the rows.
    void left();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void paintSection(QPainter *painter, const QRect &rect, int section) const override;
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QFont titleFont() const;
    void requestSort(int section);
    /// The next shown section from a place on, that place included; -1 when there is none.
    int shownFrom(int visual, int step) const;
    void reach(int visual);
    void moveReached(int step);
    void resizeReached(int step);
    void describeReached();

    int m_reached = -1; ///< the section that the keyboard is at
    int m_sorted = -1;
    bool m_isAscending = true;
    int m_hovered = -1;
};
