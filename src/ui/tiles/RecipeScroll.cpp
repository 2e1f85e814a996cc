// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/RecipeScroll.h"

#include <QEvent>

#include <algorithm>

namespace {

constexpr int kMostLines = 3;

} // namespace

RecipeScroll::RecipeScroll(TileStrip *strip, QWidget *parent)
    : QScrollArea(parent)
    , m_strip(strip)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setWidget(strip);
    viewport()->setAutoFillBackground(false);
    strip->setAutoFillBackground(false);
    connect(strip, &TileStrip::rearranged, this, [this] {
        fit();
        QEvent layOutNow(QEvent::LayoutRequest); // what is revealed next may be in a new line
        event(&layOutNow);
    });
    connect(strip, &TileStrip::currentMoved, this, &RecipeScroll::reveal);
    fit();
}

void RecipeScroll::fit()
{
    const int needed = m_strip->heightForWidth(std::max(width(), 1));
    const int height = std::min(needed, m_strip->heightOfLines(kMostLines));
    setVerticalScrollBarPolicy(needed > height ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    setFixedHeight(height);
}

void RecipeScroll::reveal(const QRect &place)
{
    ensureVisible(place.center().x(), place.center().y(), 0, place.height() / 2 + 1);
}

QSize RecipeScroll::sizeHint() const
{
    return {m_strip->sizeHint().width(), height()};
}

QSize RecipeScroll::minimumSizeHint() const
{
    return {m_strip->minimumSizeHint().width(), height()};
}

void RecipeScroll::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    fit();
}
