// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/Placing.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace {

class ExposureWatch : public QObject
{
public:
    ExposureWatch(QWindow &window, std::function<void()> work)
        : QObject(&window)
        , m_work(std::move(work))
    {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Expose && static_cast<QWindow &>(*watched).isExposed()) {
            watched->removeEventFilter(this);
            QMetaObject::invokeMethod(watched, std::exchange(m_work, {}),
                                      Qt::QueuedConnection); // not amid the event
            deleteLater();
        }
        return false;
    }

private:
    std::function<void()> m_work;
};

} // namespace

namespace Placing {

void centre(QWidget &window, const QWidget &over)
{
    const QRect other = over.frameGeometry();
    const QSize frame = other.size() - over.size(); // its own is not known before it is shown
    QRect place(QPoint(), window.size() + frame);
    place.moveCenter(other.center());
    const QRect room = over.screen()->availableGeometry();
    place.moveLeft(std::max(room.left(), std::min(place.left(), room.right() - place.width())));
    place.moveTop(std::max(room.top(), std::min(place.top(), room.bottom() - place.height())));
    window.move(place.topLeft());
}

void onceOnScreen(QWidget &window, std::function<void()> work)
{
    QWindow *const handle = window.windowHandle();
    if (handle == nullptr || handle->isExposed())
        work();
    else
        new ExposureWatch(*handle, std::move(work)); // the window's
}

} // namespace Placing
