// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/WelcomePicture.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSize{220, 132}; ///< at the usual size of the font
constexpr qreal kUsualExtent = 16;
constexpr int kMargin = 16;
/// Of the tiles and of what they give to the names.
constexpr QRgb kText = 0xffd3e397;
constexpr QRgb kSeparator = 0xff8dcdc1;
constexpr QRgb kCounter = 0xff9c988a;

/// How much larger than usual the font is, and with it the picture.
qreal scaleOf(const QFontMetrics &metrics)
{
    return Icons::extent(metrics) / kUsualExtent;
}

struct Canvas
{
    QPainter &painter;
    ThemeColors colors;
    qreal ratio;

    void drawing(QLatin1StringView icon, QPoint at, int size, const QColor &ink) const
    {
        painter.drawPixmap(at, Icons::pixmap(icon, size, ink, ratio));
    }
    void text(const QRect &rect, const QString &text, const QColor &ink) const
    {
        painter.setPen(ink);
        painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter, text);
    }
    /// A tile that interlocks with the next; gives the x at which that begins.
    int tile(QPoint at, int width, QLatin1StringView icon, QRgb color) const
    {
        constexpr int kHeight = 36;
        constexpr int kKnob = 6;
        const QRectF body(at.x(), at.y(), width, kHeight);
        QPainterPath path;
        path.addRoundedRect(body, 5, 5);
        QPainterPath knob;
        knob.addEllipse(QPointF(body.right() + 1, body.center().y()), kKnob, kKnob);
        QPainterPath hole;
        hole.addEllipse(QPointF(body.left() + 1, body.center().y()), kKnob + 1, kKnob + 1);
        painter.fillPath(path.united(knob).subtracted(hole), QColor::fromRgb(color));
        const QColor ink = Theme::inkOn(QColor::fromRgb(color));
        drawing(icon, body.center().toPoint() - QPoint(6, 9), 18, ink);
        return static_cast<int>(body.right()) + 2;
    }
    void pointer(QPointF tip) const
    {
        const QPolygonF arrow({tip, tip + QPointF(0, 17), tip + QPointF(4, 13),
                               tip + QPointF(7, 19), tip + QPointF(10, 18), tip + QPointF(7, 12),
                               tip + QPointF(12, 12)});
        painter.setPen(QPen(colors.card, 1.5));
        painter.setBrush(colors.ink);
        painter.drawPolygon(arrow);
    }
};

void paintDrop(const Canvas &canvas, const QRect &rect)
{
    QPen dashes(canvas.colors.accent, 1.5, Qt::CustomDashLine);
    dashes.setDashPattern({4, 3});
    canvas.painter.setPen(dashes);
    canvas.painter.setBrush(Qt::NoBrush);
    canvas.painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
    const QPoint centre = rect.center();
    canvas.drawing("folder"_L1, centre - QPoint(58, 22), 44, canvas.colors.muted);
    canvas.drawing("original"_L1, centre - QPoint(4, 30), 44, canvas.colors.accent);
    canvas.pointer(centre + QPointF(34, 2));
}

void paintTiles(const Canvas &canvas, const QRect &rect)
{
    const int y = rect.center().y() - 2;
    int x = canvas.tile({rect.left() + 18, y}, 48, "text"_L1, kText);
    x = canvas.tile({x, y}, 48, "separator"_L1, kSeparator);
    canvas.tile({x + 14, y - 26}, 48, "counter"_L1, kCounter);
    canvas.pointer(QPointF(x + 46, y + 4));
}

void paintNames(const Canvas &canvas, const QRect &rect)
{
    constexpr int kRow = 30;
    constexpr int kIndent = 28; ///< from the tick to the name
    const std::array names{u"Rome 001.jpg"_s, u"Rome 002.jpg"_s, u"Rome 003.jpg"_s};
    const QFontMetrics metrics = canvas.painter.fontMetrics();
    const int left = rect.center().x() - (kIndent + metrics.horizontalAdvance(names[0])) / 2;
    int y = rect.center().y() - kRow * 3 / 2;
    for (const QString &name : names) {
        canvas.drawing("tick"_L1, {left, y + 7}, 16, canvas.colors.good);
        int x = left + kIndent;
        const auto part = [&](const QString &text, QRgb color) {
            const int width = metrics.horizontalAdvance(text) + 4;
            const QRect box(x, y + 5, width, kRow - 10);
            canvas.painter.fillRect(box, QColor::fromRgb(color));
            canvas.text(box.adjusted(2, 0, 0, 0), text, Theme::inkOn(QColor::fromRgb(color)));
            x += width;
        };
        part(name.left(4), kText);
        part(name.mid(4, 1), kSeparator);
        part(name.mid(5, 3), kCounter);
        canvas.text(QRect(x + 2, y, rect.right() - x, kRow), name.mid(8), canvas.colors.extension);
        y += kRow;
    }
}

} // namespace

WelcomePicture::WelcomePicture(Step step, QWidget *parent)
    : QWidget(parent)
    , m_step(step)
{
    setFixedSize((QSizeF(kSize) * scaleOf(fontMetrics())).toSize());
}

void WelcomePicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setLayoutDirection(Qt::LeftToRight); // the names are English ones
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal scale = scaleOf(fontMetrics());
    painter.scale(scale, scale);
    QFont usual = font();
    usual.setPointSizeF(usual.pointSizeF() / scale);
    painter.setFont(usual);
    const Canvas canvas{painter, ThemeColors::of(palette()), devicePixelRatioF() * scale};
    const QRect whole(QPoint(), kSize);
    painter.setPen(QPen(canvas.colors.border, 1));
    painter.setBrush(canvas.colors.card);
    painter.drawRoundedRect(QRectF(whole).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kCardRadius,
                            Theme::kCardRadius);
    const QRect inside = whole.adjusted(kMargin, kMargin, -kMargin, -kMargin);
    switch (m_step) {
    case Drop:
        return paintDrop(canvas, inside);
    case Tiles:
        return paintTiles(canvas, inside);
    case Names:
        return paintNames(canvas, inside);
    }
}
