// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"
#include "ui/editors/EditorForm.h"
#include "ui/editors/LiveEditor.h"

#include <functional>
#include <memory>

/// What editors know of the batch beside what they edit. All outlives the editor.
struct EditorContext
{
    TDocument &document;
    Notifications &notifications;
    TDialogHost &dialogs;
    /// The selected file, else the first of the batch; null when there is none.
    std::function<std::shared_ptr<TFileObject>()> sampleFile;
};

/// Base of the editors of rules: a short form with a preview line at its foot. While it is shown,
/// the document's edit of the rule is open, so that closing it is one undoable step. Lives in a
/// popover.
///
/// A kind's editor adds rows to the form in its constructor, ends with finish(), and says in
/// refresh() what applies and in previewLines() what the rule gives.
class TRuleViewController : public LiveEditor
{
    Q_OBJECT

public:
    TRuleViewController(TRulePtr rule, const EditorContext &context, QWidget *parent = nullptr);
    ~TRuleViewController() override;

    const TRulePtr &theRule() const { return m_theRule; }

protected:
    const EditorContext &context() const { return m_context; }
    EditorForm &form() { return m_form; }
    /// The rule as the kind that the editor is for.
    template <class Rule>
    Rule &ruleAs() const
    {
        return static_cast<Rule &>(*m_theRule);
    }
    /// The last act of a constructor: adds the preview, loads the form and gives the keyboard to
    /// the first control.
    void finish(QWidget *firstControl);
    /// To be called after every change of the rule: brings its tile's name up to date and tells
    /// everybody. The form's controls do it themselves.
    void ruleEdited();
    /// Shows what follows from the settings: refresh() and the examples.
    void showState();
    /// The selected file, or the first; null when the batch is empty.
    std::shared_ptr<TFileObject> sampleFile() const;
    /// Called after every change and reload: which rows apply, the note, anything that follows from
    /// the settings.
    virtual void refresh() {}
    /// What the rule gives now: by default the sample file's name and its fragment.
    virtual QList<SamplePreview::Line> previewLines() const;

    void openEdit() override;
    void closeEdit() override;
    QUndoStack &undoStack() override;

private:
    void reload();

    TRulePtr m_theRule;
    EditorContext m_context;
    EditorForm m_form;
    bool m_isPosting = false;
};
