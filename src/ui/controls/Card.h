// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// A quiet surface with rounded corners on which related controls lie.
class Card : public QWidget
{
    Q_OBJECT

public:
    explicit Card(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
