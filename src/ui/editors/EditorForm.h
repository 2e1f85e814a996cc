// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/editors/EditorLabel.h"
#include "ui/editors/NumberField.h"
#include "ui/editors/SamplePreview.h"
#include "ui/editors/Setting.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QVBoxLayout>

#include <vector>

/// The layout and the controls of an editor: a title with a note, rows of a label and controls, and
/// example results at the foot. Controls change their settings only by the user's hand, each change
/// once, and tell who asked; reload() shows what the settings are without any of that. A member of
/// the editor; the widgets are the editor's children.
class EditorForm
{
public:
    /// A line of the form, to be shown only where it applies.
    struct Row
    {
        QWidget *label = nullptr; ///< null for a row without one
        QWidget *body = nullptr;

        void setVisible(bool isVisible) const;
        void setEnabled(bool isEnabled) const;
    };
    /// One of a list of alternatives.
    struct Choice
    {
        qint64 value;
        QString text;
    };

    /// edited is called after every change by the user.
    EditorForm(QWidget &editor, const QString &title, std::function<void()> edited);
    EditorForm(const EditorForm &) = delete;
    EditorForm &operator=(const EditorForm &) = delete;

    /// What stands at the right of the title.
    void setNote(const QString &note);
    /// A label and its controls, side by side; the first one is the label's buddy. A field
    /// without an accessible name gets the label's text. Those that stretch share the room.
    Row addRow(const QString &label, std::initializer_list<QWidget *> controls);
    /// Something as wide as the form.
    Row addWide(QWidget *widget);
    /// A thin line.
    Row addLine();
    /// A line and the example results below it; the last part of a form.
    void addPreview();
    SamplePreview &preview() { return *m_preview; }

    QLineEdit *text(const Setting<QString> &setting);
    NumberField *number(const Setting<qint64> &setting, NumberField::Range range);
    /// A value that no choice stands for is shown as it is, and kept until another is chosen.
    QComboBox *choice(const std::vector<Choice> &choices, const Setting<qint64> &setting);
    QCheckBox *check(const QString &text, const Setting<bool> &setting);
    /// Words between controls.
    QLabel *words(const QString &text);
    static void setName(QWidget *control, const QString &accessibleName);
    /// The texts of a pop-up list anew, for the same values.
    static void setChoices(QComboBox *box, const std::vector<Choice> &choices);

    /// For controls that are not from here: shows the setting when the form is loaded.
    void addLoader(std::function<void()> loader) { m_loaders.push_back(std::move(loader)); }
    /// To be called after a change of such a control.
    void edited() const { m_edited(); }
    void reload();

private:
    void keepWidth();

    QWidget &m_editor;
    std::function<void()> m_edited;
    std::vector<std::function<void()>> m_loaders;
    std::vector<QWidget *> m_bodies;
    QVBoxLayout *m_column;
    QGridLayout *m_grid;
    EditorLabel *m_note;
    SamplePreview *m_preview;
    int m_rowCount = 0;
};
