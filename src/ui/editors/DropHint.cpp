// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/DropHint.h"

#include "ui/controls/Theme.h"

#include <QPainter>

namespace {

constexpr int kLines = 6;
constexpr int kMargin = 16;

} // namespace

DropHint::DropHint(const QString &text, QWidget *parent)
    : QWidget(parent)
    , m_text(text)
{
    setAccessibleName(text);
}

void DropHint::setLit(bool isLit)
{
    m_isLit = isLit;
    update();
}

QSize DropHint::sizeHint() const
{
    return {0, kLines * fontMetrics().height()};
}

void DropHint::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_isLit ? colors.accent : colors.muted, m_isLit ? 2 : 1, Qt::DashLine));
    painter.setBrush(m_isLit ? colors.selection : colors.field);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Theme::kFieldRadius,
                            Theme::kFieldRadius);
    painter.setPen(m_isLit ? colors.ink : colors.muted);
    painter.drawText(rect().adjusted(kMargin, kMargin, -kMargin, -kMargin),
                     Qt::AlignCenter | Qt::TextWordWrap, m_text);
}
