// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/WindowMemory.h"

#include "settings/UserDefaults.h"

#include <QMainWindow>
#include <QScreen>

#include <algorithm>

namespace {

constexpr QLatin1StringView kGeometry{"windowGeometry"};
constexpr QLatin1StringView kState{"windowState"};
constexpr QPoint kBeside{24, 24};
constexpr int kStateVersion = 1; ///< of the docks' arrangement
constexpr QSize kFirstSize{1180, 760};
constexpr QMargins kUsualFrame{4, 32, 4, 4}; ///< that a window manager may draw around a window

QByteArray stored(QLatin1StringView key)
{
    return QByteArray::fromBase64(UserDefaults::valueForKey(key).toString().toLatin1());
}

QString storable(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

/// Moves and shrinks a window that is not shown yet so that all of it can be seen with its frame.
void fitIntoScreen(QWidget &window, const QMargins &frame)
{
    const QRect room = window.screen()->availableGeometry() - frame;
    if (window.isMaximized() || window.isFullScreen() || room.contains(window.geometry()))
        return;
    QRect fitting(window.geometry().topLeft(), window.size().boundedTo(room.size()));
    fitting.moveRight(std::min(fitting.right(), room.right()));
    fitting.moveBottom(std::min(fitting.bottom(), room.bottom()));
    fitting.moveLeft(std::max(fitting.left(), room.left()));
    fitting.moveTop(std::max(fitting.top(), room.top()));
    window.setGeometry(fitting);
}

} // namespace

namespace WindowMemory {

void restore(QMainWindow &window)
{
    if (window.restoreGeometry(stored(kGeometry)))
        fitIntoScreen(window, kUsualFrame);
    else
        window.resize(
            kFirstSize.boundedTo((window.screen()->availableGeometry() - kUsualFrame).size()));
    window.restoreState(stored(kState), kStateVersion);
}

void openBeside(QWidget &window, const QWidget &other)
{
    const QRect inside = other.geometry();
    const QRect outside = other.frameGeometry();
    // Before the first answer of the window manager there seems to be no frame.
    const QMargins frame(inside.left() - outside.left(), inside.top() - outside.top(),
                         outside.right() - inside.right(), outside.bottom() - inside.bottom());
    window.setScreen(other.screen());
    window.setGeometry(inside.translated(kBeside));
    fitIntoScreen(window, frame.isNull() ? kUsualFrame : frame);
}

void remember(const QMainWindow &window)
{
    UserDefaults::setValues({{kGeometry, storable(window.saveGeometry())},
                             {kState, storable(window.saveState(kStateVersion))}});
}

} // namespace WindowMemory
