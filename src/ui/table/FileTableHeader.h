// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHeaderView>

/// The titles over the file table: a quiet line of text with a mark behind the title that the files
/// were last sorted by. A click asks for a sort, and the opposite one when repeated; the mark
/// itself is set by whoever knows the order.
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

Q_SIGNALS:
    void sortRequested(int column, bool ascending);

protected:
    void paintSection(QPainter *painter, const QRect &rect, int section) const override;
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QFont titleFont() const;

    int m_sorted = -1;
    bool m_isAscending = true;
    int m_hovered = -1;
};
