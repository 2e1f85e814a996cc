// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditTextRuleControllerViewController.h"

#include "ui/editors/RuleSampler.h"

using namespace Qt::StringLiterals;

TEditTextRuleControllerViewController::TEditTextRuleControllerViewController(
    const TRulePtr &rule, const EditorContext &context)
    : TRuleViewController(rule, context)
    , m_hint(new EditorLabel(QString(), EditorLabel::Tone::Muted, this))
{
    QLineEdit *field =
        form().text(settingOf(ruleAs<TTextRule>(), &TTextRule::theText, &TTextRule::setTheText));
    EditorForm::setName(field, tr("Text"));
    field->setPlaceholderText(tr("the same in every name"));
    form().addWide(field);
    form().addWide(m_hint);
    form().setNote(tr("the same for every file"));
    finish(field);
}

void TEditTextRuleControllerViewController::refresh()
{
    const QString &text = ruleAs<TTextRule>().theText();
    if (text.isEmpty())
        m_hint->setText(tr("An empty text adds nothing to the names."));
    else if (context().document.theOptions().compliance == 0)
        m_hint->setText(tr("Any characters; \":\" and \"/\" become \"_\"."));
    else if (text.contains(u'/'))
        m_hint->setText(tr("A file cannot have a name with \"/\" in it."));
    else
        m_hint->setText(tr("Any characters but \"/\"."));
}

QList<SamplePreview::Line> TEditTextRuleControllerViewController::previewLines() const
{
    return {{SamplePreview::result(
        RuleSampler::fragmentOfCopy(context().document, theRule(), TFileObject()))}};
}
