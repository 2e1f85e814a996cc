// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/BadgeButton.h"

#include "ui/controls/Theme.h"

#include <QLocale>
#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>

#include <algorithm>

namespace {

constexpr int kOverhang = 8; ///< of the badge over the face, above and at the trailing side
constexpr int kSideMargin = 24;
constexpr int kHeight = 32;
constexpr int kBadgeHeight = 18;
constexpr qint64 kMost = 9999;
constexpr double kReadable = 4.5;

} // namespace

BadgeButton::BadgeButton(const QString &text, Weight weight, QWidget *parent)
    : QPushButton(text, parent)
    , m_weight(weight)
{
    setAccessibleName(text);
    setAutoDefault(false);
}

void BadgeButton::setBadge(qint64 number)
{
    if (m_badge == number)
        return;
    m_badge = number;
    setAccessibleDescription(number > 0 ? tr("%n critical problem(s)", nullptr,
                                             static_cast<int>(std::min(number, kMost)))
                                        : QString());
    update();
}

QString BadgeButton::badgeText() const
{
    return m_badge > kMost ? locale().toString(kMost) + u'+' : locale().toString(m_badge);
}

QSize BadgeButton::sizeHint() const
{
    const int height = std::max(kHeight, fontMetrics().height() + 14);
    return {fontMetrics().horizontalAdvance(text()) + 2 * kSideMargin + 2 * kOverhang,
            height + 2 * kOverhang};
}

QRect BadgeButton::face() const
{
    return rect().adjusted(kOverhang, kOverhang, -kOverhang, -kOverhang);
}

void BadgeButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_weight == Weight::Accented) {
        paintAccentedFace(painter);
    } else {
        QStyleOptionButton option;
        initStyleOption(&option);
        option.rect = face();
        painter.drawControl(QStyle::CE_PushButton, option);
    }
    if (m_badge > 0)
        paintBadge(painter);
}

void BadgeButton::paintAccentedFace(QPainter &painter) const
{
    const ThemeColors colors = ThemeColors::of(palette());
    QColor fill = isEnabled() ? colors.accent : colors.border;
    if (isDown())
        fill = fill.darker(112);
    else if (underMouse() && isEnabled())
        fill = fill.lighter(108);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(face()), Theme::kFieldRadius, Theme::kFieldRadius);
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(colors.accentInk, 1.5));
        painter.drawRoundedRect(QRectF(face()).adjusted(2.5, 2.5, -2.5, -2.5),
                                Theme::kFieldRadius - 2, Theme::kFieldRadius - 2);
    }
    painter.setPen(isEnabled() ? colors.accentInk : colors.muted);
    painter.drawText(face(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

void BadgeButton::paintBadge(QPainter &painter) const
{
    const ThemeColors colors = ThemeColors::of(palette());
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    small.setBold(true);
    painter.setFont(small);
    const QFontMetrics metrics(small);
    const int height = std::max(kBadgeHeight, metrics.height());
    const int width = std::max(height, metrics.horizontalAdvance(badgeText()) + 10);
    const int x =
        isRightToLeft() ? face().left() - kOverhang : face().right() + kOverhang - width + 1;
    const QRectF badge(x, 0, width, height);
    painter.setPen(QPen(colors.window, 1.5));
    QColor fill = colors.critical;
    while (Theme::contrast(fill, Qt::white) < kReadable)
        fill = fill.darker(104);
    painter.setBrush(fill);
    painter.drawRoundedRect(badge.adjusted(0.75, 0.75, -0.75, -0.75), height / 2.0, height / 2.0);
    painter.setPen(Qt::white); // on red of either scheme
    painter.drawText(badge, Qt::AlignCenter, badgeText());
}
