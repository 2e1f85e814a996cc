// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TErrorLog.h"

#include <QWidget>

/// The problems of one file, each with the icon of its level: content of a popover. The arrow keys
/// go to other files.
class ProblemList : public QWidget
{
    Q_OBJECT

public:
    ProblemList(const QString &fileName, const TErrorLog &log, QWidget *parent = nullptr);

Q_SIGNALS:
    void stepRequested(bool up);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
