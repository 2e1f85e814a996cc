// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// One of the drawings in the accent colour of the scheme in force. Says nothing that the text
/// beside it does not say.
class SymbolLabel : public QWidget
{
    Q_OBJECT

public:
    SymbolLabel(QLatin1StringView icon, int size, QWidget *parent);

    QSize sizeHint() const override { return {m_size, m_size}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QLatin1StringView m_icon;
    int m_size;
};
