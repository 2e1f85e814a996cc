// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/BatchMenus.h"

#include "ui/batch/ApplicationCommands.h"
#include "ui/batch/EditorPopovers.h"
#include "ui/batch/OptionsMenu.h"
#include "ui/batch/SortMenu.h"
#include "ui/batch/ViewMenu.h"
#include "ui/controls/Icons.h"
#include "ui/table/FilePane.h"
#include "ui/tiles/RecipeCard.h"
#include "ui/tiles/RecipeCommands.h"

#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>

#include <array>

using namespace Qt::StringLiterals;

using Way = RecipeCommands::Way;

namespace {

/// The kinds of rules in the order of the palette.
constexpr std::array kKinds{"Text"_L1,   "Separator"_L1, "Counter"_L1,  "Original"_L1,
                            "Date"_L1,   "ImageTag"_L1,  "AudioTag"_L1, "VideoTag"_L1,
                            "CSVTag"_L1, "RegExTag"_L1};
constexpr std::array kDigits{Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5,
                             Qt::Key_6, Qt::Key_7, Qt::Key_8, Qt::Key_9, Qt::Key_0};

} // namespace

BatchMenus::BatchMenus(const BatchParts &parts, QMenuBar &bar, QObject *parent)
    : QObject(parent)
    , m_parts(parts)
    , m_rules(parts.recipe.commands())
    , m_files(parts)
    , m_edit(parts, this)
{
    m_update.setSingleShot(true);
    m_update.setInterval(0);
    connect(&m_update, &QTimer::timeout, this, &BatchMenus::update);
    addFileMenu(bar);
    addEditMenu(bar);
    addRulesMenu(bar);
    addBatchMenu(bar);
    m_view = new ViewMenu(parts, &bar);
    bar.addMenu(m_view);
    addHelpMenu(bar);
    followDocument();
    update();
}

void BatchMenus::addFileMenu(QMenuBar &bar)
{
    QMenu *menu = bar.addMenu(tr("&File"));
    ApplicationCommands &application = m_parts.application;
    menu->addAction(tr("&New Batch"), QKeySequence::New, this,
                    [&application] { application.newBatch(); });
    menu->addSeparator();
    menu->addAction(tr("&Add Files..."), QKeySequence::Open, this, [this] { m_files.addFiles(); });
    menu->addAction(tr("Add F&older..."), Qt::CTRL | Qt::SHIFT | Qt::Key_O, this,
                    [this] { m_files.addFolder(); });
    menu->addSeparator();
    m_savePreset = menu->addAction(tr("&Save Preset..."), QKeySequence::Save, &m_parts.document,
                                   &TDocument::saveRuleAsPreset);
    menu->addAction(tr("&Delete Presets..."), &m_parts.document, &TDocument::deletePresets);
    menu->addSeparator();
    menu->addAction(tr("&Close"), Qt::CTRL | Qt::Key_W, &m_parts.window, &QWidget::close);
    menu->addAction(tr("&Quit"), Qt::CTRL | Qt::Key_Q, this,
                    [&application] { application.quitRequested(); });
}

void BatchMenus::addEditMenu(QMenuBar &bar)
{
    QMenu *menu = bar.addMenu(tr("&Edit"));
    QUndoStack &stack = m_parts.document.undoStack();
    QAction *undo = stack.createUndoAction(menu, tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    menu->addAction(undo);
    QAction *redo = stack.createRedoAction(menu, tr("&Redo"));
    redo->setShortcuts({Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y});
    menu->addAction(redo);
    menu->addSeparator();
    m_cut = menu->addAction(tr("Cu&t"), QKeySequence::Cut, &m_edit, &EditCommands::cut);
    m_copy = menu->addAction(tr("&Copy"), QKeySequence::Copy, &m_edit, &EditCommands::copy);
    m_paste = menu->addAction(tr("&Paste"), QKeySequence::Paste, &m_edit, &EditCommands::paste);
    m_delete = menu->addAction(tr("&Delete"), QKeySequence::Delete, &m_edit, &EditCommands::remove);
    menu->addSeparator();
    m_selectAll = menu->addAction(tr("Select &All"), QKeySequence::SelectAll, &m_edit,
                                  &EditCommands::selectAll);
    m_find = menu->addAction(tr("&Find"), QKeySequence::Find, this, [this] {
        m_parts.files.searchField()->setFocus(Qt::ShortcutFocusReason);
        m_parts.files.searchField()->selectAll();
    });
    menu->addSeparator();
    menu->addAction(tr("Pr&eferences..."), Qt::CTRL | Qt::Key_Comma, this,
                    [&application = m_parts.application] { application.showPreferences(); });
}

void BatchMenus::addRulesMenu(QMenuBar &bar)
{
    QMenu *menu = bar.addMenu(tr("&Rules"));
    QMenu *add = menu->addMenu(tr("&Add"));
    for (std::size_t i = 0; i < kKinds.size(); ++i) {
        const QString kind = kKinds[i];
        QAction *action = add->addAction(Icons::icon(Icons::forIdentifier(kind)),
                                         Icons::kindName(kind), this, [this, kind] {
                                             // Where the keyboard stays when the rule's editor is
                                             // closed.
                                             m_parts.recipe.focusRecipe();
                                             m_rules.add(kind);
                                         });
        action->setShortcut(Qt::CTRL | kDigits[i]);
    }
    menu->addSeparator();
    // The recipe itself understands Enter; as a shortcut it would be taken from everything else.
    m_editRule = menu->addAction(
        tr("&Edit Rule") + u'\t' + QKeySequence(Qt::Key_Return).toString(QKeySequence::NativeText),
        this, [this] { m_rules.editSelected(); });
    m_moveLeft = menu->addAction(tr("Move &Left"), Qt::ALT | Qt::Key_Left, this,
                                 [this] { m_rules.move(wayToThe(Qt::Key_Left)); });
    m_moveRight = menu->addAction(tr("Move &Right"), Qt::ALT | Qt::Key_Right, this,
                                  [this] { m_rules.move(wayToThe(Qt::Key_Right)); });
    menu->addSeparator();
    menu->addAction(tr("E&xtension..."), Qt::CTRL | Qt::Key_E, &m_parts.editors,
                    &EditorPopovers::editExtension);
}

/// A mirrored recipe begins at the right.
Way BatchMenus::wayToThe(Qt::Key side) const
{
    const bool isMirrored = m_parts.recipe.layoutDirection() == Qt::RightToLeft;
    return (side == Qt::Key_Left) != isMirrored ? Way::Earlier : Way::Later;
}

void BatchMenus::addBatchMenu(QMenuBar &bar)
{
    QMenu *menu = bar.addMenu(tr("&Batch"));
    TDocument &document = m_parts.document;
    m_sort = new SortMenu(document, menu);
    menu->addMenu(m_sort);
    m_colorCode =
        menu->addAction(tr("&Color Code Results"), &document, &TDocument::toggleColorCode);
    m_colorCode->setCheckable(true);
    m_colorCode->setChecked(document.colorCode());
    m_liveUpdate = menu->addAction(tr("&Live Update"));
    m_liveUpdate->setCheckable(true);
    connect(m_liveUpdate, &QAction::triggered, &document, &TDocument::setLiveUpdate);
    menu->addMenu(new OptionsMenu(document, menu));
    menu->addSeparator();
    menu->addAction(tr("&Test Run"), Qt::Key_F5, &document, &TDocument::testRun);
    m_showLog = menu->addAction(tr("S&how Test Run Log"), Qt::SHIFT | Qt::Key_F5, &document,
                                &TDocument::showTestRunLog);
    m_readMissing =
        menu->addAction(tr("Read &Missing Metadata"), &document, &TDocument::gatherMissing);
    // The window itself understands Escape, after whatever has the keyboard.
    m_cancel = menu->addAction(tr("Ca&ncel") + u'\t' +
                                   QKeySequence(Qt::Key_Escape).toString(QKeySequence::NativeText),
                               &document, &TDocument::cancelWork);
    menu->addSeparator();
    m_rename =
        menu->addAction(tr("&Rename"), Qt::CTRL | Qt::Key_Return, &document, &TDocument::runRename);
    m_rollBackThis =
        menu->addAction(tr("Roll &Back This Run"), &document, &TDocument::rollBackThis);
    m_rollBackThis->setEnabled(document.rollbackURL().isValid());
    menu->addAction(tr("Roll Back an &Earlier Run..."), this,
                    [&application = m_parts.application] { application.rollBackEarlier(); });
    menu->addSeparator();
    m_folderAccess =
        menu->addAction(tr("Folder &Access..."), this, &BatchMenus::folderAccessRequested);
}

void BatchMenus::addHelpMenu(QMenuBar &bar)
{
    QMenu *menu = bar.addMenu(tr("&Help"));
    ApplicationCommands &application = m_parts.application;
    using Topic = HelpWindow::Topic;
    menu->addAction(tr("Tavrin &Help"), QKeySequence::HelpContents, this,
                    [&application] { application.showHelp(Topic::Start); });
    menu->addAction(tr("&Regular Expressions"), this,
                    [&application] { application.showHelp(Topic::RegularExpressions); });
    menu->addAction(tr("&Keys"), this, [&application] { application.showHelp(Topic::Keys); });
    menu->addSeparator();
    menu->addAction(tr("&Welcome"), this, [&application] { application.showWelcome(); });
    menu->addAction(tr("&Check for Updates..."), this,
                    [&application] { application.checkForUpdates(); });
    menu->addSeparator();
    menu->addAction(tr("&About Tavrin"), this, [&application] { application.showAbout(); });
}

void BatchMenus::followDocument()
{
    TDocument &document = m_parts.document;
    connect(&document, &TDocument::filesInserted, this, &BatchMenus::updateSoon);
    connect(&document, &TDocument::filesRemoved, this, &BatchMenus::updateSoon);
    connect(&document, &TDocument::filesReplaced, this, &BatchMenus::updateSoon);
    connect(&document, &TDocument::rulesChanged, this, &BatchMenus::updateSoon);
    connect(&document, &TDocument::optionsChanged, this, &BatchMenus::updateSoon);
    connect(&document, &TDocument::errorLogChanged, this, &BatchMenus::updateSoon);
    connect(&document, &TDocument::foldersChanged, this, &BatchMenus::updateSoon);
    connect(&document, &TDocument::workChanged, this, &BatchMenus::updateSoon);
    connect(&m_parts.files, &FilePane::selectionChanged, this, &BatchMenus::updateSoon);
    connect(&m_parts.recipe, &RecipeCard::selectionChanged, this, &BatchMenus::updateSoon);
    connect(&m_edit, &EditCommands::changed, this, &BatchMenus::updateSoon);
}

void BatchMenus::updateSoon()
{
    if (!m_update.isActive())
        m_update.start();
}

void BatchMenus::update()
{
    const TDocument &document = m_parts.document;
    m_savePreset->setEnabled(!document.ruleArray().empty());
    m_cut->setEnabled(m_edit.canCut());
    m_copy->setEnabled(m_edit.canCopy());
    m_paste->setEnabled(m_edit.canPaste());
    m_delete->setText(m_edit.removeText());
    m_delete->setEnabled(m_edit.canRemove());
    m_selectAll->setEnabled(m_edit.canSelectAll());
    const bool hasFiles = !document.sourceObjectArray().empty(); // else nothing of them is shown
    m_find->setEnabled(hasFiles);
    m_view->setFiltersEnabled(hasFiles);
    m_editRule->setEnabled(m_rules.canEdit());
    m_moveLeft->setEnabled(m_rules.canMove(wayToThe(Qt::Key_Left)));
    m_moveRight->setEnabled(m_rules.canMove(wayToThe(Qt::Key_Right)));
    m_sort->setEnabled(document.sourceObjectArray().size() > 1);
    m_liveUpdate->setChecked(document.liveUpdate());
    m_showLog->setEnabled(document.errorLog().has_value());
    m_readMissing->setEnabled(document.lacksMetadata());
    m_cancel->setEnabled(document.hasWorkToCancel());
    m_folderAccess->setEnabled(!document.theFoldersWeUse().folders().empty());
}
