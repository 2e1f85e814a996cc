// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentDrag.h"
#include "ui/table/FileDrops.h"
#include "ui/table/FileTableView.h"

#include <QDrag>
#include <QDragEnterEvent>
#include <QPainter>

namespace {

constexpr int kPictureHeight = 26;
constexpr int kPicturePadding = 12;
constexpr int kPictureOffset = 12;

} // namespace

QPixmap FileTableView::dragPicture(qsizetype count) const
{
    const QString text =
        count == 1 ? tr("1 file") : tr("%1 files").arg(locale().toString(qlonglong{count}));
    const QSize size(fontMetrics().horizontalAdvance(text) + 2 * kPicturePadding, kPictureHeight);
    QPixmap picture(size * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_look.colors.accent);
    painter.drawRoundedRect(QRect(QPoint(), size), kPictureHeight / 2.0, kPictureHeight / 2.0);
    painter.setFont(font());
    painter.setPen(m_look.colors.accentInk);
    painter.drawText(QRect(QPoint(), size), Qt::AlignCenter, text);
    return picture;
}

void FileTableView::startDrag(Qt::DropActions)
{
    const std::vector<qsizetype> rows = selectedRows();
    if (rows.empty())
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(TDocumentDrag::dataForFileRows(rows, m_document.myUUID()).release());
    drag->setPixmap(dragPicture(static_cast<qsizetype>(rows.size())));
    drag->setHotSpot({-kPictureOffset, -kPictureOffset});
    drag->exec(Qt::MoveAction);
    setDropRow(-1);
}

void FileTableView::setDropRow(int row)
{
    if (row == m_dropRow)
        return;
    m_dropRow = row;
    viewport()->update();
}

int FileTableView::dropRowAt(QPoint position) const
{
    const int row = rowAt(position.y());
    if (row < 0)
        return m_model.rowCount();
    const bool isLowerHalf = position.y() >= rowViewportPosition(row) + rowHeight(row) / 2;
    return row + (isLowerHalf ? 1 : 0);
}

void FileTableView::dragEnterEvent(QDragEnterEvent *event)
{
    m_isWelcome = FileDrops::isWelcome(*event->mimeData(), m_document);
    if (!m_isWelcome)
        return event->ignore();
    FileDrops::accept(*event, m_document);
}

void FileTableView::dragMoveEvent(QDragMoveEvent *event)
{
    if (!m_isWelcome || !FileDrops::accept(*event, m_document)) {
        event->ignore();
        return setDropRow(-1);
    }
    const QPoint position = event->position().toPoint();
    setDropRow(dropRowAt(position));
    const int margin = autoScrollMargin();
    if (position.y() < margin || position.y() > viewport()->height() - margin)
        startAutoScroll();
}

void FileTableView::dragLeaveEvent(QDragLeaveEvent *)
{
    stopAutoScroll();
    setDropRow(-1);
}

void FileTableView::dropEvent(QDropEvent *event)
{
    stopAutoScroll();
    setDropRow(-1);
    if (!FileDrops::accept(*event, m_document))
        return;
    const int row = dropRowAt(event->position().toPoint());
    // Behind the last row that is shown is the end, also when a filter hides the files there.
    const qsizetype documentRow =
        row < m_model.rowCount() ? m_model.documentRow(row)
                                 : static_cast<qsizetype>(m_document.sourceObjectArray().size());
    bool isTaken = false;
    if (event->source() == this) // files that came or went meanwhile have changed the rows
        isTaken = m_document.tableViewAcceptDrop(
            *TDocumentDrag::dataForFileRows(selectedRows(), m_document.myUUID()), documentRow);
    else
        isTaken = m_document.tableViewAcceptDrop(*event->mimeData(), documentRow);
    event->setAccepted(isTaken);
}
