// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

/// A text in an editor, in the weight and colour of its part; follows the colour scheme.
class EditorLabel : public QLabel
{
    Q_OBJECT

public:
    enum class Tone { Title, Plain, Muted, Problem };

    EditorLabel(const QString &text, Tone tone, QWidget *parent = nullptr);

    /// Of a wrapped text: all its lines at the label's width, where layouts would count on one.
    QSize minimumSizeHint() const override;
    /// The fixed-width font for patterns and the like, as large as the given one.
    static QFont codeFont(const QFont &like);

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void takeColors();

    Tone m_tone;
};
