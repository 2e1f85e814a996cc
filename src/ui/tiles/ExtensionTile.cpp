// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/ExtensionTile.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/tiles/TileDrawing.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPadding = 13;
constexpr int kGap = 14;
constexpr int kInset = 2;
constexpr int kLeastLetters = 5;

/// Of the period that stands before the tile as it does before an extension.
int periodSize(const QFontMetrics &metrics)
{
    return std::max(3, metrics.height() / 5);
}

int roomForPeriod(const QFontMetrics &metrics)
{
    return 4 * periodSize(metrics);
}

} // namespace

ExtensionTile::ExtensionTile(TDocument &document, QWidget *parent)
    : QAbstractButton(parent)
    , m_document(document)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setToolTip(tr("What becomes of the extension: kept, replaced, mapped, left out or rewritten"));
    connect(&document, &TDocument::extensionHandlerChanged, this, &ExtensionTile::follow);
    follow();
}

void ExtensionTile::follow()
{
    setText(m_document.theExtensionHandler().name());
    setAccessibleName(tr("Extension: %1").arg(text()));
    updateGeometry();
    update();
}

void ExtensionTile::setEdited(bool isEdited)
{
    if (std::exchange(m_isEdited, isEdited) != isEdited)
        update();
}

QFont ExtensionTile::titleFont() const
{
    QFont title = font();
    title.setBold(true);
    return title;
}

QSize ExtensionTile::sizeHint() const
{
    const int title = QFontMetrics(titleFont()).horizontalAdvance(tr("Extension"));
    const int name = fontMetrics().horizontalAdvance(text());
    return {roomForPeriod(fontMetrics()) + 2 * kInset + 2 * kPadding + title + kGap + name + kGap +
                Icons::extent(fontMetrics()),
            TileDrawing::height(fontMetrics(), true)};
}

/// With as little of the method's name as still tells something.
QSize ExtensionTile::minimumSizeHint() const
{
    const int name = fontMetrics().horizontalAdvance(text());
    const int least = std::min(name, kLeastLetters * fontMetrics().averageCharWidth());
    return sizeHint() - QSize(name - least, 0);
}

void ExtensionTile::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    const auto placed = [this](const QRect &place) {
        return QStyle::visualRect(layoutDirection(), rect(), place);
    };
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.extension);
    const int period = periodSize(fontMetrics());
    const int foot = rect().center().y() + fontMetrics().ascent() / 2 - period;
    painter.drawEllipse(placed({2, foot, period, period}));

    const int left = roomForPeriod(fontMetrics()) + kInset;
    const QRect frame = placed(rect().adjusted(left, kInset, -kInset, -kInset));
    const bool isLit = hasFocus() || m_isEdited;
    painter.setPen(QPen(isLit ? colors.accent : colors.extension, isLit ? 2 : 1.5));
    painter.setBrush(isDown() || underMouse() ? colors.field : colors.card);
    painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kFieldRadius,
                            Theme::kFieldRadius);

    const QFont title = titleFont();
    const int titleWidth = QFontMetrics(title).horizontalAdvance(tr("Extension"));
    const int start = left + kPadding;
    painter.setFont(title);
    painter.setPen(colors.extension);
    painter.drawText(placed({start, 0, titleWidth + 1, height()}), Qt::AlignCenter,
                     tr("Extension"));
    painter.setFont(font());
    painter.setPen(colors.ink);
    const int side = Icons::extent(fontMetrics());
    const int end = width() - kInset - kPadding - side;
    const int nameStart = start + titleWidth + kGap;
    const QRect name(nameStart, 0, end - nameStart, height());
    const Qt::Alignment alignment =
        QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    painter.drawText(placed(name), static_cast<int>(alignment),
                     fontMetrics().elidedText(text(), Qt::ElideRight, name.width()));
    const QRect chevron(end, (height() - side) / 2, side, side);
    painter.drawPixmap(placed(chevron),
                       Icons::pixmap("chevron-down"_L1, side, colors.muted, devicePixelRatioF()));
}

void ExtensionTile::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void ExtensionTile::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void ExtensionTile::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

void ExtensionTile::changeEvent(QEvent *event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGeometry();
    update();
}
