// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// The upright line with a bar at either end, between two tiles where what is being dragged would
/// come.
class InsertionMark : public QWidget
{
    Q_OBJECT

public:
    /// Hidden at first.
    explicit InsertionMark(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};
