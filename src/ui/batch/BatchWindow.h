// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"
#include "ui/batch/BatchHost.h"

#include <QMainWindow>

#include <memory>

class ApplicationCommands;
class BatchMenus;
class EditorPopovers;
class FilePane;
class InspectorDock;
class PaletteBar;
class QMenu;
class RecipeCard;
class StatusLine;

/// One batch: palette, recipe, file table and status line around a document of its own. Closing
/// hides the window at once and closes the document; once finished() has come, the window is to be
/// destroyed. Main thread only.
class BatchWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// What the services and the commands refer to outlives the window.
    BatchWindow(TDocumentServices services, ApplicationCommands &application);
    ~BatchWindow() override;

    TDocument &document() const { return *m_document; }
    /// Adds files behind those that are there.
    void addFiles(const TFileURLs &urls);
    /// Uses the rules of the preset of that name as soon as the presets are known; says so when
    /// there is none.
    void usePreset(const QString &name);
    /// Shows and hides columns of the file list; belongs to the window.
    QMenu *columnsMenu() const;
    /// Brings the menus up to date.
    void updateMenus();

Q_SIGNALS:
    /// Nothing of the batch is under way any more.
    void finished();

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    friend class BatchHost;

    QWidget *makeBody();
    void connectParts();
    void showSample();
    void showProblemCounts();
    void cancelWork();
    void showRenameToolTip();
    void showFolderAccess();
    void presetsCame(const QStringList &names);
    void useWantedPreset();

    ApplicationCommands &m_application;
    const TDocumentServices m_services;
    StatusLine *m_status;
    BatchMenus *m_menus = nullptr; ///< null while the window is being made
    BatchHost m_host;
    std::unique_ptr<TDocument> m_document;
    PaletteBar *m_palette;
    RecipeCard *m_recipe;
    FilePane *m_files;
    InspectorDock *m_inspector;
    EditorPopovers *m_editors;
    QString m_wantedPreset; ///< until the presets have come
    std::optional<QStringList> m_presetNames;
};
