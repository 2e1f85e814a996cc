// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MainThread.h"

#include <QBasicTimer>
#include <QObject>

/// The door of the programs that run Qt's event loop. Posted work runs in slices of a few
/// milliseconds, between which input and painting have their turn.
class QtMainThread final : public QObject, public MainThread
{
public:
    QtMainThread();
    ~QtMainThread() override;

protected:
    void wake() override;
    void customEvent(QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    QBasicTimer m_timer; ///< active while work may be left
};
