// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TDateRule.h"
#include "ui/editors/EditorForm.h"

#include <QCoreApplication>

/// The characters that fill a width, by their index; everything beyond the known ones is an "x".
namespace PaddingChoices {

std::vector<EditorForm::Choice> choices();
/// The setting with all that stand for an "x" as one.
Setting<qint64> folded(const Setting<qint64> &setting);

} // namespace PaddingChoices

/// The rows of a form with which rules derived from the date rule fill up and limit what they give.
/// A member of the editor, made after its form.
class LengthRows
{
    Q_DECLARE_TR_FUNCTIONS(LengthRows)

public:
    LengthRows(EditorForm &form, TDateRule &rule);

    /// Sizes are filled up in front only and have no limit.
    enum class Reach { Nothing, FrontOnly, Full };
    /// To be called whenever the settings may have changed.
    void refresh(Reach reach = Reach::Full);

private:
    TDateRule &m_rule;
    NumberField *m_width;
    QComboBox *m_character;
    QComboBox *m_side;
    QCheckBox *m_limits;
    NumberField *m_limit;
    EditorForm::Row m_fillRow;
    EditorForm::Row m_limitRow;
};
