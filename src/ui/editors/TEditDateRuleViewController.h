// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/editors/DateRows.h"
#include "ui/editors/LengthRows.h"
#include "ui/editors/TRuleViewController.h"

/// The editor of the current date and time. Every format is shown as it comes out now.
class TEditDateRuleViewController : public TRuleViewController
{
    Q_OBJECT

public:
    TEditDateRuleViewController(const TRulePtr &rule, const EditorContext &context);

protected:
    void refresh() override;
    QList<SamplePreview::Line> previewLines() const override;

private:
    DateRows m_date;
    LengthRows m_length;
};
