// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FilePane.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/Card.h"
#include "ui/controls/PillButton.h"
#include "ui/controls/Popover.h"
#include "ui/table/ColumnSettings.h"
#include "ui/table/EmptyInvitation.h"
#include "ui/table/FileCells.h"
#include "ui/table/FileMenu.h"
#include "ui/table/FileTableHeader.h"
#include "ui/table/FileTableView.h"
#include "ui/table/FilterRow.h"
#include "ui/table/ProblemList.h"
#include "ui/table/ProblemRow.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QStackedLayout>
#include <QUrl>
#include <QVBoxLayout>

namespace {

/// Room below the last row, so that it does not touch the round corners.
constexpr int kFoot = 6;
/// Keep the table out of the round corners of its card.
constexpr int kAbove = 5;
constexpr int kBeside = 2;

QString hintFor(FileKinds::Filter filter)
{
    switch (filter) {
    case FileKinds::Filter::Changed:
        return FilePane::tr("No file gets another name.");
    case FileKinds::Filter::Unchanged:
        return FilePane::tr("No file keeps its name.");
    case FileKinds::Filter::Problems:
        return FilePane::tr("No file has problems.");
    case FileKinds::Filter::All:
        break;
    }
    return {};
}

} // namespace

class FilePane::Private
{
public:
    Private(FilePane &self, TDocument &given);
    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;
    ~Private();

    void layOut();
    void followTable();
    void followFilters();
    void showTableOrInvitation();
    void showCounts();
    void followCurrent();
    void search(const QString &text);
    void showMenu(QPoint position);
    void stepProblems(int row, bool up);
    QString oldName(const TFileObject &file) const;
    QString newName(const TFileObject &file) const;
    void copyNames(QString (Private::*nameOf)(const TFileObject &) const) const;

    FilePane &pane;
    TDocument &document;
    FileTableModel model;
    FilterRow *filters;
    FileTableView *table;
    EmptyInvitation *invitation;
    QWidget *tablePage;
    QStackedLayout *pages = nullptr;
    std::unique_ptr<ColumnSettings> columns;
    QPointer<Popover> problems;
    std::shared_ptr<TFileObject> current;
    bool isSearching = false; ///< the keyboard stays in the field while it is typed into
    bool hasMatches = false;  ///< of the search, whether they are shown or not
};

FilePane::Private::Private(FilePane &self, TDocument &given)
    : pane(self)
    , document(given)
    , model(given)
    , filters(new FilterRow(&self))
    , table(new FileTableView(given, model, &self))
    , invitation(new EmptyInvitation(given, &self))
    , tablePage(new QWidget(&self))
    , columns(std::make_unique<ColumnSettings>(table->header()))
{
    layOut();
    followTable();
    followFilters();
    using D = TDocument;
    for (const auto signal : {&D::filesInserted, &D::filesRemoved, &D::filesReplaced})
        QObject::connect(&document, signal, &pane, [this] {
            filters->setRemark({}); // was about other files
            showTableOrInvitation();
        });
    QObject::connect(&document, &D::filesChanged, &pane, [this] { filters->setRemark({}); });
    QObject::connect(invitation, &EmptyInvitation::addFilesRequested, &pane,
                     &FilePane::addFilesRequested);
    QObject::connect(invitation, &EmptyInvitation::addFoldersRequested, &pane,
                     &FilePane::addFoldersRequested);
    showCounts();
    showTableOrInvitation();
}

FilePane::Private::~Private()
{
    if (problems != nullptr)
        problems->dismiss();
    columns.reset();
    delete tablePage; // before the model that its table shows
}

void FilePane::Private::layOut()
{
    auto *tableLayout = new QVBoxLayout(tablePage);
    tableLayout->setContentsMargins(kBeside, kAbove, kBeside, kFoot);
    tableLayout->addWidget(table);
    auto *card = new Card(&pane);
    pages = new QStackedLayout(card);
    pages->addWidget(invitation);
    pages->addWidget(tablePage);
    auto *layout = new QVBoxLayout(&pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(filters);
    layout->addWidget(card, 1);
}

void FilePane::Private::followTable()
{
    QObject::connect(&table->selection(), &FileSelection::rowsChanged, &pane,
                     &FilePane::selectionChanged);
    QObject::connect(&table->selection(), &QItemSelectionModel::currentRowChanged, &pane,
                     [this] { followCurrent(); });
    QObject::connect(&model, &FileTableModel::rowsMapped, &pane, [this] { followCurrent(); });
    QObject::connect(table, &QAbstractItemView::clicked, &pane, [this](const QModelIndex &index) {
        if (index.column() == FileTableModel::Status)
            pane.showProblems(model.documentRow(index.row()));
    });
    QObject::connect(table, &FileTableView::copyRequested, &pane,
                     [this] { copyNames(&Private::oldName); });
    QObject::connect(table, &FileTableView::problemsRequested, &pane,
                     [this] { pane.showProblems(model.documentRow(table->currentIndex().row())); });
    QObject::connect(table, &FileTableView::contextMenuRequested, &pane,
                     [this](QPoint position) { showMenu(position); });
}

void FilePane::Private::followFilters()
{
    QObject::connect(&model, &FileTableModel::countsChanged, &pane, [this] { showCounts(); });
    QObject::connect(filters, &FilterRow::filterChosen, &pane, [this](FileKinds::Filter filter) {
        filters->setRemark({});
        table->setHint(hintFor(filter));
        model.setFilter(filter);
    });
    QObject::connect(filters, &FilterRow::searchChanged, &pane,
                     [this](const QString &text) { search(text); });
    QObject::connect(filters, &FilterRow::searchConfirmed, &pane, [this] {
        pane.focusTable();
        table->scrollTo(table->currentIndex());
    });
    QObject::connect(filters, &FilterRow::searchLeft, &pane, &FilePane::focusTable);
}

void FilePane::Private::showTableOrInvitation()
{
    const bool isEmpty = document.sourceObjectArray().empty();
    const bool hadFocus = pane.isAncestorOf(pane.window()->focusWidget());
    if (isEmpty) { // what comes next is neither to be hidden nor to be found by what is past
        filters->chooseAll();
        filters->clearSearch();
    }
    filters->setVisible(!isEmpty);
    // A page that is not shown asks for no room.
    const auto policy = isEmpty ? QSizePolicy::Preferred : QSizePolicy::Ignored;
    invitation->setSizePolicy(policy, policy);
    pages->setCurrentWidget(isEmpty ? static_cast<QWidget *>(invitation) : tablePage);
    if (isEmpty && hadFocus)
        invitation->takeFocus();
}

void FilePane::Private::showCounts()
{
    using Filter = FileKinds::Filter;
    for (const Filter filter : {Filter::All, Filter::Changed, Filter::Unchanged, Filter::Problems})
        filters->setCount(filter, model.count(filter));
}

void FilePane::Private::followCurrent()
{
    auto file = pane.currentFile();
    if (file == current)
        return;
    current = std::move(file);
    Q_EMIT pane.currentFileChanged();
}

void FilePane::Private::search(const QString &text)
{
    isSearching = true;
    document.doSearch(text);
    isSearching = false;
    filters->setRemark(text.isEmpty() || !table->selection().rows().isEmpty() ? QString()
                       : hasMatches ? FilePane::tr("Hidden by the filter")
                                    : FilePane::tr("No name matches"));
}

void FilePane::Private::showMenu(QPoint position)
{
    const auto rows = pane.selectedRows();
    const std::shared_ptr<TFileObject> file = pane.currentFile();
    if (rows.empty() || !file)
        return;
    const bool hasProblems = !FileCells::problems(*file, document.forecastFor(*file)).isEmpty();
    auto *menu = new FileMenu(hasProblems, &pane);
    using M = FileMenu;
    QObject::connect(menu, &M::removeChosen, &pane, &FilePane::removeSelected);
    QObject::connect(menu, &M::revealChosen, &pane, &FilePane::revealCurrent);
    QObject::connect(menu, &M::metadataChosen, &pane, &FilePane::metadataRequested);
    QObject::connect(menu, &M::problemsChosen, &pane,
                     [this] { pane.showProblems(model.documentRow(table->currentIndex().row())); });
    QObject::connect(menu, &M::copyNameChosen, &pane, [this] { copyNames(&Private::oldName); });
    QObject::connect(menu, &M::copyNewNameChosen, &pane, [this] { copyNames(&Private::newName); });
    menu->popup(position);
}

/// To the problems of the next file that has some.
void FilePane::Private::stepProblems(int row, bool up)
{
    do {
        row += up ? -1 : 1;
        if (row < 0 || row >= model.rowCount())
            return;
    } while (FileCells::problems(model.file(row), model.forecast(row)).isEmpty());
    if (problems != nullptr)
        problems->dismiss();
    table->selectDocumentRows({model.documentRow(row)});
    pane.showProblems(model.documentRow(row));
}

QString FilePane::Private::oldName(const TFileObject &file) const
{
    return FileCells::currentName(file);
}

QString FilePane::Private::newName(const TFileObject &file) const
{
    return FileCells::newName(file, document.forecastFor(file));
}

/// Of all selected files, one on a line.
void FilePane::Private::copyNames(QString (Private::*nameOf)(const TFileObject &) const) const
{
    QStringList names;
    for (const qsizetype row : pane.selectedRows())
        names += ByteNames::withoutLoneSurrogates(
            (this->*nameOf)(*document.sourceObjectArray()[static_cast<std::size_t>(row)]));
    QGuiApplication::clipboard()->setText(names.join(u'\n'));
}

FilePane::FilePane(TDocument &document, QWidget *parent)
    : QWidget(parent)
    , m_private(std::make_unique<Private>(*this, document))
{
}

FilePane::~FilePane() = default;

std::vector<qsizetype> FilePane::selectedRows() const
{
    return m_private->table->selectedRows();
}

void FilePane::selectRows(const std::vector<qsizetype> &rows)
{
    m_private->hasMatches = !rows.empty();
    m_private->table->selectDocumentRows(rows);
}

void FilePane::selectAllFiles()
{
    m_private->table->selectAll();
}

void FilePane::removeSelected()
{
    m_private->table->removeSelected();
}

void FilePane::copyNames() const
{
    m_private->copyNames(&Private::oldName);
}

std::shared_ptr<TFileObject> FilePane::currentFile() const
{
    const QModelIndex index = m_private->table->currentIndex();
    if (!index.isValid() || index.row() >= m_private->model.rowCount())
        return {};
    const qsizetype row = m_private->model.documentRow(index.row());
    return m_private->document.sourceObjectArray()[static_cast<std::size_t>(row)];
}

void FilePane::focusTable()
{
    if (!m_private->isSearching)
        m_private->table->setFocus(Qt::OtherFocusReason);
}

void FilePane::takeFocus()
{
    if (m_private->document.sourceObjectArray().empty())
        m_private->invitation->takeFocus();
    else
        focusTable();
}

const QWidget &FilePane::table() const
{
    return *m_private->table;
}

void FilePane::addControl(QWidget *control)
{
    m_private->filters->addControl(control);
}

QList<PillButton *> FilePane::filters() const
{
    return m_private->filters->filters();
}

QLineEdit *FilePane::searchField() const
{
    return m_private->filters->searchField();
}

QMenu *FilePane::columnsMenu() const
{
    return m_private->columns->menu();
}

void FilePane::showProblems(qsizetype row)
{
    const int shown = m_private->model.rowOf(row);
    if (shown < 0)
        return;
    const TFileObject &file = m_private->model.file(shown);
    const TErrorLog log = FileCells::problems(file, m_private->model.forecast(shown));
    if (log.isEmpty())
        return;
    FileTableView &table = *m_private->table;
    table.scrollTo(m_private->model.index(shown, FileTableModel::Name));
    auto *const list = new ProblemList(FileCells::currentName(file), log, this);
    connect(list, &ProblemList::stepRequested, this,
            [this, shown](bool up) { m_private->stepProblems(shown, up); });
    m_private->problems = Popover::open(list, table.viewport(), table.problemRect(shown));
}

void FilePane::goToProblem(const TErrorLog &log, qsizetype entry)
{
    const qsizetype row = ProblemRow::find(log, entry, m_private->document.sourceObjectArray());
    if (row < 0)
        return;
    if (m_private->model.rowOf(row) < 0)
        m_private->filters->chooseAll();
    selectRows({row});
    focusTable();
    m_private->table->scrollTo(m_private->table->currentIndex());
}

void FilePane::showOnlyFilesWithProblems()
{
    filters().last()->click();
    focusTable();
}

void FilePane::revealCurrent()
{
    if (const auto file = currentFile())
        QDesktopServices::openUrl(
            QUrl::fromEncoded(file->item().url.folder()->url().toLatin1(), QUrl::StrictMode));
}

void FilePane::keyPressEvent(QKeyEvent *event)
{
    if (!event->matches(QKeySequence::Find))
        return QWidget::keyPressEvent(event);
    searchField()->setFocus(Qt::ShortcutFocusReason);
    searchField()->selectAll();
}
