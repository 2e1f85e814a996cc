// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/NumberField.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QWheelEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kPage = 10;
constexpr int kWheelNotch = 120;
constexpr QStringView kUsualText = u"00000";
constexpr int kFrame = 26; ///< of style and text margin together

/// The sum, kept within the range also where it would overflow.
qint64 stepped(qint64 value, qint64 steps, NumberField::Range range)
{
    value = std::clamp(value, range.lowest, range.highest);
    if (steps > 0)
        return value > range.highest - steps ? range.highest : value + steps;
    return value < range.lowest - steps ? range.lowest : value + steps;
}

} // namespace

NumberField::NumberField(Range range, QWidget *parent)
    : QLineEdit(parent)
    , m_range(range)
{
    const QString pattern = range.lowest < 0 ? u"-?[0-9]{0,19}"_s : u"[0-9]{0,19}"_s;
    setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), this));
    setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    setText(QString::number(m_value));
    connect(this, &QLineEdit::textEdited, this, &NumberField::takeText);
}

void NumberField::setValue(qint64 value)
{
    m_value = value;
    bool isNumber = false;
    if (text().toLongLong(&isNumber) != value || !isNumber)
        setText(QString::number(value));
}

QSize NumberField::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(kUsualText.toString()) + kFrame,
            QLineEdit::sizeHint().height()};
}

void NumberField::takeText(const QString &text)
{
    bool isNumber = false;
    const qint64 value = text.toLongLong(&isNumber);
    if (isNumber && value > m_range.highest) {
        setText(QString::number(m_range.highest));
        return takeText(this->text());
    }
    if (!isNumber || value == m_value || value < m_range.lowest)
        return;
    m_value = value;
    Q_EMIT valueEdited(value);
}

void NumberField::step(qint64 steps)
{
    const qint64 value = stepped(m_value, steps, m_range);
    setText(QString::number(value));
    selectAll();
    takeText(text());
}

void NumberField::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
        return step(1);
    case Qt::Key_Down:
        return step(-1);
    case Qt::Key_PageUp:
        return step(kPage);
    case Qt::Key_PageDown:
        return step(-kPage);
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void NumberField::wheelEvent(QWheelEvent *event)
{
    if (!hasFocus())
        return event->ignore();
    m_wheelTurn += event->angleDelta().y();
    if (const int notches = m_wheelTurn / kWheelNotch; notches != 0)
        step(notches);
    m_wheelTurn %= kWheelNotch;
    event->accept();
}

void NumberField::focusOutEvent(QFocusEvent *event)
{
    setText(QString::number(m_value));
    QLineEdit::focusOutEvent(event);
}
