// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/RecipeDropArea.h"

#include "document/TDocumentDrag.h"
#include "ui/tiles/TileStrip.h"

#include <QDropEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimerEvent>

namespace {

constexpr int kEdge = 14; ///< of the scroller, where it scrolls
constexpr int kStep = 6;
constexpr int kStepMilliseconds = 30;

} // namespace

RecipeDropArea::RecipeDropArea(TDocument &document, TileStrip &strip, QScrollArea &scroller,
                               QWidget &area)
    : QObject(&area)
    , m_document(document)
    , m_strip(strip)
    , m_scroller(scroller)
    , m_area(area)
{
    area.setAcceptDrops(true);
    area.installEventFilter(this);
}

bool RecipeDropArea::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
        m_origin = originOf(*static_cast<QDragEnterEvent *>(event)->mimeData());
        moveTo(*static_cast<QDropEvent *>(event));
        return true;
    case QEvent::DragMove:
        moveTo(*static_cast<QDropEvent *>(event));
        return true;
    case QEvent::DragLeave:
        leave();
        return true;
    case QEvent::Drop:
        drop(*static_cast<QDropEvent *>(event));
        return true;
    default:
        return QObject::eventFilter(watched, event);
    }
}

RecipeDropArea::Origin RecipeDropArea::originOf(const QMimeData &data) const
{
    if (!data.hasFormat(TDocumentDrag::rulesType()) || TDocumentDrag::rules(data).empty())
        return Origin::Nowhere;
    const bool isOwn = TDocumentDrag::documentUUID(data) == m_document.myUUID() &&
                       !TDocumentDrag::rows(data).empty();
    return isOwn ? Origin::ThisRecipe : Origin::Elsewhere;
}

void RecipeDropArea::moveTo(QDropEvent &event)
{
    if (m_origin == Origin::Nowhere)
        return event.ignore();
    const bool isCopy =
        m_origin == Origin::Elsewhere || event.modifiers().testFlag(Qt::ControlModifier);
    event.setDropAction(isCopy ? Qt::CopyAction : Qt::MoveAction);
    event.accept();
    m_position = event.position().toPoint();
    showPlace();
    if (scrollStep() == 0)
        m_scrolling.stop();
    else if (!m_scrolling.isActive())
        m_scrolling.start(kStepMilliseconds, this);
}

void RecipeDropArea::showPlace()
{
    m_strip.showInsertion(m_strip.insertionPlaceAt(m_strip.mapFrom(&m_area, m_position)));
}

void RecipeDropArea::drop(QDropEvent &event)
{
    moveTo(event);
    const Origin origin = m_origin;
    leave();
    if (origin == Origin::Nowhere)
        return;
    const qsizetype place = m_strip.insertionPlaceAt(m_strip.mapFrom(&m_area, m_position));
    const QMimeData &data = *event.mimeData();
    const bool isCopyOfOwn = origin == Origin::ThisRecipe && event.dropAction() == Qt::CopyAction;
    // Without the places they came from, the document takes them as new ones.
    const bool isTaken = isCopyOfOwn
                             ? m_document.ruleEditorAcceptDrop(
                                   *TDocumentDrag::dataForRules(TDocumentDrag::rules(data)), place)
                             : m_document.ruleEditorAcceptDrop(data, place);
    event.setAccepted(isTaken);
    if (isTaken)
        m_strip.focusRecipe();
}

void RecipeDropArea::leave()
{
    m_origin = Origin::Nowhere;
    m_scrolling.stop();
    m_strip.showInsertion(-1);
}

int RecipeDropArea::scrollStep() const
{
    const int y = m_scroller.mapFrom(&m_area, m_position).y();
    const QScrollBar &bar = *m_scroller.verticalScrollBar();
    if (y < kEdge && bar.value() > bar.minimum())
        return -kStep;
    if (y >= m_scroller.height() - kEdge && bar.value() < bar.maximum())
        return kStep;
    return 0;
}

void RecipeDropArea::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_scrolling.timerId())
        return QObject::timerEvent(event);
    const int step = scrollStep();
    if (step == 0)
        return m_scrolling.stop();
    QScrollBar &bar = *m_scroller.verticalScrollBar();
    bar.setValue(bar.value() + step);
    showPlace();
}
