// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/DropHint.h"

#include "ui/controls/Theme.h"

#include <QPainter>

namespace {

constexpr int kLines = 6;
constexpr int kMargin = 16;
constexpr auto kTextFlags = static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWordWrap);

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

QSize DropHint::minimumSizeHint() const
{
    return {0, fontMetrics().height() + kMargin};
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
    const QRect room = rect().adjusted(kMargin, kMargin / 2, -kMargin, -kMargin / 2);
    const bool fits = painter.boundingRect(room, kTextFlags, m_text).height() <= room.height();
    painter.drawText(room, kTextFlags, fits ? m_text : m_text.section(u'\n', 0, 0));
}
