// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPushButton>

/// A push button that can carry a red number on its corner. The badge hangs over the button's edge;
/// the button keeps room for it. An accented one is filled with the accent colour.
class BadgeButton : public QPushButton
{
    Q_OBJECT

public:
    enum class Weight { Plain, Accented };

    explicit BadgeButton(const QString &text, Weight weight = Weight::Plain,
                         QWidget *parent = nullptr);

    /// No badge at 0.
    void setBadge(qint64 number);
    qint64 badge() const { return m_badge; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRect face() const;
    QString badgeText() const;
    void paintAccentedFace(QPainter &painter) const;
    void paintBadge(QPainter &painter) const;

    Weight m_weight;
    qint64 m_badge = 0;
};
