// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

#include <limits>

/// A text field for a whole number of 64 bits. Arrow keys, Page Up and Page Down and, with the
/// focus, the wheel step through the range. A number outside of it is shown and kept until edited;
/// typing one that is too large gives the largest. A text that is no number yet changes nothing and
/// gives way to the number when the focus leaves.
class NumberField : public QLineEdit
{
    Q_OBJECT

public:
    struct Range
    {
        qint64 lowest = std::numeric_limits<qint64>::min();
        qint64 highest = std::numeric_limits<qint64>::max();
    };

    explicit NumberField(Range range, QWidget *parent = nullptr);

    qint64 value() const { return m_value; }
    /// Signals nothing, and leaves a text that means the same number alone.
    void setValue(qint64 value);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// The user has entered another number of the range.
    void valueEdited(qint64 value);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void takeText(const QString &text);
    void step(qint64 steps);

    Range m_range;
    qint64 m_value = 0;
    int m_wheelTurn = 0;
};
