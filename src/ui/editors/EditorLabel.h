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

protected:
    void changeEvent(QEvent *event) override;

private:
    void takeColors();

    Tone m_tone;
};
