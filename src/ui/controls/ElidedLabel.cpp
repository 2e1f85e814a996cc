// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/ElidedLabel.h"

#include "ui/controls/ToolTip.h"

#include <QHelpEvent>
#include <QStyle>
#include <QStylePainter>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int kLeastLetters = 8;

} // namespace

QSize ElidedLabel::minimumSizeHint() const
{
    const QSize whole = QLabel::minimumSizeHint();
    return {std::min(whole.width(), kLeastLetters * fontMetrics().averageCharWidth()),
            whole.height()};
}

bool ElidedLabel::isCut() const
{
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    QToolTip::showText(static_cast<const QHelpEvent *>(event)->globalPos(),
                       isCut() ? ToolTip::of(text()) : toolTip(), this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    painter.drawItemText(contentsRect(),
                         static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())) |
                             Qt::TextSingleLine,
                         palette(), isEnabled(), shown, foregroundRole());
}
