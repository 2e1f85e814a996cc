// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/SortButton.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr int kChevronMargin = 8; ///< at the end of the button
constexpr int kGap = 2;           ///< from the button to its menu

} // namespace

SortButton::SortButton(QMenu &menu, QWidget *parent)
    : PillButton(tr("Sort"), parent)
    , m_menu(menu)
{
    setCheckable(false);
    setAccessibleName(text());
    setToolTip(tr("Bring the files into an order; counters follow it"));
    setEnabled(menu.isEnabled());
    connect(menu.menuAction(), &QAction::changed, this, [this] { setEnabled(m_menu.isEnabled()); });
    connect(this, &QAbstractButton::clicked, this, &SortButton::open); // by assistive tools
}

QSize SortButton::sizeHint() const
{
    return PillButton::sizeHint() + QSize(Icons::extent(fontMetrics()), 0);
}

void SortButton::paintEvent(QPaintEvent *event)
{
    PillButton::paintEvent(event);
    const int side = Icons::extent(fontMetrics());
    const QRect place(width() - side - kChevronMargin, (height() - side) / 2, side, side);
    QPainter painter(this);
    painter.drawPixmap(QStyle::visualRect(layoutDirection(), rect(), place),
                       Icons::pixmap("chevron-down"_L1, side, ThemeColors::of(palette()).muted,
                                     devicePixelRatioF()));
}

void SortButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        open();
    else
        event->ignore();
}

void SortButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Down:
    case Qt::Key_F4:
        open();
        break;
    default:
        event->ignore();
    }
}

/// Its ends meet the button's; where there is no room below, Qt moves it.
void SortButton::open()
{
    const int width = m_menu.sizeHint().width();
    const int left = layoutDirection() == Qt::RightToLeft ? 0 : this->width() - width;
    m_menu.popup(mapToGlobal(QPoint(left, height() + kGap)));
}
