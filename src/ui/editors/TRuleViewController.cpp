// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TRuleViewController.h"

#include "document/TRuleKinds.h"
#include "ui/controls/Icons.h"
#include "ui/editors/RuleSampler.h"

using namespace Qt::StringLiterals;

TRuleViewController::TRuleViewController(TRulePtr rule, const EditorContext &context,
                                         QWidget *parent)
    : LiveEditor(parent)
    , m_theRule(std::move(rule))
    , m_context(context)
    , m_form(*this, Icons::kindName(TRuleKinds::identifierForRule(*m_theRule)),
             [this] { ruleEdited(); })
{
    connect(&m_context.document, &TDocument::ruleChanged, this, [this](const TRulePtr &changed) {
        if (changed == m_theRule && !m_isPosting)
            reload();
    });
    for (const auto signal : {&TDocument::filesInserted, &TDocument::filesRemoved,
                              &TDocument::filesReplaced, &TDocument::optionsChanged})
        connect(&m_context.document, signal, this, &TRuleViewController::showState);
}

TRuleViewController::~TRuleViewController()
{
    endEdit();
}

void TRuleViewController::finish(QWidget *firstControl)
{
    m_form.addPreview();
    if (firstControl != this)
        setFocusProxy(firstControl);
    reload();
    // What is there is written over by typing at once.
    if (auto *field = qobject_cast<QLineEdit *>(firstControl))
        field->selectAll();
}

void TRuleViewController::ruleEdited()
{
    m_theRule->updatePreview();
    m_isPosting = true;
    m_context.notifications.post(Notifications::kRuleChanged,
                                 {{Notifications::kTheModel, QVariant::fromValue(m_theRule)}});
    m_isPosting = false;
    showState();
}

void TRuleViewController::reload()
{
    m_form.reload();
    showState();
}

void TRuleViewController::showState()
{
    refresh();
    m_form.preview().setLines(previewLines());
}

std::shared_ptr<TFileObject> TRuleViewController::sampleFile() const
{
    return m_context.sampleFile ? m_context.sampleFile() : nullptr;
}

QList<SamplePreview::Line> TRuleViewController::previewLines() const
{
    const std::shared_ptr<TFileObject> sample = sampleFile();
    if (!sample)
        return {SamplePreview::note(tr("Files of the batch show here what they get."))};
    return {
        SamplePreview::change(sample->sourceURL().lastPathComponent(),
                              RuleSampler::fragmentOfCopy(m_context.document, m_theRule, *sample))};
}

void TRuleViewController::openEdit()
{
    m_context.document.beginRuleEdit(m_theRule);
}

void TRuleViewController::closeEdit()
{
    m_context.document.endRuleEdit();
}

QUndoStack &TRuleViewController::undoStack()
{
    return m_context.document.undoStack();
}
