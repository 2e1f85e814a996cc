// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"
#include "ui/controls/Popover.h"

#include <QObject>
#include <QPointer>

class RecipeCard;

/// Opens the small surfaces of one batch window, at most one at a time: the editors of rules and of
/// the extension, outlining the tile whose editor is open, lists of problems, and the name of a new
/// preset.
class EditorPopovers : public QObject
{
    Q_OBJECT

public:
    using SampleFile = std::function<std::shared_ptr<TFileObject>()>;
    using PresetName = std::function<void(const std::optional<QString> &name)>;

    /// All outlive the popovers.
    EditorPopovers(TDocument &document, Notifications &notifications, TDialogHost &dialogs,
                   RecipeCard &recipe, SampleFile sampleFile, QObject *parent = nullptr);
    ~EditorPopovers() override;

    void editRule(const TRulePtr &rule);
    void editExtension();
    void showProblems(const TErrorLog &log, QWidget *anchor);
    void askPresetName(const QString &suggestion, PresetName answered);
    /// Closes what is open; edits end with that.
    void closeAll();
    Popover *current() const { return m_current; }

Q_SIGNALS:
    /// A problem in the list leads to its file; the list is closed by then.
    void problemChosen(const TErrorLog &log, qsizetype entry);
    void problemFilesWanted();

private:
    void openEditor(QWidget *editor, QWidget *tile);
    Popover *open(QWidget *content, QWidget *anchor);

    TDocument &m_document;
    Notifications &m_notifications;
    TDialogHost &m_dialogs;
    RecipeCard &m_recipe;
    SampleFile m_sampleFile;
    QPointer<Popover> m_current;
};
