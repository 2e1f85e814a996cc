// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/PaletteTile.h"

#include "document/TDocumentDrag.h"
#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/tiles/TileDrawing.h"

#include <QApplication>
#include <QDrag>
#include <QKeyEvent>
#include <QPainter>

namespace {

TileDrawing drawingOf(const PaletteTile &tile)
{
    const ThemeColors colors = ThemeColors::of(tile.palette());
    TileDrawing drawing;
    drawing.icon = Icons::forIdentifier(tile.identifier());
    drawing.text = tile.text();
    drawing.fill = tile.isDown() ? colors.field : colors.card;
    drawing.border = tile.underMouse() ? colors.muted : colors.border;
    drawing.ink = colors.ink;
    if (tile.hasFocus())
        drawing.outline = colors.accent;
    return drawing;
}

} // namespace

PaletteTile::PaletteTile(const QString &identifier, QWidget *parent)
    : QAbstractButton(parent)
    , m_identifier(identifier)
{
    setText(Icons::kindName(identifier));
    setAccessibleName(text());
    setCursor(Qt::OpenHandCursor);
    setFocusPolicy(Qt::ClickFocus);
}

QSize PaletteTile::sizeHint() const
{
    return drawingOf(*this).size(font());
}

void PaletteTile::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawingOf(*this).paint(painter, rect(), font(), layoutDirection());
}

void PaletteTile::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    m_pressedAt = event->position().toPoint();
    setDown(true);
}

void PaletteTile::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint way = event->position().toPoint() - m_pressedAt;
    if (isDown() && way.manhattanLength() >= QApplication::startDragDistance())
        startDrag();
}

void PaletteTile::mouseReleaseEvent(QMouseEvent *event)
{
    if (!isDown() || event->button() != Qt::LeftButton)
        return event->ignore();
    setDown(false);
    if (hitButton(event->position().toPoint()))
        Q_EMIT plainlyClicked();
}

void PaletteTile::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else if (event->key() == Qt::Key_Space)
        QAbstractButton::keyPressEvent(event);
    else
        event->ignore(); // arrows are for the palette
}

void PaletteTile::startDrag()
{
    setDown(false);
    std::unique_ptr<QMimeData> carried = TDocumentDrag::dataForTile(m_identifier);
    if (!carried)
        return;
    const TRuleList rules = TDocumentDrag::rules(*carried);
    TileDrawing drawing = drawingOf(*this);
    if (!rules.empty())
        drawing = TileDrawing::of(*rules.front(), palette());
    auto *drag = new QDrag(qApp); // outlives the tile when its window is closed meanwhile
    drag->setMimeData(carried.release());
    drag->setPixmap(drawing.pixmap(font(), layoutDirection(), devicePixelRatioF()));
    drag->setHotSpot(m_pressedAt);
    drag->exec(Qt::CopyAction);
}

void PaletteTile::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void PaletteTile::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

void PaletteTile::focusInEvent(QFocusEvent *event)
{
    QAbstractButton::focusInEvent(event);
    Q_EMIT focused();
}

void PaletteTile::changeEvent(QEvent *event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGeometry();
    update();
}
