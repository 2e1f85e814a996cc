// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/tiles/TileButton.h"

/// One kind of rule in the palette. Dragging it out carries a new rule of the kind; keys and
/// assistive tools press it, which asks for adding the rule; a plain click of the mouse does not.
class PaletteTile : public TileButton
{
    Q_OBJECT

public:
    explicit PaletteTile(const QString &identifier, QWidget *parent = nullptr);

    const QString &identifier() const { return m_identifier; }

Q_SIGNALS:
    /// By the mouse.
    void plainlyClicked();

protected:
    TileDrawing drawing() const override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void startDrag();

    QString m_identifier;
    QPoint m_pressedAt;
};
