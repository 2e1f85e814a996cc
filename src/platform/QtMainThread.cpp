// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtMainThread.h"

#include <QCoreApplication>
#include <QEvent>

namespace {

constexpr std::chrono::milliseconds kSlice{8};

} // namespace

QtMainThread::QtMainThread() = default;

QtMainThread::~QtMainThread()
{
    dropPosted();
}

void QtMainThread::wake()
{
    QCoreApplication::postEvent(this, new QEvent(QEvent::User)); // the receiver's queue owns it
}

void QtMainThread::customEvent(QEvent *)
{
    // Qt delivers events that are posted meanwhile in the same round, and would keep timers and
    // input waiting for as long as work brings more work. So only the first one runs some; the rest
    // is the timer's.
    if (m_timer.isActive())
        return;
    m_timer.start(0, this);
    runPosted(kSlice);
}

void QtMainThread::timerEvent(QTimerEvent *)
{
    // Started anew before the work, so that an event loop within it goes on with the rest: a timer
    // whose event is under way does not fire there.
    m_timer.start(0, this);
    if (!runPosted(kSlice))
        m_timer.stop();
}
