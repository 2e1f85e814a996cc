// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

/// A label in the quieter text colour of the scheme in force.
class MutedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit MutedLabel(const QString &text, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void takeColor();

    bool m_isTaking = false;
};
