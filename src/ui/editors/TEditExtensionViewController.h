// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/editors/ExtensionSampler.h"
#include "ui/editors/LiveEditor.h"
#include "ui/editors/TRuleViewController.h"

class ExtensionMapTable;

/// Editor of a batch's extension handler: the method, and what that method needs.
class TEditExtensionViewController : public LiveEditor
{
    Q_OBJECT

public:
    explicit TEditExtensionViewController(const EditorContext &context);
    ~TEditExtensionViewController() override;

protected:
    void openEdit() override;
    void closeEdit() override;
    QUndoStack &undoStack() override;

private:
    /// A row and the method that needs it.
    struct MethodRow
    {
        qint64 method;
        EditorForm::Row row;
    };

    TExtensionHandler &handler() const { return m_context.document.theExtensionHandler(); }
    void addRows();
    void addMapRows();
    void addRegExRows();
    void addFor(qint64 method, const EditorForm::Row &row);
    void reload();
    void showState();
    void askForSample();
    void showSample(const ExtensionSampler::Sample &sample);

    EditorContext m_context;
    EditorForm m_form;
    ExtensionSampler *m_sampler;
    std::shared_ptr<TFileObject> m_sample; ///< whose extension was asked for last
    std::vector<MethodRow> m_rows;
    ExtensionMapTable *m_map = nullptr;
    QLineEdit *m_remainder = nullptr;
    EditorLabel *m_problem = nullptr;
    EditorLabel *m_periodHint = nullptr;
};
