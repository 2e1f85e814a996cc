// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/WindowMemory.h"

#include "settings/UserDefaults.h"

#include <QMainWindow>
#include <QScreen>

#include <algorithm>

namespace {

constexpr QLatin1StringView kGeometry{"windowGeometry"};
constexpr QLatin1StringView kState{"windowState"};
constexpr int kStateVersion = 1; ///< of the docks' arrangement
constexpr QSize kFirstSize{1180, 760};
constexpr QMargins kFrame{4, 32, 4, 4}; ///< that a window manager may draw around a window

QByteArray stored(QLatin1StringView key)
{
    return QByteArray::fromBase64(UserDefaults::valueForKey(key).toString().toLatin1());
}

QString storable(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

} // namespace

namespace WindowMemory {

void fitIntoScreen(QWidget &window)
{
    const QRect room = window.screen()->availableGeometry() - kFrame;
    if (window.isMaximized() || window.isFullScreen() || room.contains(window.geometry()))
        return;
    QRect fitting(window.geometry().topLeft(), window.size().boundedTo(room.size()));
    fitting.moveRight(std::min(fitting.right(), room.right()));
    fitting.moveBottom(std::min(fitting.bottom(), room.bottom()));
    fitting.moveLeft(std::max(fitting.left(), room.left()));
    fitting.moveTop(std::max(fitting.top(), room.top()));
    window.setGeometry(fitting);
}

void restore(QMainWindow &window)
{
    if (window.restoreGeometry(stored(kGeometry)))
        fitIntoScreen(window);
    else
        window.resize(kFirstSize.boundedTo((window.screen()->availableGeometry() - kFrame).size()));
    window.restoreState(stored(kState), kStateVersion);
}

void remember(const QMainWindow &window)
{
    UserDefaults::setValues({{kGeometry, storable(window.saveGeometry())},
                             {kState, storable(window.saveState(kStateVersion))}});
}

} // namespace WindowMemory
