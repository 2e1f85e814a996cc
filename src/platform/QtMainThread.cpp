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
    runSlice();
}

void QtMainThread::timerEvent(QTimerEvent *)
{
    runSlice();
}

void QtMainThread::runSlice()
{
    // Started before the work, so that an event loop within it goes on with the rest. A timer, not
    // another event: events posted by events would keep input waiting.
    if (!m_timer.isActive())
        m_timer.start(0, this);
    if (!runPosted(kSlice))
        m_timer.stop();
}
