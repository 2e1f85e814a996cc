// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// The dashed place at the end of a recipe that invites to drop name elements. Takes the keyboard
/// while the recipe has no tiles that could.
class DropPlace : public QWidget
{
    Q_OBJECT

public:
    explicit DropPlace(QWidget *parent);

    /// While something is dragged over the end of the recipe.
    void setInviting(bool isInviting);
    QSize sizeHint() const override;
    /// Too narrow for the words, but still to be seen.
    static int leastWidth();

protected:
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    bool m_isInviting = false;
};
