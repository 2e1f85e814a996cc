// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

/// A checkable button in the form of a pill, with a count behind its text: one of a row of filters.
class PillButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit PillButton(const QString &text, QWidget *parent = nullptr);

    /// Shown with the locale's grouping; nothing below 0.
    void setCount(qint64 count);
    qint64 count() const { return m_count; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QString shownText() const;

    qint64 m_count = -1;
};
