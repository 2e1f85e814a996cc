// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TOriginalRule.h"
#include "ui/editors/DateRows.h"
#include "ui/editors/LengthRows.h"
#include "ui/editors/TRuleViewController.h"

#include <optional>

/// The editor of a piece of the file as it is now. What the sample file has is shown beside each
/// source; below stand only the settings that the chosen one uses.
class TEditOriginalViewController : public TRuleViewController
{
    Q_OBJECT

public:
    TEditOriginalViewController(const TRulePtr &rule, const EditorContext &context);

protected:
    void refresh() override;

private:
    TOriginalRule &original() const { return ruleAs<TOriginalRule>(); }
    void addFolderRow();
    void addSizeRows();
    void addDateRows();
    void addTextRows();
    void refreshSources(const TFileObject &file);
    void refreshUnits(const TFileObject &file);
    void refreshFolder(const TFileObject &file);

    QComboBox *m_source;
    EditorForm::Row m_folderRow;
    QLabel *m_folder = nullptr;
    EditorForm::Row m_unitRow;
    QComboBox *m_unit = nullptr;
    EditorForm::Row m_unitShownRow;
    QCheckBox *m_unitBlank = nullptr;
    EditorForm::Row m_whichDateRow;
    QComboBox *m_whichDate = nullptr;
    std::optional<DateRows> m_date; ///< made when its place in the form comes
    EditorForm::Row m_dropRow;
    EditorForm::Row m_searchRow;
    EditorForm::Row m_replaceRow;
    QLineEdit *m_replacement = nullptr;
    QCheckBox *m_ignoresCase = nullptr;
    EditorForm::Row m_stripRow;
    EditorForm::Row m_blanksRow;
    EditorForm::Row m_lettersRow;
    std::optional<LengthRows> m_length;
};
