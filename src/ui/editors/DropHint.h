// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// A dashed frame with a few words that invites to drop something; it lights up while something
/// that fits is held over it. Where there is little room only the first line of the text is shown.
class DropHint : public QWidget
{
    Q_OBJECT

public:
    explicit DropHint(const QString &text, QWidget *parent = nullptr);

    void setLit(bool isLit);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
    bool m_isLit = false;
};
