// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/PaletteTile.h"

#include "document/TDocumentDrag.h"
#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/tiles/RecipeDrag.h"

#include <QApplication>
#include <QDrag>
#include <QKeyEvent>

PaletteTile::PaletteTile(const QString &identifier, QWidget *parent)
    : TileButton(parent)
    , m_identifier(identifier)
{
    setText(Icons::kindName(identifier));
    setAccessibleName(text());
    setCursor(Qt::OpenHandCursor);
    setFocusPolicy(Qt::ClickFocus);
}

TileDrawing PaletteTile::drawing() const
{
    const ThemeColors colors = ThemeColors::of(palette());
    TileDrawing drawing;
    drawing.icon = Icons::forIdentifier(m_identifier);
    drawing.text = text();
    drawing.fill = isDown() ? colors.field : colors.card;
    drawing.border = underMouse() ? colors.muted : colors.border;
    drawing.ink = colors.ink;
    if (hasFocus())
        drawing.outline = colors.accent;
    return drawing;
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
        TileButton::keyPressEvent(event);
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
    const TileDrawing shown =
        rules.empty() ? drawing() : TileDrawing::of(*rules.front(), palette());
    auto *drag = new QDrag(qApp); // outlives the tile when its window is closed meanwhile
    drag->setMimeData(carried.release());
    const RecipeDrag::Picture picture = RecipeDrag::hung(
        shown.pixmap(font(), layoutDirection(), devicePixelRatioF()), m_pressedAt.x());
    drag->setPixmap(picture.pixmap);
    drag->setHotSpot(picture.hotSpot);
    drag->exec(Qt::CopyAction);
}

void PaletteTile::enterEvent(QEnterEvent *event)
{
    TileButton::enterEvent(event);
    update();
}

void PaletteTile::leaveEvent(QEvent *event)
{
    TileButton::leaveEvent(event);
    update();
}
