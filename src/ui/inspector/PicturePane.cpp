// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/inspector/PicturePane.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/images/Images.h"

#include <QPainter>
#include <QScreen>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr QSize kRoom(300, 184);
constexpr int kCharacters = 42;
constexpr int kPartOfScreen = 4;
constexpr int kEdge = 256; ///< of pictures that are not much wider than high
constexpr int kFrame = 6;
constexpr qreal kRadius = 4;
constexpr int kDrawing = 48;
constexpr int kRing = 22;
constexpr int kTick = 40;       ///< milliseconds
constexpr int kTicksToWait = 8; ///< before the mark is shown; most pictures come sooner
constexpr int kDegreesPerTick = 12;
constexpr int kArc = 100;

} // namespace

PicturePane::PicturePane(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("Picture of the selected file"));
}

QSize PicturePane::sizeHint() const
{
    // Below it stand tags and their values, which want more room in a larger font.
    const int wanted = std::min(fontMetrics().averageCharWidth() * kCharacters,
                                screen()->availableGeometry().width() / kPartOfScreen);
    return {std::max(kRoom.width(), wanted), kRoom.height()};
}

int PicturePane::edge() const
{
    return static_cast<int>(std::ceil(kEdge * devicePixelRatioF()));
}

void PicturePane::showPicture(const QImage &picture)
{
    m_timer.stop();
    m_picture = picture;
    m_shown = {};
    update();
}

void PicturePane::showDrawing(QLatin1StringView drawing, bool isBusy)
{
    m_picture = {};
    m_shown = {};
    m_drawing = drawing;
    m_ticks = 0;
    if (isBusy)
        m_timer.start(kTick, this);
    else
        m_timer.stop();
    update();
}

void PicturePane::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId())
        return;
    if (++m_ticks > kTicksToWait)
        update();
}

void PicturePane::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const ThemeColors colors = ThemeColors::of(palette());
    painter.setPen(colors.border);
    painter.setBrush(colors.card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kCardRadius,
                            Theme::kCardRadius);
    if (!m_picture.isNull())
        paintPicture(painter);
    else if (m_timer.isActive() && m_ticks > kTicksToWait)
        paintBusy(painter);
    else if (!m_drawing.isEmpty())
        paintDrawing(painter);
}

void PicturePane::paintPicture(QPainter &painter)
{
    const qreal ratio = devicePixelRatioF();
    const QSize room = (QSizeF(size().shrunkBy({kFrame, kFrame, kFrame, kFrame})) * ratio).toSize();
    const QSize wanted = Images::fitting(m_picture.size(), room);
    if (m_shown.size() != wanted) {
        m_shown = Images::rounded(Images::fitted(m_picture, room), kRadius * ratio);
        m_shown.setDevicePixelRatio(ratio);
    }
    const QSizeF shown = m_shown.deviceIndependentSize();
    painter.drawImage(QPointF(std::round((width() - shown.width()) / 2),
                              std::round((height() - shown.height()) / 2)),
                      m_shown);
}

void PicturePane::paintDrawing(QPainter &painter)
{
    const ThemeColors colors = ThemeColors::of(palette());
    // Opaque, because the strokes of a drawing overlap.
    const auto between = [](int a, int b) { return (a + b) / 2; };
    const QColor ink(between(colors.muted.red(), colors.card.red()),
                     between(colors.muted.green(), colors.card.green()),
                     between(colors.muted.blue(), colors.card.blue()));
    painter.drawPixmap((width() - kDrawing) / 2, (height() - kDrawing) / 2,
                       Icons::pixmap(m_drawing, kDrawing, ink, devicePixelRatioF()));
}

void PicturePane::paintBusy(QPainter &painter)
{
    const QRectF ring((width() - kRing) / 2.0, (height() - kRing) / 2.0, kRing, kRing);
    constexpr int kUnits = 16; // a degree of QPainter
    painter.setPen(QPen(ThemeColors::of(palette()).muted, 2.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, -m_ticks * kDegreesPerTick * kUnits, kArc * kUnits);
}
