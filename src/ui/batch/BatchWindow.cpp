// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/BatchWindow.h"

#include "document/TDocumentDrag.h"
#include "ui/batch/BatchMenus.h"
#include "ui/batch/BodyArea.h"
#include "ui/batch/EditorPopovers.h"
#include "ui/batch/OptionsMenu.h"
#include "ui/batch/SortButton.h"
#include "ui/batch/StatusLine.h"
#include "ui/batch/WindowMemory.h"
#include "ui/controls/BadgeButton.h"
#include "ui/inspector/InspectorDock.h"
#include "ui/table/FileDrops.h"
#include "ui/table/FilePane.h"
#include "ui/tiles/PaletteBar.h"
#include "ui/tiles/RecipeCard.h"
#include "ui/tiles/RecipeCommands.h"
#include "ui/windows/FolderAccessView.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr int kSide = 12;       ///< from the window's edge to the cards
constexpr int kGap = 12;        ///< between the cards
constexpr int kBadgeMargin = 8; ///< that the buttons of the status line have around them
constexpr auto kInspectorDelay = 100ms;

/// To begin with options is no change, which would be answered by an analysis of nothing.
TDocumentServices withRememberedOptions(TDocumentServices services)
{
    services.options = OptionsMenu::initialOptions();
    return services;
}

} // namespace

BatchWindow::BatchWindow(TDocumentServices services, ApplicationCommands &application)
    : m_application(application)
    , m_services(withRememberedOptions(std::move(services)))
    , m_status(new StatusLine(this))
    , m_host(*this)
    , m_document(std::make_unique<TDocument>(m_host, m_services))
    , m_palette(new PaletteBar(this))
    , m_recipe(new RecipeCard(*m_document, m_services.notifications, this))
    , m_files(new FilePane(*m_document, this))
    , m_inspector(new InspectorDock(this))
    , m_editors(new EditorPopovers(
          *m_document, m_services.notifications, m_host, *m_recipe,
          [this] {
              const TFileList &files = m_document->sourceObjectArray();
              const std::shared_ptr<TFileObject> current = m_files->currentFile();
              return current || files.empty() ? current : files.front();
          },
          this))
{
    setCentralWidget(new BodyArea(makeBody(), this));
    m_inspector->setObjectName(QStringLiteral("inspector"));
    m_inspector->setParent(nullptr); // so that the keys come to it last
    addDockWidget(Qt::RightDockWidgetArea, m_inspector);
    m_inspector->hide();
    m_menus = new BatchMenus({*this, *m_document, m_services, m_application, *m_palette, *m_recipe,
                              *m_files, *m_status, *m_inspector, *m_editors},
                             *menuBar(), this);
    m_files->addControl(new SortButton(m_menus->sortMenu(), this));
    setAcceptDrops(true);
    connectParts();
    WindowMemory::restore(*this);
    m_files->focusTable();
}

BatchWindow::~BatchWindow()
{
    // Everything that is shown refers to the document, so it goes first.
    m_editors->closeAll();
    delete m_menus;
    qDeleteAll(findChildren<QDialog *>(QString(), Qt::FindDirectChildrenOnly));
    delete m_inspector;
    delete centralWidget();
}

QWidget *BatchWindow::makeBody()
{
    auto *body = new QWidget(this);
    auto *cards = new QVBoxLayout;
    cards->setContentsMargins(kSide, 0, kSide, 0);
    cards->setSpacing(kGap);
    cards->addWidget(m_palette);
    cards->addWidget(m_recipe);
    cards->addWidget(m_files, 1);
    auto *foot = new QHBoxLayout;
    foot->setContentsMargins(isRightToLeft() ? kSide - kBadgeMargin : kSide + 2, 0,
                             isRightToLeft() ? kSide + 2 : kSide - kBadgeMargin, 0);
    m_status->setParent(nullptr); // so that the keys come to it behind the table
    foot->addWidget(m_status);
    auto *column = new QVBoxLayout(body);
    column->setContentsMargins(0, kGap, 0, kBadgeMargin);
    column->setSpacing(kBadgeMargin);
    column->addLayout(cards, 1);
    column->addLayout(foot);
    return body;
}

void BatchWindow::connectParts()
{
    TDocument &document = *m_document;
    connect(&document, &TDocument::closed, this, &BatchWindow::finished);
    connect(&document, &TDocument::errorLogChanged, this, &BatchWindow::showProblemCounts);
    connect(m_palette, &PaletteBar::tileClicked, &document, &TDocument::paletteButtonClicked);
    m_recipe->commands().setBeforeChange([this] { m_editors->closeAll(); });
    connect(m_palette, &PaletteBar::addRequested, m_recipe,
            [this](const QString &kind) { m_recipe->commands().add(kind); });
    connect(m_recipe, &RecipeCard::presetChosen, &document, [&document](qsizetype index) {
        if (index == TDocumentPresets::kDeleteItem)
            document.deletePresets();
        else
            document.rulePresetChosen(index);
    });
    connect(m_recipe, &RecipeCard::extensionEditRequested, m_editors,
            &EditorPopovers::editExtension);
    connect(m_menus, &BatchMenus::folderAccessRequested, this, &BatchWindow::showFolderAccess);
    connect(m_files, &FilePane::currentFileChanged, this, &BatchWindow::showSample);
    connect(m_files, &FilePane::addFilesRequested, m_menus,
            [this] { m_menus->fileCommands().addFiles(); });
    connect(m_files, &FilePane::addFoldersRequested, m_menus,
            [this] { m_menus->fileCommands().addFolder(); });
    connect(m_files, &FilePane::metadataRequested, m_inspector, [this] {
        m_inspector->show();
        m_inspector->raise();
    });
    connect(m_inspector, &InspectorDock::addRuleRequested, m_recipe,
            [this](const TRulePtr &rule) { m_recipe->commands().append(rule); });
    auto *inspectorDelay = new QTimer(m_inspector);
    inspectorDelay->setSingleShot(true);
    inspectorDelay->setInterval(kInspectorDelay);
    connect(inspectorDelay, &QTimer::timeout, m_inspector, &InspectorDock::refresh);
    connect(&document, &TDocument::filesChanged, inspectorDelay, [this, inspectorDelay] {
        if (m_inspector->isVisible() && !inspectorDelay->isActive())
            inspectorDelay->start();
    });
    connect(m_editors, &EditorPopovers::problemChosen, m_files, &FilePane::goToProblem);
    connect(m_editors, &EditorPopovers::problemFilesWanted, m_files,
            &FilePane::showOnlyFilesWithProblems);
    connect(m_status, &StatusLine::problemsClicked, &document, &TDocument::showTestRunLog);
    connect(m_status->testRunButton(), &QPushButton::clicked, &document, &TDocument::testRun);
    connect(m_status->rollBackButton(), &QPushButton::clicked, &document, &TDocument::rollBackThis);
    connect(m_status->renameButton(), &QPushButton::clicked, &document, &TDocument::runRename);
    connect(m_status, &StatusLine::renameToolTipWanted, this, &BatchWindow::showRenameToolTip);
    connect(m_status, &StatusLine::cancelClicked, this, &BatchWindow::cancelWork);
    connect(&document, &TDocument::workChanged, m_status,
            [this] { m_status->setCancellable(m_document->hasWorkToCancel()); });
}

void BatchWindow::addFiles(const TFileURLs &urls)
{
    m_document->addFiles(urls, static_cast<qsizetype>(m_document->sourceObjectArray().size()));
}

void BatchWindow::usePreset(const QString &name)
{
    m_wantedPreset = name;
    if (m_presetNames)
        useWantedPreset();
}

void BatchWindow::presetsCame(const QStringList &names)
{
    m_recipe->setPresetNames(names);
    m_presetNames = names;
    useWantedPreset();
}

void BatchWindow::useWantedPreset()
{
    const QString wanted = std::exchange(m_wantedPreset, {});
    const qsizetype index = m_presetNames->indexOf(wanted);
    if (index >= 0)
        m_document->rulePresetChosen(TDocumentPresets::kFirstPreset + index);
    else if (!wanted.isEmpty())
        m_host.ask({TDialogHost::Form::Sheet,
                    tr("No Preset"),
                    tr("There is no preset called \"%1\". The presets that there are stand in the "
                       "list beside the recipe.")
                        .arg(wanted),
                    {},
                    {}},
                   {});
}

QMenu *BatchWindow::columnsMenu() const
{
    return m_files->columnsMenu();
}

void BatchWindow::updateMenus()
{
    m_menus->updateSoon();
}

void BatchWindow::showSample()
{
    const std::shared_ptr<TFileObject> file = m_files->currentFile();
    m_recipe->setSampleFile(file);
    m_inspector->setFile(file);
}

void BatchWindow::showProblemCounts()
{
    const std::optional<TErrorLog> &log = m_document->errorLog();
    m_status->setProblems(log ? log->numberOfErrorsWithType(TErrorTypes::kWarning) : 0,
                          log ? log->numberOfErrorsWithType(TErrorTypes::kCritical) : 0);
}

/// Its button goes away, and the keyboard with it to wherever is next.
void BatchWindow::cancelWork()
{
    m_files->focusTable();
    m_document->cancelWork();
}

void BatchWindow::showRenameToolTip()
{
    if (m_document->isWorkingOutNames())
        return m_status->renameButton()->setToolTip(
            tr("Asks as soon as the names of all files are known"));
    const RenameGuard::Answer answer = m_document->renameCheck();
    QString text;
    switch (answer.verdict) {
    case RenameGuard::Verdict::Nothing:
        text = tr("There is nothing to rename yet: add files, then build a recipe.");
        break;
    case RenameGuard::Verdict::ShowErrors:
        text = tr("Critical problems stand in the way. A click lists them.");
        break;
    case RenameGuard::Verdict::Refused:
        text = answer.title + u'\n' + answer.text;
        break;
    case RenameGuard::Verdict::AskForFolder:
        text = answer.text;
        break;
    case RenameGuard::Verdict::Confirm:
        text = tr("Renames the files on disk, after one more question");
        break;
    }
    m_status->renameButton()->setToolTip(text);
}

void BatchWindow::showFolderAccess()
{
    auto *view = new FolderAccessView(m_document->theFoldersWeUse(), m_host,
                                      m_services.notifications, this); // deletes itself
    connect(m_document.get(), &TDocument::foldersChanged, view, &FolderAccessView::refresh);
    view->open();
}

void BatchWindow::closeEvent(QCloseEvent *event)
{
    event->accept();
    if (m_document->isClosing())
        return;
    WindowMemory::remember(*this);
    m_document->close();
}

void BatchWindow::dragEnterEvent(QDragEnterEvent *event)
{
    const QMimeData &dragged = *event->mimeData();
    if (!dragged.hasFormat(TDocumentDrag::fileTableType()) &&
        FileDrops::isWelcome(dragged, *m_document))
        FileDrops::accept(*event, *m_document);
}

/// What has the keyboard has no use for Escape.
void BatchWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && m_document->hasWorkToCancel())
        m_document->cancelWork();
    else
        QMainWindow::keyPressEvent(event);
}

/// Files that miss the table are welcome all the same.
void BatchWindow::dropEvent(QDropEvent *event)
{
    if (FileDrops::accept(*event, *m_document))
        event->setAccepted(m_document->tableViewAcceptDrop(
            *event->mimeData(), static_cast<qsizetype>(m_document->sourceObjectArray().size())));
}
