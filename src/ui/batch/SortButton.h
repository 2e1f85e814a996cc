// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/controls/PillButton.h"

class QMenu;

/// The sort menu as a pop-up above the files, whose order it changes. Enabled with its menu, which
/// it does not own.
class SortButton : public PillButton
{
    Q_OBJECT

public:
    explicit SortButton(QMenu &menu, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void open();

    QMenu &m_menu;
};
