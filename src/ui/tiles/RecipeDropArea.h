// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"

#include <QBasicTimer>
#include <QObject>
#include <QPoint>

class QDragMoveEvent;
class QDropEvent;
class QScrollArea;
class TileStrip;

/// Makes a widget around a recipe take rules that are dragged over it: shows where they would come,
/// scrolls at the edges, and hands them to the document. Takes nothing else, and nothing damaged.
class RecipeDropArea : public QObject
{
    Q_OBJECT

public:
    /// All outlive the area's object; area is around the scroller of the strip.
    RecipeDropArea(TDocument &document, TileStrip &strip, QScrollArea &scroller, QWidget &area);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    enum class Origin { Nowhere, Elsewhere, ThisRecipe };

    Origin originOf(const QMimeData &data) const;
    void moveTo(QDropEvent &event);
    void drop(QDropEvent &event);
    void leave();
    int scrollStep() const;
    void showPlace();

    TDocument &m_document;
    TileStrip &m_strip;
    QScrollArea &m_scroller;
    QWidget &m_area;
    Origin m_origin = Origin::Nowhere;
    QPoint m_position; ///< in the area
    QBasicTimer m_scrolling;
};
