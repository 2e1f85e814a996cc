// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/PickList.h"

#include "ui/controls/Theme.h"
#include "ui/windows/RowDelegate.h"
#include "ui/windows/SheetParts.h"

#include <QKeyEvent>
#include <QPainter>

PickList::PickList(QWidget *parent)
    : QListView(parent)
{
    setFrameShape(QFrame::NoFrame);
    setItemDelegate(new RowDelegate(this));
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setUniformItemSizes(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
}

void PickList::setModel(QAbstractItemModel *newModel)
{
    QListView::setModel(newModel);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        const QModelIndexList rows = selectionModel()->selectedIndexes();
        Q_EMIT rowPicked(rows.isEmpty() ? -1 : rows.first().row());
    });
    connect(newModel, &QAbstractItemModel::modelReset, this, [this] { Q_EMIT rowPicked(-1); });
}

void PickList::setPlaceholder(const QString &text)
{
    m_placeholder = text;
    viewport()->update();
}

void PickList::keyPressEvent(QKeyEvent *event)
{
    if (!SheetParts::takesFirstStep(*this, *event))
        QListView::keyPressEvent(event);
}

void PickList::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (model() == nullptr || model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(ThemeColors::of(palette()).muted);
    const int margin = SheetParts::kMargin;
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignCenter | Qt::TextWordWrap, m_placeholder);
}
