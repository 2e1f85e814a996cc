// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

/// One kind of rule in the palette. Dragging it out carries a new rule of the kind; keys and
/// assistive tools press it, which asks for adding the rule; a plain click of the mouse does not.
class PaletteTile : public QAbstractButton
{
    Q_OBJECT

public:
    explicit PaletteTile(const QString &identifier, QWidget *parent = nullptr);

    const QString &identifier() const { return m_identifier; }
    QSize sizeHint() const override;

Q_SIGNALS:
    /// By the mouse.
    void plainlyClicked();
    void focused();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void startDrag();

    QString m_identifier;
    QPoint m_pressedAt;
};
