// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/EditorPopovers.h"

#include "ui/editors/RuleEditors.h"
#include "ui/tiles/RecipeCard.h"
#include "ui/windows/ErrorLogView.h"
#include "ui/windows/PresetNameForm.h"

EditorPopovers::EditorPopovers(TDocument &document, Notifications &notifications,
                               TDialogHost &dialogs, RecipeCard &recipe, SampleFile sampleFile,
                               QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_notifications(notifications)
    , m_dialogs(dialogs)
    , m_recipe(recipe)
    , m_sampleFile(std::move(sampleFile))
{
}

EditorPopovers::~EditorPopovers()
{
    closeAll();
}

void EditorPopovers::closeAll()
{
    const QPointer<Popover> popover = std::exchange(m_current, nullptr);
    if (!popover)
        return;
    popover->dismiss();
    delete popover.data(); // its editor ends the edit now, not when events come round
}

Popover *EditorPopovers::open(QWidget *content, QWidget *anchor)
{
    m_current = Popover::open(content, anchor);
    return m_current;
}

void EditorPopovers::openEditor(QWidget *editor, QWidget *tile)
{
    m_recipe.setEditedTile(tile); // first, since the popover opens where it stands
    Popover *popover = open(editor, tile);
    connect(popover, &Popover::closed, &m_recipe, [this, popover] {
        if (m_current == nullptr || m_current == popover)
            m_recipe.setEditedTile(nullptr);
    });
}

void EditorPopovers::editRule(const TRulePtr &rule)
{
    closeAll();
    if (QWidget *tile = m_recipe.tileOf(rule))
        openEditor(
            RuleEditors::editorFor(rule, {m_document, m_notifications, m_dialogs, m_sampleFile}),
            tile);
}

void EditorPopovers::editExtension()
{
    closeAll();
    openEditor(RuleEditors::extensionEditor({m_document, m_notifications, m_dialogs, m_sampleFile}),
               m_recipe.extensionTile());
}

void EditorPopovers::showProblems(const TErrorLog &log, QWidget *anchor)
{
    closeAll();
    const bool isEmpty = m_document.sourceObjectArray().empty();
    auto *view = new ErrorLogView(
        log, isEmpty ? tr("There is nothing to test yet: add files first.") : QString());
    if (!log.isEmpty() && !isEmpty)
        view->offerFiles();
    // The popover goes away only after it is done with the key or click.
    connect(
        view, &ErrorLogView::problemChosen, this,
        [this, log](qsizetype entry) {
            closeAll();
            Q_EMIT problemChosen(log, entry);
        },
        Qt::QueuedConnection);
    connect(
        view, &ErrorLogView::problemFilesWanted, this,
        [this] {
            closeAll();
            Q_EMIT problemFilesWanted();
        },
        Qt::QueuedConnection);
    open(view, anchor); // the popover's
}

void EditorPopovers::askPresetName(const QString &suggestion, PresetName answered)
{
    closeAll();
    auto *form = new PresetNameForm(suggestion, std::move(answered)); // the popover's
    connect(form, &PresetNameForm::finished, open(form, m_recipe.presetPopUp()), &Popover::dismiss);
}
