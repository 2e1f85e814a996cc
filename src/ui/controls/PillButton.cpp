// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/PillButton.h"

#include "ui/controls/Theme.h"

#include <QLocale>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr int kSideMargin = 12;
constexpr int kGap = 6;

} // namespace

PillButton::PillButton(const QString &text, QWidget *parent)
    : QAbstractButton(parent)
{
    setText(text);
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PillButton::setCount(qint64 count)
{
    if (m_count == count)
        return;
    m_count = count;
    setAccessibleName(shownText());
    updateGeometry();
    update();
}

QString PillButton::shownText() const
{
    return m_count < 0 ? text() : u"%1 %2"_s.arg(text(), locale().toString(m_count));
}

QSize PillButton::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    int width = metrics.horizontalAdvance(text()) + 2 * kSideMargin;
    if (m_count >= 0)
        width += metrics.horizontalAdvance(locale().toString(m_count)) + kGap;
    return {width, metrics.height() + 8};
}

void PillButton::enterEvent(QEnterEvent *)
{
    update();
}

void PillButton::leaveEvent(QEvent *)
{
    update();
}

void PillButton::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = face.height() / 2;
    painter.setPen(isChecked() ? QPen(colors.accent) : QPen(colors.border));
    painter.setBrush(isChecked() ? colors.accent : underMouse() ? colors.field : colors.card);
    painter.drawRoundedRect(face, radius, radius);
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(isChecked() ? colors.accentInk : colors.accent, 1.5));
        painter.drawRoundedRect(face.adjusted(1.5, 1.5, -1.5, -1.5), radius - 1.5, radius - 1.5);
    }
    const QRect inside = rect().adjusted(kSideMargin, 0, -kSideMargin, 0);
    painter.setPen(!isEnabled() ? colors.muted : isChecked() ? colors.accentInk : colors.ink);
    painter.drawText(inside, Qt::AlignVCenter | Qt::AlignLeading, text());
    if (m_count >= 0)
        painter.drawText(inside, Qt::AlignVCenter | Qt::AlignTrailing, locale().toString(m_count));
}
