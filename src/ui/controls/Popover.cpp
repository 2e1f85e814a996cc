// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/Popover.h"

#include "ui/controls/Theme.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int kShadow = 10;  ///< room around the body for its shadow
constexpr int kArrow = 9;    ///< height of the arrow, half of its width
constexpr int kMargin = 4;   ///< from the window's edges
constexpr int kPadding = 16; ///< around the content
/// Content that shows at least this part of itself beside its anchor scrolls there.
constexpr double kLeastPart = 0.6;

/// In the cell of a table, Return ends the editing of the cell.
bool isCellEditor(const QWidget &field)
{
    const QWidget *viewport = field.parentWidget();
    return viewport != nullptr &&
           qobject_cast<const QAbstractItemView *>(viewport->parentWidget()) != nullptr;
}

bool giveFocus(QWidget *widget)
{
    if (widget == nullptr || !widget->isVisible() || !widget->isEnabled())
        return false;
    widget->setFocus(Qt::PopupFocusReason);
    return true;
}

} // namespace

Popover *Popover::open(QWidget *content, QWidget *anchor, const QRect &part)
{
    return std::unique_ptr<Popover>(new Popover(content, anchor, part)).release(); // its window's
}

Popover::Popover(QWidget *content, QWidget *anchor, const QRect &part)
    : QWidget(anchor->window())
    , m_content(content)
    , m_scroll(new QScrollArea(this))
    , m_anchor(anchor)
    , m_part(part)
    , m_focusBefore(QApplication::focusWidget())
{
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(content->accessibleName());
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidget(content);
    for (QWidget *clear : {m_scroll->viewport(), content})
        clear->setAutoFillBackground(false); // the popover's own ground shows
    qApp->installEventFilter(this);
    connect(anchor, &QObject::destroyed, this, [this] { end(true); });
    place();
    show();
    content->show();
    raise();
    if (QGuiApplication::mouseButtons() == Qt::NoButton)
        window()->setAttribute(Qt::WA_KeyboardFocusChange); // the first control shows its focus
    QWidget *first = content->focusProxy() != nullptr ? content->focusProxy() : content;
    if (first->focusPolicy() == Qt::NoFocus)
        first = content->nextInFocusChain();
    (content->isAncestorOf(first) || first == content ? first : this)
        ->setFocus(Qt::PopupFocusReason);
}

Popover::~Popover()
{
    // The window went away with the popover open: who waits for its end still hears of it.
    if (!m_isClosed) {
        m_isClosed = true;
        Q_EMIT closed();
    }
}

void Popover::dismiss()
{
    end(false);
}

void Popover::end(bool withAnchor)
{
    if (m_isClosed)
        return;
    m_isClosed = true;
    qApp->removeEventFilter(this);
    QWidget *const focus = QApplication::focusWidget();
    const bool hadFocus = focus != nullptr && (focus == this || isAncestorOf(focus));
    if (hadFocus)
        focus->clearFocus(); // else hiding hands it to whichever widget is next
    hide();
    if (hadFocus && withAnchor) {
        // The whole window may be going away, and what had the focus with it.
        if (m_focusBefore != nullptr)
            QMetaObject::invokeMethod(
                m_focusBefore.data(), [before = m_focusBefore.data()] { giveFocus(before); },
                Qt::QueuedConnection);
    } else if (hadFocus && !giveFocus(m_focusBefore)) {
        giveFocus(m_anchor); // what had it has gone meanwhile, as the last problem's button does
    }
    Q_EMIT closed();
    deleteLater();
}

QRect Popover::body() const
{
    QRect body = rect().adjusted(kShadow, kShadow, -kShadow, -kShadow);
    if (m_isBelow)
        body.setTop(body.top() + kArrow);
    else
        body.setBottom(body.bottom() - kArrow);
    return body;
}

void Popover::place()
{
    if (m_anchor == nullptr)
        return;
    const QWidget *around = parentWidget();
    const QRect part = m_part.isNull() ? m_anchor->rect() : m_part;
    const QRect target(m_anchor->mapTo(around, part.topLeft()), part.size());
    const QRect room = around->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
    const QSize frame(2 * (kShadow + kPadding), 2 * (kShadow + kPadding) + kArrow);
    const QSize least = m_content->minimumSizeHint() + frame;
    QSize size = (m_content->sizeHint() + frame).expandedTo(least);
    const int below = room.bottom() - target.bottom() + kShadow;
    const int above = target.top() - room.top() + kShadow;
    m_isBelow = below >= size.height() || below >= above;
    // Content that can be lower, or scroll a little, rather does than that it covers what it is
    // about.
    const int most = room.height() + 2 * kShadow;
    const int beside = std::min(m_isBelow ? below : above, most);
    size.setHeight(beside >= kLeastPart * least.height() ? std::min(size.height(), beside)
                                                         : std::min(least.height(), most));
    const int barWidth =
        size.height() < least.height() ? m_scroll->verticalScrollBar()->sizeHint().width() : 0;
    size.setWidth(
        std::min(std::max(size.width(), least.width() + barWidth), room.width() + 2 * kShadow));
    int y = m_isBelow ? target.bottom() + 1 - kShadow : target.top() + kShadow - size.height();
    y = std::clamp(y, room.top() - kShadow,
                   std::max(room.top() - kShadow, room.bottom() + kShadow + 1 - size.height()));
    const int leftmost = room.left() - kShadow;
    const int rightmost = std::max(leftmost, room.right() + kShadow + 1 - size.width());
    const int x = std::clamp(target.center().x() - size.width() / 2, leftmost, rightmost);
    setGeometry(QRect(QPoint(x, y), size));
    const int corner = kShadow + static_cast<int>(Theme::kCardRadius) + kArrow;
    m_arrowX = std::clamp(target.center().x() - x, corner, std::max(corner, width() - corner));
    const QRect inside = body().adjusted(kPadding, kPadding, -kPadding, -kPadding);
    m_scroll->setGeometry(inside);
    m_content->resize(inside.width() - barWidth,
                      std::max(inside.height(), m_content->minimumSizeHint().height()));
    update();
}

/// The button that Return presses where the content has one: a form that is to be confirmed.
QPushButton *Popover::defaultButton() const
{
    const auto buttons = m_content->findChildren<QPushButton *>();
    const auto found = std::find_if(buttons.begin(), buttons.end(), [](const QPushButton *button) {
        return button->isDefault() && button->isVisible();
    });
    return found == buttons.end() ? nullptr : *found;
}

/// The anchor itself, or what it moves with.
bool Popover::carriesAnchor(const QObject *object) const
{
    const auto *widget = qobject_cast<const QWidget *>(object);
    return m_anchor != nullptr && widget != nullptr &&
           (widget == m_anchor || widget->isAncestorOf(m_anchor));
}

bool Popover::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto *widget = qobject_cast<QWidget *>(watched);
        // Windows of its own, such as the list of a pop-up, belong to the popover.
        if (widget != nullptr && widget->window() == window() && widget != this &&
            !isAncestorOf(widget))
            dismiss();
        break;
    }
    case QEvent::Resize:
    case QEvent::Move:
        if (carriesAnchor(watched))
            place();
        break;
    case QEvent::Hide:
        if (watched == m_anchor)
            end(true);
        break;
    case QEvent::LayoutRequest:
        if (watched == m_content || watched == m_scroll->viewport())
            place();
        break;
    case QEvent::KeyPress: {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isReturn = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        const auto *field = qobject_cast<QLineEdit *>(watched);
        if (isReturn && field != nullptr && isAncestorOf(field) && !isCellEditor(*field)) {
            if (QPushButton *button = defaultButton())
                button->click();
            else
                dismiss();
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

/// Goes round in the popover; the window below is out of sight of those who follow the keyboard.
bool Popover::focusNextPrevChild(bool next)
{
    QWidget *const from = window()->focusWidget();
    if (from == nullptr || !isAncestorOf(from))
        return QWidget::focusNextPrevChild(next);
    const auto follow = [next](const QWidget *widget) {
        return next ? widget->nextInFocusChain() : widget->previousInFocusChain();
    };
    for (QWidget *to = follow(from); to != from; to = follow(to)) {
        if (to == this || !isAncestorOf(to) || (to->focusPolicy() & Qt::TabFocus) != Qt::TabFocus ||
            to->focusProxy() != nullptr || !to->isVisible() || !to->isEnabled())
            continue;
        to->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        break;
    }
    return true;
}

bool Popover::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest)
        place();
    // Escape closes the popover before any shortcut of the window hears of it.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape)
        event->accept();
    return QWidget::event(event);
}

void Popover::keyPressEvent(QKeyEvent *event)
{
    auto *const button = qobject_cast<QAbstractButton *>(window()->focusWidget());
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
             button != nullptr && isAncestorOf(button) && !button->isCheckable())
        button->click(); // as in a dialogue
    // No key that the popover's controls leave alone is for the window below.
    event->accept();
}

void Popover::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(body()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(Qt::NoPen);
    for (int ring = kShadow; ring > 0; --ring) {
        painter.setBrush(QColor(0, 0, 0, colors.isDark ? 9 : 4));
        painter.drawRoundedRect(face.adjusted(-ring, -ring + 2, ring, ring),
                                Theme::kCardRadius + ring, Theme::kCardRadius + ring);
    }
    QPainterPath path;
    path.addRoundedRect(face, Theme::kCardRadius, Theme::kCardRadius);
    const qreal base = m_isBelow ? face.top() : face.bottom();
    const qreal tip = m_isBelow ? base - kArrow : base + kArrow;
    QPainterPath arrow;
    arrow.moveTo(m_arrowX - kArrow, base);
    arrow.lineTo(m_arrowX, tip);
    arrow.lineTo(m_arrowX + kArrow, base);
    arrow.closeSubpath();
    painter.setPen(QPen(colors.border, 1));
    painter.setBrush(colors.card);
    painter.drawPath(path.united(arrow));
}
