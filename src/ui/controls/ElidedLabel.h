// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

/// One line of plain text that is cut with an ellipsis where there is no room for it. All of it is
/// in its tool tip then, and for assistive technology always.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool isCut() const;
};
