// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>

/// The pop-up of presets: four fixed items, then the presets by name. Always shows its title; a
/// choice is told and forgotten. Only the opened list chooses: neither the wheel nor a letter.
class PresetPopUp : public QComboBox
{
    Q_OBJECT

public:
    explicit PresetPopUp(QWidget *parent = nullptr);

    void setPresetNames(const QStringList &names);
    /// A recipe without rules cannot be saved.
    void setCanSave(bool canSave);
    /// With no item lit: none has been chosen before.
    void showPopup() override;

Q_SIGNALS:
    /// As TDocument::rulePresetChosen counts them.
    void presetChosen(qsizetype index);

protected:
    /// The title is no hint in an empty field.
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    bool m_canSave = false;
};
