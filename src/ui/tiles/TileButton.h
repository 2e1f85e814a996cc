// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/tiles/TileDrawing.h"

#include <QAbstractButton>

/// A tile that can be pressed, in the palette or in a recipe. What it looks like and what the mouse
/// and keys mean is the affair of each kind.
class TileButton : public QAbstractButton
{
    Q_OBJECT

public:
    using QAbstractButton::QAbstractButton;

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The keyboard has come to it.
    void focused();

protected:
    virtual TileDrawing drawing() const = 0;

    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;
};
