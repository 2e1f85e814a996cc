// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

/// A quiet surface with rounded corners on which related controls lie.
class Card : public QWidget
{
    Q_OBJECT

public:
    explicit Card(QWidget *parent = nullptr);

    /// Its edge shows when the view, which fills it and has no frame of its own, has the keyboard.
    void showFocusOf(QWidget *view);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QPointer<QWidget> m_view;
};
