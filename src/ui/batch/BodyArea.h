// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>

/// Lets what a window holds scroll where the window is too small for it, as it may be with a large
/// font on a small screen. Asks for no more than usual screens have room for.
class BodyArea : public QScrollArea
{
    Q_OBJECT

public:
    /// Takes the body over.
    explicit BodyArea(QWidget *body, QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
