// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TRuleViewController.h"

#include "document/TRuleKinds.h"
#include "ui/controls/Icons.h"
#include "ui/editors/RuleSampler.h"

#include <QKeyEvent>

using namespace Qt::StringLiterals;

TRuleViewController::TRuleViewController(TRulePtr rule, const EditorContext &context,
                                         QWidget *parent)
    : QWidget(parent)
    , m_theRule(std::move(rule))
    , m_context(context)
    , m_form(*this, Icons::kindName(TRuleKinds::identifierForRule(*m_theRule)),
             [this] { ruleEdited(); })
{
    connect(&m_context.document, &TDocument::ruleChanged, this, [this](const TRulePtr &changed) {
        if (changed == m_theRule && !m_isPosting)
            reload();
    });
    connect(&m_context.document, &TDocument::filesInserted, this, &TRuleViewController::showState);
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

void TRuleViewController::beginEdit()
{
    m_context.document.beginRuleEdit(m_theRule);
    m_isEditing = true;
}

void TRuleViewController::endEdit()
{
    if (std::exchange(m_isEditing, false))
        m_context.document.endRuleEdit();
}

void TRuleViewController::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous() && !m_isEditing)
        beginEdit();
}

void TRuleViewController::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        endEdit();
}

bool TRuleViewController::event(QEvent *event)
{
    // Undoing while the editor is open is its own business, before any shortcut of the window.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

/// What was changed so far becomes a step of its own first, so that it is what is undone.
void TRuleViewController::keyPressEvent(QKeyEvent *event)
{
    const bool isUndo = event->matches(QKeySequence::Undo);
    if (!isUndo && !event->matches(QKeySequence::Redo))
        return QWidget::keyPressEvent(event);
    endEdit();
    if (isUndo)
        m_context.document.undoStack().undo();
    else
        m_context.document.undoStack().redo();
    beginEdit();
}
