// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/batch/EditCommands.h"
#include "ui/batch/FileCommands.h"
#include "ui/tiles/RecipeCommands.h"

#include <QAction>
#include <QTimer>

class QMenu;
class QMenuBar;
class ViewMenu;

/// The menu bar of a batch window: every command there is, with its key, enabled when it would do
/// something. Owned by the window.
class BatchMenus : public QObject
{
    Q_OBJECT

public:
    BatchMenus(const BatchParts &parts, QMenuBar &bar, QObject *parent);

    const FileCommands &fileCommands() const { return m_files; }
    /// Disabled while there is nothing to sort.
    QMenu &sortMenu() const { return *m_sort; }
    void setRollBackEnabled(bool enabled) { m_rollBackThis->setEnabled(enabled); }
    void setColorCodeChecked(bool checked) { m_colorCode->setChecked(checked); }
    /// Soon, once for many calls.
    void updateSoon();

Q_SIGNALS:
    void folderAccessRequested();

private:
    void addFileMenu(QMenuBar &bar);
    void addEditMenu(QMenuBar &bar);
    void addRulesMenu(QMenuBar &bar);
    void addBatchMenu(QMenuBar &bar);
    void addHelpMenu(QMenuBar &bar);
    RecipeCommands::Way wayToThe(Qt::Key side) const;
    void followDocument();
    void update();

    const BatchParts m_parts;
    RecipeCommands &m_rules;
    const FileCommands m_files;
    EditCommands m_edit;
    QTimer m_update;
    QAction *m_savePreset = nullptr;
    QAction *m_cut = nullptr;
    QAction *m_copy = nullptr;
    QAction *m_paste = nullptr;
    QAction *m_delete = nullptr;
    QAction *m_selectAll = nullptr;
    QAction *m_find = nullptr;
    QAction *m_editRule = nullptr;
    QAction *m_moveLeft = nullptr;
    QAction *m_moveRight = nullptr;
    QMenu *m_sort = nullptr;
    QAction *m_colorCode = nullptr;
    QAction *m_liveUpdate = nullptr;
    QAction *m_showLog = nullptr;
    QAction *m_cancel = nullptr;
    QAction *m_readMissing = nullptr;
    QAction *m_rename = nullptr;
    QAction *m_rollBackThis = nullptr;
    QAction *m_folderAccess = nullptr;
    ViewMenu *m_view = nullptr;
};
