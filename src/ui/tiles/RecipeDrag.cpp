// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/RecipeDrag.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"

#include <QApplication>
#include <QCursor>
#include <QDrag>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QPainter>
#include <QPointer>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kTilesShown = 3;
constexpr int kCountGap = 4;
/// What the pointer shows where a drop deletes; no recipe offers it.
constexpr Qt::DropAction kDeleting = Qt::LinkAction;
constexpr QLatin1StringView kWayland{"wayland"};
constexpr qint64 kGivingUp = 40; ///< milliseconds
constexpr int kPointer = 28;
constexpr int kPointerIcon = 16;
constexpr int kHanging = 12; ///< from the pointer to what it carries
constexpr qreal kSeenThrough = 0.65;

/// Takes what is dropped anywhere in a window but on a recipe, for as long as it lives.
class Outside : public QObject
{
public:
    explicit Outside(QWidget &window)
        : m_window(&window)
        , m_acceptedDrops(window.acceptDrops())
    {
        window.setAcceptDrops(true);
        window.installEventFilter(this);
    }
    ~Outside() override
    {
        if (m_window)
            m_window->setAcceptDrops(m_acceptedDrops);
    }
    bool hasDrop() const { return m_hasDrop; }

    bool eventFilter(QObject *, QEvent *event) override
    {
        const QEvent::Type type = event->type();
        if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
            return false;
        auto *drop = static_cast<QDropEvent *>(event);
        drop->setDropAction(kDeleting);
        drop->accept();
        m_hasDrop = m_hasDrop || type == QEvent::Drop;
        return true;
    }

private:
    QPointer<QWidget> m_window;
    bool m_acceptedDrops;
    bool m_hasDrop = false;
};

/// Notes when a drag leaves the program's windows. Wayland tells a program neither where the
/// pointer is beyond them nor that the button was released there.
class Leaving : public QObject
{
public:
    Leaving() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const QEvent::Type type = event->type();
        if (!watched->isWindowType())
            return false;
        if (type == QEvent::DragLeave)
            m_left.start();
        else if (type == QEvent::DragEnter || type == QEvent::DragMove)
            m_left.invalidate();
        return false;
    }
    /// A drag that is given up leaves its window, too, but ends with that.
    bool isBeyond() const { return m_left.isValid() && m_left.hasExpired(kGivingUp); }

private:
    QElapsedTimer m_left;
};

/// A wastebasket on a card.
QPixmap deletingPointer(const QWidget &recipe)
{
    const ThemeColors colors = ThemeColors::of(recipe.palette());
    const qreal ratio = recipe.devicePixelRatioF();
    QPixmap pointer((QSizeF(kPointer, kPointer) * ratio).toSize());
    pointer.setDevicePixelRatio(ratio);
    pointer.fill(Qt::transparent);
    QPainter painter(&pointer);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors.critical, 1));
    painter.setBrush(colors.card);
    painter.drawRoundedRect(QRectF(0.5, 0.5, kPointer - 1, kPointer - 1), Theme::kFieldRadius,
                            Theme::kFieldRadius);
    const int inset = (kPointer - kPointerIcon) / 2;
    painter.drawPixmap(inset, inset,
                       Icons::pixmap("trash"_L1, kPointerIcon, colors.critical, ratio));
    return pointer;
}

/// A drag that Escape ends leaves the button down; one that ends within the window may have been
/// too quick for its answers.
bool isReleasedBeyond(const QWidget &window, const Leaving &leaving)
{
    if (QGuiApplication::platformName().startsWith(kWayland))
        return leaving.isBeyond();
    return !(QGuiApplication::mouseButtons() & Qt::LeftButton) &&
           !window.frameGeometry().contains(QCursor::pos());
}

} // namespace

namespace RecipeDrag {

Picture hung(const QPixmap &tiles, int x)
{
    Picture picture{QPixmap(tiles.size()), {x, -kHanging}};
    picture.pixmap.setDevicePixelRatio(tiles.devicePixelRatio());
    picture.pixmap.fill(Qt::transparent);
    QPainter painter(&picture.pixmap);
    painter.setOpacity(kSeenThrough);
    painter.drawPixmap(0, 0, tiles);
    return picture;
}

Picture picture(const std::vector<TileDrawing> &tiles, std::size_t pressed, int x,
                const QWidget &recipe)
{
    const std::size_t shown = std::min(tiles.size(), kTilesShown);
    const QString more = shown < tiles.size() ? u"+%1"_s.arg(tiles.size() - shown) : QString();
    const QFont &font = recipe.font();
    std::vector<QRect> places;
    int left = 0;
    for (std::size_t i = 0; i < shown; ++i) {
        places.emplace_back(QPoint(left, 0), tiles[i].size(font));
        left += places.back().width() - TileDrawing::kOverlap;
    }
    const int countWidth = more.isEmpty() ? 0 : recipe.fontMetrics().horizontalAdvance(more);
    const QRect count(left + TileDrawing::kOverlap + kCountGap, 0, countWidth,
                      places.front().height());
    const QSize size(count.right() + 1, count.height());
    const bool isMirrored = recipe.layoutDirection() == Qt::RightToLeft;
    const auto placed = [&](const QRect &place) {
        return isMirrored ? place.translated(size.width() - place.left() - place.right() - 1, 0)
                          : place;
    };

    const qreal ratio = recipe.devicePixelRatioF();
    QPixmap pixmap((QSizeF(size) * ratio).toSize());
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    for (std::size_t i = 0; i < shown; ++i)
        tiles[i].paint(painter, placed(places[i]), font, recipe.layoutDirection());
    painter.setFont(font);
    painter.setPen(recipe.palette().color(QPalette::WindowText));
    painter.drawText(placed(count), Qt::AlignCenter, more);
    painter.end();
    return hung(pixmap, placed(places[std::min(pressed, shown - 1)]).left() + x);
}

bool run(std::unique_ptr<QMimeData> data, const Picture &picture, Purpose purpose, QWidget &recipe)
{
    auto *drag = new QDrag(qApp); // outlives the recipe when its window is closed meanwhile
    drag->setMimeData(data.release());
    drag->setPixmap(picture.pixmap);
    drag->setHotSpot(picture.hotSpot);
    if (purpose == Purpose::Copy) {
        drag->exec(Qt::CopyAction);
        return false;
    }
    const QPointer<QWidget> window(recipe.window());
    Outside outside(*window);
    const Leaving leaving;
    drag->setDragCursor(deletingPointer(recipe), kDeleting);
    const Qt::DropAction done =
        drag->exec(Qt::CopyAction | Qt::MoveAction | kDeleting, Qt::MoveAction);
    return outside.hasDrop() ||
           (done == Qt::IgnoreAction && window && isReleasedBeyond(*window, leaving));
}

} // namespace RecipeDrag
