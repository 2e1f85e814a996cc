// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditDateRuleViewController.h"

#include "platform/Clock.h"
#include "ui/editors/RuleSampler.h"

TEditDateRuleViewController::TEditDateRuleViewController(const TRulePtr &rule,
                                                         const EditorContext &context)
    : TRuleViewController(rule, context)
    , m_date(form(), ruleAs<TDateRule>())
    , m_length(form(), ruleAs<TDateRule>())
{
    form().setNote(tr("when the files are renamed"));
    finish(m_date.firstControl());
}

void TEditDateRuleViewController::refresh()
{
    m_date.refresh(SystemClock().now());
    m_length.refresh();
}

QList<SamplePreview::Line> TEditDateRuleViewController::previewLines() const
{
    return {{SamplePreview::result(
        RuleSampler::fragmentOfCopy(context().document, theRule(), TFileObject()))}};
}
