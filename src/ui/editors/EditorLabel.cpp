// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/EditorLabel.h"

#include "ui/controls/Theme.h"

#include <QFontDatabase>
#include <QResizeEvent>

#include <algorithm>

EditorLabel::EditorLabel(const QString &text, Tone tone, QWidget *parent)
    : QLabel(text, parent)
    , m_tone(tone)
{
    setTextFormat(Qt::PlainText);
    if (tone == Tone::Title) {
        QFont bold = font();
        bold.setWeight(QFont::DemiBold);
        bold.setPointSizeF(bold.pointSizeF() + 1);
        setFont(bold);
    }
    takeColors();
}

QFont EditorLabel::codeFont(const QFont &like)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(like.pointSizeF());
    return font;
}

QSize EditorLabel::minimumSizeHint() const
{
    const QSize least = QLabel::minimumSizeHint();
    return wordWrap() ? QSize(least.width(), std::max(least.height(), heightForWidth(width())))
                      : least;
}

void EditorLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    if (wordWrap() && event->size().width() != event->oldSize().width())
        updateGeometry();
}

void EditorLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange ||
        event->type() == QEvent::ParentChange)
        takeColors();
}

void EditorLabel::takeColors()
{
    if (m_tone != Tone::Muted && m_tone != Tone::Problem)
        return;
    const QPalette around = parentWidget() != nullptr ? parentWidget()->palette() : QPalette();
    const ThemeColors colors = ThemeColors::of(around);
    const QColor ink = m_tone == Tone::Muted ? colors.muted : colors.extension;
    if (palette().color(QPalette::Active, QPalette::WindowText) == ink)
        return;
    QPalette own;
    own.setColor(QPalette::WindowText, ink);
    own.setColor(QPalette::Disabled, QPalette::WindowText,
                 around.color(QPalette::Disabled, QPalette::WindowText));
    setPalette(own);
}
