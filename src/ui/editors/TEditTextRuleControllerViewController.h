// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TTextRule.h"
#include "ui/editors/TRuleViewController.h"

/// The editor of a constant text: one field, and what becomes of characters that names do not take.
class TEditTextRuleControllerViewController : public TRuleViewController
{
    Q_OBJECT

public:
    TEditTextRuleControllerViewController(const TRulePtr &rule, const EditorContext &context);

protected:
    void refresh() override;
    QList<SamplePreview::Line> previewLines() const override;

private:
    EditorLabel *m_hint;
};
