// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/BodyArea.h"

#include <QEvent>

namespace {

constexpr QSize kMostMinimum{900, 540};

} // namespace

BodyArea::BodyArea(QWidget *body, QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(body);
    for (QWidget *clear : {viewport(), body})
        clear->setAutoFillBackground(false); // the window's own ground shows
}

QSize BodyArea::minimumSizeHint() const
{
    return widget()->minimumSizeHint().boundedTo(kMostMinimum);
}

bool BodyArea::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}
