// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// A small drawing of one of the three steps of a batch, in the colours of the scheme in force.
class WelcomePicture : public QWidget
{
    Q_OBJECT

public:
    enum Step { Drop, Tiles, Names };

    WelcomePicture(Step step, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Step m_step;
};
