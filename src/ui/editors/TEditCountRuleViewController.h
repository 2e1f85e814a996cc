// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TCountRule.h"
#include "ui/editors/TRuleViewController.h"

/// The editor of a counter. The numbers at its foot are those of the first files and of the last.
class TEditCountRuleViewController : public TRuleViewController
{
    Q_OBJECT

public:
    TEditCountRuleViewController(const TRulePtr &rule, const EditorContext &context);

protected:
    void refresh() override;
    QList<SamplePreview::Line> previewLines() const override;

private:
    SamplePreview::Line numbers(TCountRule &counter) const;
    SamplePreview::Line numbersPerExtension(TCountRule &counter) const;

    EditorForm::Row m_startRow;
    NumberField *m_width;
    QCheckBox *m_perExtension;
};
