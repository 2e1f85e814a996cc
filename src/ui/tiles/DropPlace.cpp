// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/DropPlace.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/tiles/TileDrawing.h"

#include <QEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPadding = 20;
constexpr int kLeastWidth = 48;
constexpr float kDashOpacity = 0.6F;

} // namespace

DropPlace::DropPlace(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleName(tr("drag elements here"));
    setAccessibleDescription(tr("The end of the recipe"));
}

void DropPlace::setInviting(bool isInviting)
{
    if (std::exchange(m_isInviting, isInviting) != isInviting)
        update();
}

QSize DropPlace::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(accessibleName()) + 2 * kPadding,
            TileDrawing::height(metrics, true)};
}

int DropPlace::leastWidth()
{
    return kLeastWidth;
}

void DropPlace::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    const bool isLit = m_isInviting || hasFocus();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor dashes = colors.muted;
    dashes.setAlphaF(kDashOpacity);
    QPen pen(isLit ? colors.accent : dashes, isLit ? 1.5 : 1);
    pen.setDashPattern({4, 3});
    painter.setPen(pen);
    const QRectF frame = QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5);
    painter.drawRoundedRect(frame, Theme::kFieldRadius, Theme::kFieldRadius);
    if (frame.width() >= sizeHint().width() - kPadding) {
        painter.setPen(colors.muted);
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, accessibleName());
        return;
    }
    const int side = Icons::extent(fontMetrics());
    painter.drawPixmap(rect().center() + QPoint(1, 1) - QPoint(side / 2, side / 2),
                       Icons::pixmap("plus"_L1, side, colors.muted, devicePixelRatioF()));
}

void DropPlace::focusInEvent(QFocusEvent *)
{
    update();
}

void DropPlace::focusOutEvent(QFocusEvent *)
{
    update();
}

void DropPlace::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    update();
}
