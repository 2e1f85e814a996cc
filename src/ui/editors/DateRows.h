// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TDateRule.h"
#include "ui/editors/EditorForm.h"

#include <QCoreApplication>

/// The rows of a form that choose what of a date is given and how, each alternative shown as it
/// comes out. A member of the editor, made after its form.
class DateRows
{
    Q_DECLARE_TR_FUNCTIONS(DateRows)

public:
    DateRows(EditorForm &form, TDateRule &rule);

    /// To be called whenever the settings or the date to show may have changed.
    void refresh(TDate date, bool isVisible = true);
    QWidget *firstControl() const { return m_format; }

private:
    static std::vector<EditorForm::Choice> choices(const TDateRule &rule, TDate date);

    TDateRule &m_rule;
    QComboBox *m_format;
    EditorForm::Row m_formatRow;
    EditorForm::Row m_hourRow;
};
